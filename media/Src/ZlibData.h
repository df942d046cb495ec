// zlib data of bitmap tags.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace zelk {

/// zlib cannot hold more than this many bytes in one.
constexpr uint64_t mostInflated = 1032;

/// The first `size` inflated bytes; what follows is left. Throws code 3, before anything is allocated, when the data
/// cannot hold as many, and for data that is corrupt or ends early. `what` names the data.
std::vector<uint8_t> inflated(std::span<const uint8_t> data, uint64_t size, const char* what);

std::vector<uint8_t> deflated(std::span<const uint8_t> bytes);

} // namespace zelk
