#include "FileStamp.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>

#include "SwfUtils.h"

namespace zelk {

namespace fs = std::filesystem;

namespace {

constexpr size_t pieceSize = 1 << 20; // of a content that is hashed

class ContentHash {
public:
    // Every piece but the last has pieceSize bytes.
    void add(std::string_view piece) {
        constexpr uint64_t odd = 0x9E3779B97F4A7C15;
        _hash = (_hash ^ std::hash<std::string_view>()(piece)) * odd;
        _hash ^= _hash >> 32;
    }
    uint64_t value() const { return _hash; }

private:
    uint64_t _hash = 0;
};

// None for what is no file; throws for a name that no file can have.
std::optional<FileStamp> statOf(const std::string& fileName) {
    using namespace std::chrono;
    const fs::path path = libswf::pathOf(fileName);
    std::error_code failure;
    if (!fs::is_regular_file(path, failure))
        return std::nullopt;
    FileStamp stamp;
    stamp.size = fs::file_size(path, failure);
    const auto time = file_clock::to_sys(fs::last_write_time(path, failure));
    if (failure)
        return std::nullopt;
    stamp.time = duration_cast<nanoseconds>(time.time_since_epoch()).count();
    constexpr auto coarsest = 3s;
    stamp.timeTells = system_clock::now() - time > coarsest;
    return stamp;
}

} // namespace

void FileStamp::setContent(std::string_view bytes) {
    timeTells = timeTells && bytes.size() == size;
    size = bytes.size();
    ContentHash content;
    for (size_t start = 0; start < bytes.size(); start += pieceSize)
        content.add(bytes.substr(start, pieceSize));
    hash = content.value();
}

FileStamp stateOf(const std::string& fileName) {
    try {
        return statOf(fileName).value_or(FileStamp());
    } catch (const fs::filesystem_error&) {
        return {};
    }
}

std::optional<FileStamp> stampOf(const std::string& fileName) {
    try {
        std::optional<FileStamp> stamp = statOf(fileName);
        std::ifstream file(libswf::pathOf(fileName), std::ios::binary);
        if (!stamp || !file)
            return std::nullopt;
        ContentHash content;
        uint64_t size = 0;
        std::string piece(pieceSize, 0);
        while (file) {
            file.read(piece.data(), pieceSize);
            const auto count = static_cast<size_t>(file.gcount());
            if (count != 0)
                content.add(std::string_view(piece).substr(0, count));
            size += count;
        }
        if (file.bad())
            return std::nullopt;
        stamp->timeTells = stamp->timeTells && size == stamp->size;
        stamp->size = size;
        stamp->hash = content.value();
        return stamp;
    } catch (const fs::filesystem_error&) {
        return std::nullopt;
    }
}

FileLook lookAgain(const FileStamp& known, const std::string& fileName) {
    try {
        std::error_code failure;
        if (fs::status(libswf::pathOf(fileName), failure).type() == fs::file_type::not_found)
            return {FileChange::removed, {}};
    } catch (const fs::filesystem_error&) {
        return {FileChange::removed, {}};
    }
    const FileStamp state = stateOf(fileName);
    if (known.timeTells && state.size == known.size && state.time == known.time)
        return {FileChange::none, known};
    const std::optional<FileStamp> read = stampOf(fileName);
    if (!read)
        return {FileChange::changed, state};
    return {read->sameContent(known) ? FileChange::none : FileChange::changed, *read};
}

} // namespace zelk
