#include "XmlNumbers.h"

#include <bit>
#include <cmath>

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

NumberText formatReal(float value) { return format(value); }
NumberText formatReal(double value) { return format(value); }

std::optional<int64_t> parseInteger(std::string_view text) {
    // Nearly all numbers are short: there is no overflow to look for.
    const bool isNegative = text.starts_with('-');
    const std::string_view digits = text.substr(isNegative);
    if (!digits.empty() && digits.size() <= 9 && digits[0] != '+') {
        int32_t value = 0;
        for (char c : digits) {
            if (c < '0' || c > '9')
                return {};
            value = value * 10 + (c - '0');
        }
        return isNegative ? -value : value;
    }
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-'))
            return {};
    }
    int64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size())
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
