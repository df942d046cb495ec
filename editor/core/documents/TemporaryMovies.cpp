#include "TemporaryMovies.h"

#include <filesystem>
#include <random>

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

void TemporaryMovies::remove(const std::string& name) {
    std::error_code ignored;
    fs::remove(libswf::pathOf(name), ignored);
    std::erase(_names, name);
}

TemporaryMovies::~TemporaryMovies() {
    while (!_names.empty())
        remove(std::string(_names.back()));
}

} // namespace zelk
