// Widths of bit fields and fixed-point conversions.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <initializer_list>

namespace libswf {

/// Magnitude that decides a signed width: v, or its complement when v is negative.
constexpr uint32_t bitsMagnitude(int32_t v) { return static_cast<uint32_t>(v < 0 ? ~v : v); }

/// Significant bits of v; 1 for 0.
constexpr uint32_t bitsUnsigned(uint32_t v) { return static_cast<uint32_t>(std::bit_width(v | 1)); }

/// Significant bits and a sign bit; never below 2.
constexpr uint32_t bitsSigned(int32_t v) { return bitsUnsigned(bitsMagnitude(v)) + 1; }

/// Signed width of a pair; 0 when both are 0.
constexpr uint32_t bitsSigned2(int32_t a, int32_t b) {
    return (a | b) == 0 ? 0 : bitsUnsigned(bitsMagnitude(a) | bitsMagnitude(b)) + 1;
}

/// Signed width that holds every value; never below 2.
constexpr uint32_t bitsSignedMax(const int32_t* values, size_t n) {
    uint32_t all = 0;
    for (size_t i = 0; i < n; ++i)
        all |= bitsMagnitude(values[i]);
    return bitsUnsigned(all) + 1;
}

/// The fewest bits that hold every value; 0 when all are 0.
constexpr uint32_t bitsNeeded(std::initializer_list<int32_t> values) {
    uint32_t all = 0;
    bool anySet = false;
    for (const int32_t v : values) {
        all |= bitsMagnitude(v);
        anySet |= v != 0;
    }
    return anySet ? static_cast<uint32_t>(std::bit_width(all)) + 1 : 0;
}

constexpr uint32_t bitsUnsignedMax(uint32_t a, uint32_t b) { return bitsUnsigned(a | b); }

/// Truncates toward zero; NaN and values outside 32 bits give 0x80000000.
inline int32_t truncateToInt32(double v) {
    if (!(v > -2147483649.0 && v < 2147483648.0))
        return INT32_MIN;
    return static_cast<int32_t>(v);
}

/// 8.8 fixed point, as the frame rate has it; read as unsigned.
inline float fixed8ToFloat(uint16_t v) { return static_cast<float>(v) / 256.0f; }
inline uint16_t floatToFixed8(float v) { return static_cast<uint16_t>(truncateToInt32(double(v) * 256.0)); }

/// 16.16 fixed point of the matrix fields.
inline float fixed16ToFloat(int32_t v) { return static_cast<float>(v) / 65536.0f; }
inline int32_t floatToFixed16(float v) { return truncateToInt32(double(v) * 65536.0); }
/// To the nearest; outside 32 bits as truncateToInt32.
inline int32_t nearestFixed16(double v) { return truncateToInt32(std::floor(v * 65536.0 + 0.5)); }

} // namespace libswf
