// What a file held when it was looked at, so that another version of it is noticed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zelk {

// File names are UTF-8.

struct FileStamp {
    uint64_t size = 0; ///< in bytes
    uint64_t hash = 0; ///< of the content; the same in every run
    int64_t time = 0;  ///< of the last change, nanoseconds since 1970
    /// The same size and time mean the same content. Not so for a file that was changed only just before it was looked
    /// at: some file systems tell times by two seconds.
    bool timeTells = false;

    /// The content has been read: size and hash become those of its bytes.
    void setContent(std::string_view bytes);
    bool sameContent(const FileStamp& other) const { return size == other.size && hash == other.hash; }
    bool operator==(const FileStamp&) const = default;
};

/// Size and time of a file, without its content; all zero where no file is. Take it before the content is read: what
/// is written meanwhile is noticed then.
FileStamp stateOf(const std::string& fileName);
/// The same with the content. None where no file can be read.
std::optional<FileStamp> stampOf(const std::string& fileName);

enum class FileChange : uint8_t { none, changed, removed };

struct FileLook {
    FileChange change = FileChange::none;
    FileStamp now; ///< of a file that cannot be read without its content
};

/// Reads the file only when size and time leave it open whether it changed.
FileLook lookAgain(const FileStamp& known, const std::string& fileName);

} // namespace zelk
