// Zip archives in memory, as far as project files need them.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelk {

/// Reads the first entry of an archive that holds bytes. Every function throws FileLoadException, with `name`.
class ArchiveReader {
public:
    /// Refers to the bytes while it lives.
    ArchiveReader(std::span<const uint8_t> bytes, std::string name);
    ~ArchiveReader();
    ArchiveReader(const ArchiveReader&) = delete;
    ArchiveReader& operator=(const ArchiveReader&) = delete;

    /// Goes on to the first entry that states to hold bytes. Refuses a fault before it, more than maxTextSize,
    /// encryption.
    void findText();
    /// The entry's place in the archive, from 0.
    uint32_t index() const { return _index; }
    /// Writes that entry in small pieces. Refuses one that is damaged or shorter than it states; part of it may be
    /// written by then.
    void extract(std::ostream& to);

private:
    struct State;

    [[noreturn]] void refuse(const std::string& reason) const;
    [[noreturn]] void refuseEntry(const char* reason) const;
    void next();

    std::string _name;
    uint32_t _index = 0;
    std::unique_ptr<State> _state;
};

/// An archive of one deflated entry with the time of now. Throws FileSaveException with `name`.
std::vector<uint8_t> archiveOf(const char* entry, std::string_view content, const std::string& name);

} // namespace zelk
