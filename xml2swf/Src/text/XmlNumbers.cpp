#include "XmlNumbers.h"

#include <array>
#include <cmath>
#include <cstring>

#include "XmlWords.h"

namespace xml2swf {

namespace {

template <class Real>
struct RealBits;
template <>
struct RealBits<float> {
    using Type = uint32_t;
    static constexpr Type quietNaN = 0x7FC00000;
};
template <>
struct RealBits<double> {
    using Type = uint64_t;
    static constexpr Type quietNaN = 0x7FF8000000000000;
};

template <class Real>
NumberText format(Real value) {
    using Bits = typename RealBits<Real>::Type;
    NumberText text;
    char* end = text.chars;
    if (std::isnan(value)) {
        const Bits bits = std::bit_cast<Bits>(value);
        end = std::copy_n("nan", 3, end);
        if (bits != RealBits<Real>::quietNaN) {
            *end++ = '(';
            end = std::to_chars(end, text.chars + sizeof text.chars, bits, 16).ptr;
            *end++ = ')';
        }
    } else {
        end = std::to_chars(end, text.chars + sizeof text.chars, value).ptr;
    }
    text.length = static_cast<uint32_t>(end - text.chars);
    return text;
}

template <class Real>
std::optional<Real> parseNaN(std::string_view text) {
    using Bits = typename RealBits<Real>::Type;
    if (text == "nan")
        return std::bit_cast<Real>(RealBits<Real>::quietNaN);
    if (!text.starts_with("nan(") || !text.ends_with(")"))
        return {};
    text = text.substr(4, text.size() - 5);
    Bits bits = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), bits, 16);
    const Real value = std::bit_cast<Real>(bits);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !std::isnan(value))
        return {};
    return value;
}

template <class Real>
std::optional<Real> parse(std::string_view text) {
    if (text.starts_with("nan"))
        return parseNaN<Real>(text);
    const bool negative = text.starts_with('-');
    const std::string_view digits = negative || text.starts_with('+') ? text.substr(1) : text;
    if (digits == "inf") {
        const Real infinity = std::numeric_limits<Real>::infinity();
        return negative ? -infinity : infinity;
    }
    if (digits.empty() || !((digits[0] >= '0' && digits[0] <= '9') || digits[0] == '.'))
        return {};
    Real value = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (result.ec != std::errc() || result.ptr != digits.data() + digits.size())
        return {};
    return negative ? -value : value;
}

} // namespace

namespace {

// The text of a number below 1000, with and without leading zeros.
struct Thousandth {
    char chars[4], padded[3];
    uint8_t length;
};

constexpr auto thousand = [] {
    std::array<Thousandth, 1000> table{};
    for (uint32_t i = 0; i < table.size(); ++i) {
        Thousandth& entry = table[i];
        for (uint32_t digit = 0, rest = i; digit < 3; ++digit, rest /= 10)
            entry.padded[2 - digit] = static_cast<char>('0' + rest % 10);
        entry.length = i < 10 ? 1 : i < 100 ? 2 : 3;
        for (uint32_t digit = 0; digit < entry.length; ++digit)
            entry.chars[digit] = entry.padded[3 - entry.length + digit];
    }
    return table;
}();

} // namespace

char* writeInteger(char* out, int32_t value) {
    const bool isNegative = value < 0;
    const uint32_t magnitude = isNegative ? 0 - static_cast<uint32_t>(value) : static_cast<uint32_t>(value);
    *out = '-';
    out += isNegative; // no branch: signs come as they like
    if (magnitude >= 1000000)
        return std::to_chars(out, out + 11, magnitude).ptr;
    if (magnitude >= 1000) {
        const Thousandth& high = thousand[magnitude / 1000];
        std::memcpy(out, high.chars, sizeof high.chars);
        out += high.length;
        std::memcpy(out, thousand[magnitude % 1000].padded, 3);
        return out + 3;
    }
    const Thousandth& entry = thousand[magnitude];
    std::memcpy(out, entry.chars, sizeof entry.chars);
    return out + entry.length;
}

NumberText formatReal(float value) { return format(value); }
NumberText formatReal(double value) { return format(value); }

// Never halfway between two, for powers of ten below a power of two or the other way round.
static int64_t nearestQuotient(int64_t dividend, int64_t divisor) {
    const int64_t half = dividend < 0 ? -divisor / 2 : divisor / 2;
    return (dividend + half) / divisor;
}

NumberText formatFixed(int32_t value, uint32_t one) {
    uint32_t digits = 0;
    int64_t power = 1, scaled = nearestQuotient(value, one);
    while (nearestQuotient(scaled * one, power) != value) {
        ++digits;
        power *= 10;
        scaled = nearestQuotient(value * power, one);
    }
    NumberText text;
    const int64_t magnitude = scaled < 0 ? -scaled : scaled;
    char* end = text.chars;
    if (scaled < 0)
        *end++ = '-';
    end = std::to_chars(end, text.chars + sizeof text.chars, magnitude / power).ptr;
    if (digits != 0) {
        *end++ = '.';
        for (int64_t rest = magnitude % power; digits != 0; --digits) {
            power /= 10;
            *end++ = static_cast<char>('0' + rest / power);
            rest %= power;
        }
    }
    text.length = static_cast<uint32_t>(end - text.chars);
    return text;
}

namespace {

// The value of 1 to 8 digits, all at once. False when one of them is none.
bool readDigits(const char* digits, size_t n, uint32_t& value) {
    auto byte = [&](size_t i) { return uint64_t(static_cast<uint8_t>(digits[i])) << (8 * i); };
    auto four = [&](size_t i) {
        uint32_t word;
        std::memcpy(&word, digits + i, sizeof word);
        return uint64_t(word) << (8 * i);
    };
    // The digits as bytes of a word, then moved to its end with zeros in front of them.
    uint64_t word = n >= 4 ? four(0) | four(n - 4) : byte(0) | byte(n / 2) | byte(n - 1);
    word <<= 64 - 8 * n;
    word |= n == 8 ? 0 : eightZeros >> (8 * n);
    const uint64_t values = word ^ eightZeros;
    if (!areDigits(values))
        return false;
    value = numberOf(values);
    return true;
}

} // namespace

bool readInteger(std::string_view text, int64_t& value) {
    if (text.empty())
        return false;
    // Nearly all numbers are short. Their signs come as they like: a branch on them would be guessed wrong half the
    // time.
    const size_t sign = text[0] == '-';
    const size_t count = text.size() - sign;
    if (uint32_t magnitude; count - 1 < 8 && readDigits(text.data() + sign, count, magnitude)) {
        value = (int64_t(magnitude) ^ -int64_t(sign)) + int64_t(sign);
        return true;
    }
    if (text[0] == '+') {
        text.remove_prefix(1);
        if (text.starts_with('-'))
            return false;
    }
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

std::optional<int64_t> parseInteger(std::string_view text) {
    int64_t value = 0;
    if (!readInteger(text, value))
        return {};
    return value;
}

std::optional<float> parseFloat(std::string_view text) { return parse<float>(text); }
std::optional<double> parseDouble(std::string_view text) { return parse<double>(text); }

std::optional<uint32_t> parseHex(std::string_view text) {
    uint32_t value = 0;
    if (text.empty() || text.size() > 8)
        return {};
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size())
        return {};
    return value;
}

} // namespace xml2swf
