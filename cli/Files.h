// Files of every kind, by name or through the standard streams.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Exceptions.h"
#include "FileKind.h"

namespace zelkc {

using zelk::FileKind;

/// A file to read or write. The name is UTF-8; "-" is standard input or output.
struct File {
    std::string name;
    FileKind kind = FileKind::swf;

    /// A movie's XML text, be it in a project.
    bool isText() const { return kind != FileKind::swf; }
    bool isStandard() const { return name == "-"; }
    /// For messages.
    std::string shownName(bool asInput) const;
};

/// The name of a path in UTF-8, as File has it.
std::string nameOf(const std::filesystem::path& path);

/// An input that cannot be converted, for a reason that is all there is to say.
class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Throw zelk::FileLoadException. Text is that of an XML file or a project; it may be UTF-8 or UTF-16 and has at most
/// zelk::maxTextSize.
std::vector<uint8_t> readBytes(const File& file);
std::string readText(const File& file);

/// An existing file stays as it was when writing fails. Throw SwfFileException or, for a project and for standard
/// output, zelk::FileSaveException.
void writeBytes(const File& file, std::span<const uint8_t> bytes);
void writeText(const File& file, std::string_view text);
/// Says whether all that was printed arrived: throws zelk::FileSaveException when it did not.
void flushStandardOutput();
/// With those around it; one that is there already is fine. Throws zelk::FileSaveException.
void makeFolder(const std::string& name);
/// Waits until what was written is on the disk that has this folder, as far as the system can be asked for it.
void flushFolder(const std::string& name);

} // namespace zelkc
