#include <filesystem>
#include <random>

#include "Session.h"
#include "SwfUtils.h"

namespace zelk {

namespace fs = std::filesystem;

std::string TemporaryMovies::create(std::span<const uint8_t> movie) {
    std::random_device random;
    const fs::path name = fs::temp_directory_path() / ("zelk-" + std::to_string(random()) + ".swf");
    const std::u8string text = name.u8string();
    _names.emplace_back(text.begin(), text.end());
    libswf::writeFile(_names.back(), movie);
    return _names.back();
}

TemporaryMovies::~TemporaryMovies() {
    std::error_code ignored;
    for (const std::string& name : _names)
        fs::remove(libswf::pathOf(name), ignored);
}

} // namespace zelk
