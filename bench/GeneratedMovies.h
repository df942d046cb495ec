// Movies of any size, made up of one kind of content, from a fixed seed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

enum class Content { shapes, actions, payload, mixed };

/// An uncompressed movie whose body has about `bytes` bytes.
std::vector<uint8_t> generateMovie(Content content, size_t bytes);
/// One shape with this many edges.
std::vector<uint8_t> generateShape(size_t edges);
/// A block of ActionScript 3 of about so many bytes, and a movie that holds it.
std::vector<uint8_t> generateAbc(size_t bytes);
std::vector<uint8_t> generateAbcMovie(size_t bytes);
/// The same movie with a zlib body.
std::vector<uint8_t> compressMovie(const std::vector<uint8_t>& movie);

} // namespace bench
