// Eight bytes, or 64 marks, worked on at once in one word. Bytes stand in a word as in memory: the first one is lowest.
#pragma once

#include <bit>
#include <cstdint>

namespace xml2swf {

static_assert(std::endian::native == std::endian::little);

constexpr uint64_t eachByte = 0x0101010101010101;
constexpr uint64_t eightZeros = eachByte * '0'; // the characters "00000000"

/// Whether all eight bytes of a word are 0 to 9, as digits are once the character '0' is taken away (word ^
/// eightZeros).
inline bool areDigits(uint64_t values) {
    // 118 is added, so that a byte from 10 on gets its highest bit set; one above 137 would lose that bit in the
    // addition, but has it by itself.
    return (((values + eachByte * (0x80 - 10)) | values) & (eachByte * 0x80)) == 0;
}

/// The number that eight such values stand for.
inline uint32_t numberOf(uint64_t values) {
    // Each step multiplies the first of two neighbours by 10, 100 or 10,000 and adds the second one: the product with
    // (10 * 256 + 1) has 10 * first + second where the second one stood, and the shift takes it to the first one's
    // place.
    values = values * (10 * 256 + 1) >> 8;
    values = (values & 0x00FF00FF00FF00FF) * (100 * 65536 + 1) >> 16;
    return static_cast<uint32_t>((values & 0x0000FFFF0000FFFF) * (10000 * (uint64_t(1) << 32) + 1) >> 32);
}

/// Of set bits, for processors without an instruction for it: std::popcount is a call there.
inline uint64_t countOfBits(uint64_t bits) {
    // Sums of 2, then of 4, then of 8 bits; the product adds all bytes in the highest one.
    bits -= bits >> 1 & 0x5555555555555555;
    bits = (bits & 0x3333333333333333) + (bits >> 2 & 0x3333333333333333);
    return ((bits + (bits >> 4)) & (eachByte * 0x0F)) * eachByte >> 56;
}

/// Each bit is set when the number of set bits up to and with it is odd: between an odd quote and the next even one.
[[gnu::always_inline]] inline uint64_t parities(uint64_t bits) {
    // After each step a bit is the parity of the last 2, 4, ... 64 bits up to it.
    for (int shift = 1; shift < 64; shift *= 2)
        bits ^= bits << shift;
    return bits;
}

} // namespace xml2swf
