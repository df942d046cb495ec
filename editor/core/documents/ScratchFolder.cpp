#include "ScratchFolder.h"

#include <random>
#include <string>
#include <string_view>
#include <system_error>

#ifndef _WIN32
#include <cerrno>
#include <sys/stat.h>
#endif

namespace zelk {

namespace fs = std::filesystem;

namespace {

// Fails when there is one of this name; never is it open to others, not even for a moment.
std::error_code makeFolder(const fs::path& path) {
#ifdef _WIN32
    std::error_code failure; // The user's temporary folder hands its access list down.
    if (!fs::create_directory(path, failure) && !failure)
        failure = std::make_error_code(std::errc::file_exists);
    return failure;
#else
    return ::mkdir(path.c_str(), S_IRWXU) == 0 ? std::error_code() : std::error_code(errno, std::generic_category());
#endif
}

std::string randomName() {
    constexpr std::string_view characters = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    std::uniform_int_distribution<size_t> any(0, characters.size() - 1);
    std::string name = "~!";
    for (int i = 0; i < 6; ++i)
        name += characters[any(random)];
    return name;
}

} // namespace

ScratchFolder::ScratchFolder() {
    constexpr int mostTries = 100;
    const fs::path parent = fs::temp_directory_path();
    std::error_code failure;
    for (int i = 0; i < mostTries; ++i) {
        _path = parent / randomName();
        failure = makeFolder(_path);
        if (failure != std::errc::file_exists)
            break;
    }
    if (failure)
        throw fs::filesystem_error("no folder can be made", _path, failure);
}

fs::path ScratchFolder::newFile(const std::string& name) { return _files.emplace_back(_path / name); }

void ScratchFolder::removeFiles() {
    std::error_code ignored;
    for (const fs::path& file : _files)
        fs::remove(file, ignored);
    _files.clear();
}

void ScratchFolder::remove() {
    removeFiles();
    std::error_code ignored;
    fs::remove(_path, ignored);
}

} // namespace zelk
