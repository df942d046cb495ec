// Files of both kinds, by name or through the standard streams.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zelkc {

enum class Kind : uint8_t { swf, xml };

/// What an option (in any letter case) or the extension of a file name says; none for anything else.
std::optional<Kind> kindNamed(std::string_view name);
std::optional<Kind> kindOfFile(std::string_view fileName);
std::string_view nameOf(Kind kind);

/// A file to read or write. The name is UTF-8; "-" is standard input or output.
struct File {
    std::string name;
    Kind kind = Kind::swf;

    bool isStandard() const { return name == "-"; }
    /// For messages.
    std::string shownName(bool asInput) const;
};

/// A file that cannot be read, or not as what it should be.
class OpenError : public std::runtime_error {
public:
    OpenError(std::string file, const std::string& reason) : std::runtime_error(reason), name(std::move(file)) {}
    std::string name;
};

/// An input that cannot be converted, for a reason that is all there is to say.
class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

constexpr uint64_t maxTextSize = uint64_t(1) << 30; ///< of an XML text, in bytes

/// Throw OpenError. Text may be UTF-8 or UTF-16 and at most maxTextSize.
std::vector<uint8_t> readBytes(const File& file);
std::string readText(const File& file);

/// An existing file stays as it was when writing fails. Throw SwfFileException.
void writeBytes(const File& file, std::span<const uint8_t> bytes);
void writeText(const File& file, std::string_view text);

} // namespace zelkc
