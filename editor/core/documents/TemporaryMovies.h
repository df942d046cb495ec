// Movies that exist only while they are played.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace zelk {

/// Files that are removed when they have been played, and at the latest when the program ends.
class TemporaryMovies {
public:
    TemporaryMovies() = default;
    TemporaryMovies(const TemporaryMovies&) = delete;
    TemporaryMovies& operator=(const TemporaryMovies&) = delete;
    ~TemporaryMovies();

    /// Gives the name of a new file with these bytes. Throws SwfFileException.
    std::string create(std::span<const uint8_t> movie);
    void remove(const std::string& name);

private:
    std::vector<std::string> _names;
};

} // namespace zelk
