#include "Adpcm.h"

#include <algorithm>

#include "MediaError.h"

namespace zelk {

namespace {

constexpr int packetFrames = 4096;
constexpr uint64_t headerBits = 16 + 6;

constexpr int steps[] = {7,     8,     9,     10,    11,    12,    13,    14,    16,    17,    19,   21,    23,
                         25,    28,    31,    34,    37,    41,    45,    50,    55,    60,    66,   73,    80,
                         88,    97,    107,   118,   130,   143,   157,   173,   190,   209,   230,  253,   279,
                         307,   337,   371,   408,   449,   494,   544,   598,   658,   724,   796,  876,   963,
                         1060,  1166,  1282,  1411,  1552,  1707,  1878,  2066,  2272,  2499,  2749, 3024,  3327,
                         3660,  4026,  4428,  4871,  5358,  5894,  6484,  7132,  7845,  8630,  9493, 10442, 11487,
                         12635, 13899, 15289, 16818, 18500, 20350, 22385, 24623, 27086, 29794, 32767};
constexpr int lastStep = static_cast<int>(std::size(steps)) - 1;

// How the step moves, by the width of the codes and the code without its sign.
constexpr int moves[4][16] = {
    {-1, 2}, {-1, -1, 2, 4}, {-1, -1, -1, -1, 2, 4, 6, 8}, {-1, -1, -1, -1, -1, -1, -1, -1, 1, 2, 4, 6, 8, 10, 13, 16}};

// The first bit of a byte is its highest.
class Bits {
public:
    explicit Bits(std::span<const uint8_t> data) : _data(data) {}

    uint64_t left() const { return uint64_t(_data.size()) * 8 - _at; }
    unsigned take(unsigned count) {
        unsigned value = 0;
        for (; count != 0; --count, ++_at)
            value = value << 1 | (unsigned(_data[_at / 8]) >> (7 - _at % 8) & 1);
        return value;
    }

private:
    std::span<const uint8_t> _data;
    uint64_t _at = 0;
};

struct Channel {
    int sample = 0;
    int step = 0; // index

    void start(Bits& bits) {
        sample = static_cast<int16_t>(bits.take(16));
        step = std::min(static_cast<int>(bits.take(6)), lastStep);
    }

    void take(unsigned code, unsigned width) {
        const unsigned sign = 1u << (width - 1), size = code & (sign - 1);
        int part = steps[step], change = 0;
        for (unsigned bit = sign >> 1; bit != 0; bit >>= 1, part >>= 1) {
            if ((size & bit) != 0)
                change += part;
        }
        change += part; // half of the smallest part
        sample = std::clamp(sample + ((code & sign) != 0 ? -change : change), -32768, 32767);
        step = std::clamp(step + moves[width - 2][size], 0, lastStep);
    }
};

} // namespace

std::vector<int16_t> decodeAdpcm(std::span<const uint8_t> data, uint16_t channels, uint64_t mostFrames) {
    Bits bits(data);
    if (bits.left() < 2 + headerBits * channels)
        badMedia("ADPCM: the data ends before its first sample");
    const unsigned width = 2 + bits.take(2);
    std::vector<int16_t> samples;
    Channel states[2];
    const std::span<Channel> used(states, channels);
    uint64_t frames = 0;
    while (bits.left() >= headerBits * channels && frames < mostFrames) {
        for (Channel& channel : used) {
            channel.start(bits);
            samples.push_back(static_cast<int16_t>(channel.sample));
        }
        ++frames;
        for (int i = 1; i < packetFrames && frames < mostFrames && bits.left() >= uint64_t(width) * channels; ++i) {
            for (Channel& channel : used) {
                channel.take(bits.take(width), width);
                samples.push_back(static_cast<int16_t>(channel.sample));
            }
            ++frames;
        }
    }
    return samples;
}

} // namespace zelk
