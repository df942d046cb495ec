#include "SwfUtils.h"

#include <cstdio>
#include <memory>
#include <random>

#ifndef _WIN32
#include <unistd.h>
#endif

#include "SwfException.h"
#include "SwfVector.h"

namespace libswf {

namespace fs = std::filesystem;

namespace {

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

File openFile(const fs::path& path, const char* mode) {
#ifdef _WIN32
    return {_wfopen(path.c_str(), std::wstring(mode, mode + std::char_traits<char>::length(mode)).c_str()), fclose};
#else
    return {fopen(path.c_str(), mode), fclose};
#endif
}

bool flushToDisk(FILE* file) {
    if (fflush(file) != 0)
        return false;
#ifndef _WIN32
    return fsync(fileno(file)) == 0;
#else
    return true;
#endif
}

// A name beside the target that no other save uses.
fs::path scratchName(const fs::path& target) {
    std::random_device random;
    fs::path name = target;
    name += ".zelk-" + std::to_string(random()) + ".tmp";
    return name;
}

void writeBeside(const std::string& fileName, const void* data, size_t size) {
    std::error_code ignored;
    fs::path target = pathOf(fileName);
    if (fs::is_symlink(target, ignored)) {
        const fs::path resolved = fs::canonical(target, ignored);
        if (!resolved.empty())
            target = resolved;
    }
    if (fs::exists(target, ignored) && !fs::is_regular_file(target, ignored))
        throw SwfFileException(SwfError::openForWriting, fileName);
    const fs::path scratch = scratchName(target);
    File file = openFile(scratch, "wbx");
    if (file == nullptr)
        throw SwfFileException(SwfError::openForWriting, fileName);
    bool done = fwrite(data, 1, size, file.get()) == size && flushToDisk(file.get());
    done = fclose(file.release()) == 0 && done;
    std::error_code failure;
    if (done) {
        const fs::file_status old = fs::status(target, ignored);
        if (fs::exists(old))
            fs::permissions(scratch, old.permissions(), ignored);
        fs::rename(scratch, target, failure);
    }
    if (!done || failure) {
        fs::remove(scratch, ignored);
        throw SwfFileException(SwfError::writing, fileName);
    }
}

} // namespace

fs::path pathOf(const std::string& fileName) {
    return fs::path(std::u8string(reinterpret_cast<const char8_t*>(fileName.c_str())));
}

std::vector<uint8_t> readFile(const std::string& fileName) {
    const fs::path path = pathOf(fileName);
    std::error_code failure;
    const fs::file_status status = fs::status(path, failure);
    if (!fs::exists(status))
        throw SwfFileException(SwfError::openForReading, fileName);
    if (!fs::is_regular_file(status))
        throw SwfFileException(SwfError::reading, fileName);
    File file = openFile(path, "rb");
    if (file == nullptr)
        throw SwfFileException(SwfError::openForReading, fileName);
    const uintmax_t size = fs::file_size(path, failure);
    if (failure || size > UINT32_MAX)
        throw SwfFileException(SwfError::reading, fileName);
    std::vector<uint8_t> bytes(static_cast<size_t>(size));
    if (fread(bytes.data(), 1, bytes.size(), file.get()) != bytes.size() || fclose(file.release()) != 0)
        throw SwfFileException(SwfError::reading, fileName);
    return bytes;
}

void writeFile(const std::string& fileName, std::span<const uint8_t> bytes) {
    swfAssert(bytes.data() != nullptr, "data");
    swfAssert(!bytes.empty(), "size");
    writeBeside(fileName, bytes.data(), bytes.size());
}

void writeTextFile(const std::string& fileName, std::string_view text) {
    writeBeside(fileName, text.data(), text.size());
}

} // namespace libswf
