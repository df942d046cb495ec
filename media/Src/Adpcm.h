// ADPCM as sound tags hold it.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace zelk {

/// Samples of all channels in turn. The data starts with the width of its codes (2 to 5 bits); then come packets, each
/// with a whole sample and a step for every channel and up to 4,095 codes for each. At most `mostFrames` samples in
/// each channel; what is cut in the middle of one is left out. Throws code 3 for data without a single sample.
std::vector<int16_t> decodeAdpcm(std::span<const uint8_t> data, uint16_t channels, uint64_t mostFrames);

} // namespace zelk
