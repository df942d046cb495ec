// WAV files of uncompressed samples.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace zelk {

struct Wav {
    uint32_t rate = 0;
    uint16_t channels = 0;         ///< 1 or 2
    uint16_t bits = 0;             ///< 8, from 0 to 255, or 16, signed
    std::span<const uint8_t> data; ///< whole samples of all channels
};

bool isWav(std::span<const uint8_t> file);
/// Throws code 2 for other samples than Wav can tell, code 3 for a file without samples.
Wav readWav(std::span<const uint8_t> file);
std::vector<uint8_t> writeWav(const Wav& wav);

} // namespace zelk
