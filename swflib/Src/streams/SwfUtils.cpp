#include "SwfUtils.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <random>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

#ifdef __linux__
#include <sys/mman.h>
#endif

#include "SwfException.h"
#include "SwfVector.h"

namespace libswf {

namespace fs = std::filesystem;

namespace {

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

#ifdef _WIN32

File openFile(const fs::path& path) { return {_wfopen(path.c_str(), L"rb"), fclose}; }

// Fails when there is one of this name. The run-time library knows no "x" mode.
File createFile(const fs::path& path) {
    constexpr int flags = _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT;
    const int handle = _wopen(path.c_str(), flags, _S_IREAD | _S_IWRITE);
    return {handle < 0 ? nullptr : _fdopen(handle, "wb"), fclose};
}

bool flushToDisk(FILE* file) { return fflush(file) == 0 && _commit(_fileno(file)) == 0; }

// A read-only file cannot be replaced, though some versions and emulations do so.
bool isProtected(const fs::path& path) {
    std::error_code ignored;
    return (fs::status(path, ignored).permissions() & fs::perms::owner_write) == fs::perms::none;
}

// Keeps who may do what with the file. A virus scanner, or whatever else looks at new files, may hold one for a moment.
std::error_code replaceFile(const fs::path& scratch, const fs::path& target) {
    constexpr DWORD keepOn = REPLACEFILE_IGNORE_MERGE_ERRORS | REPLACEFILE_IGNORE_ACL_ERRORS, pause = 50;
    for (int left = 5;; --left) {
        if (ReplaceFileW(target.c_str(), scratch.c_str(), nullptr, keepOn, nullptr, nullptr) != 0 ||
            MoveFileExW(scratch.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0)
            return {};
        const DWORD error = GetLastError();
        if (left == 1 || (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED))
            return {static_cast<int>(error), std::system_category()};
        Sleep(pause);
    }
}

#else

File openFile(const fs::path& path) { return {fopen(path.c_str(), "rb"), fclose}; }

// Fails when there is one of this name.
File createFile(const fs::path& path) { return {fopen(path.c_str(), "wbx"), fclose}; }

bool flushToDisk(FILE* file) { return fflush(file) == 0 && fsync(fileno(file)) == 0; }

// A rename needs to be allowed by the folder only.
bool isProtected(const fs::path&) { return false; }

void copyPermissions(const fs::path& from, const fs::path& to) {
    std::error_code ignored;
    const fs::file_status status = fs::status(from, ignored);
    if (fs::exists(status))
        fs::permissions(to, status.permissions(), ignored);
}

std::error_code replaceFile(const fs::path& scratch, const fs::path& target) {
    std::error_code failure;
    copyPermissions(target, scratch);
    fs::rename(scratch, target, failure);
    return failure;
}

#endif

// The system's words for what the last call ran into; none when it did not say.
std::string systemReason(int error) { return error == 0 ? std::string() : std::generic_category().message(error); }

std::string reasonOf(const std::error_code& failure) { return failure ? failure.message() : std::string(); }

// A name that is not UTF-8 is that of no file where names are text.
fs::path pathOrFailure(const std::string& fileName, uint32_t failure) {
    try {
        return pathOf(fileName);
    } catch (const fs::filesystem_error&) {
        throw SwfFileException(failure, fileName, "its name is not UTF-8");
    }
}

// Why a file that is there cannot be replaced; none when it can.
int refusalToReplace(const fs::path& target) {
    std::error_code ignored;
    const fs::file_status status = fs::status(target, ignored);
    if (!fs::exists(status))
        return 0;
    if (fs::is_directory(status))
        return EISDIR;
    return fs::is_regular_file(status) && !isProtected(target) ? 0 : EACCES;
}

// A name beside the target that no other save uses.
fs::path scratchName(const fs::path& target) {
    constexpr size_t longestKept = 200; // Systems take names of 255 bytes.
    std::random_device random;
    fs::path name = target.filename().native().size() > longestKept ? target.parent_path() / "long" : target;
    name += ".zelk-" + std::to_string(random()) + ".tmp";
    return name;
}

void writeBeside(const std::string& fileName, const void* data, size_t size) {
    std::error_code ignored;
    fs::path target = pathOrFailure(fileName, SwfError::openForWriting);
    if (fs::is_symlink(target, ignored)) {
        const fs::path resolved = fs::canonical(target, ignored);
        if (!resolved.empty())
            target = resolved;
    }
    if (const int refusal = refusalToReplace(target))
        throw SwfFileException(SwfError::openForWriting, fileName, systemReason(refusal));
    const fs::path scratch = scratchName(target);
    errno = 0;
    File file = createFile(scratch);
    if (file == nullptr)
        throw SwfFileException(SwfError::openForWriting, fileName, systemReason(errno));
    // A new name has nothing to lose, so it need not wait for the disk.
    const bool replaces = fs::exists(target, ignored);
    errno = 0;
    bool done = fwrite(data, 1, size, file.get()) == size && (!replaces || flushToDisk(file.get()));
    int error = done ? 0 : errno;
    if (fclose(file.release()) != 0) {
        error = done ? errno : error; // The first reason counts.
        done = false;
    }
    std::string reason = systemReason(error);
    if (done) {
        const std::error_code failure = replaceFile(scratch, target);
        done = !failure;
        reason = reasonOf(failure);
    }
    if (!done) {
        fs::remove(scratch, ignored);
        throw SwfFileException(SwfError::writing, fileName, reason);
    }
}

} // namespace

fs::path pathOf(const std::string& fileName) {
    return fs::path(std::u8string(reinterpret_cast<const char8_t*>(fileName.c_str())));
}

// Reads into a vector of bytes or a string.
template <class Bytes>
static Bytes readWhole(const std::string& fileName) {
    const fs::path path = pathOrFailure(fileName, SwfError::openForReading);
    std::error_code failure;
    const fs::file_status status = fs::status(path, failure);
    if (!fs::exists(status))
        throw SwfFileException(SwfError::openForReading, fileName, failure ? reasonOf(failure) : systemReason(ENOENT));
    if (!fs::is_regular_file(status))
        throw SwfFileException(SwfError::reading, fileName,
                               fs::is_directory(status) ? systemReason(EISDIR) : "it is no file with a content");
    errno = 0;
    File file = openFile(path);
    if (file == nullptr)
        throw SwfFileException(SwfError::openForReading, fileName, systemReason(errno));
    const uintmax_t size = fs::file_size(path, failure);
    if (failure)
        throw SwfFileException(SwfError::reading, fileName, reasonOf(failure));
    if (size > UINT32_MAX)
        throw SwfFileException(SwfError::reading, fileName, "it has more than 4 GB");
    Bytes bytes(static_cast<size_t>(size), 0);
    errno = 0;
    if (fread(bytes.data(), 1, bytes.size(), file.get()) != bytes.size() || fclose(file.release()) != 0)
        throw SwfFileException(SwfError::reading, fileName, systemReason(errno));
    return bytes;
}

std::vector<uint8_t> readFile(const std::string& fileName) { return readWhole<std::vector<uint8_t>>(fileName); }

std::string readTextFile(const std::string& fileName) { return readWhole<std::string>(fileName); }

void writeFile(const std::string& fileName, std::span<const uint8_t> bytes) {
    swfAssert(bytes.data() != nullptr, "data");
    swfAssert(!bytes.empty(), "size");
    writeBeside(fileName, bytes.data(), bytes.size());
}

void writeTextFile(const std::string& fileName, std::string_view text) {
    writeBeside(fileName, text.data(), text.size());
}

std::string withReason(std::string what, int error) { return error == 0 ? what : what + ": " + systemReason(error); }

void adviseBigPages(const void* block, size_t bytes) {
#ifdef MADV_HUGEPAGE
    constexpr uintptr_t page = 4096;
    constexpr size_t least = 16 << 20; // below, what the last page holds too much would show
    if (bytes < least)
        return;
    const auto start = (reinterpret_cast<uintptr_t>(block) + page - 1) / page * page;
    const auto end = (reinterpret_cast<uintptr_t>(block) + bytes) / page * page;
    madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE); // may fail: the pages are small then
#else
    static_cast<void>(block), static_cast<void>(bytes);
#endif
}

} // namespace libswf
