// Numbers as attribute text, independent of the locale.
#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

namespace xml2swf {

/// Room for any number's text.
struct NumberText {
    char chars[40];
    uint32_t length = 0;
    std::string_view view() const { return {chars, length}; }
};

/// Writes a number, at most 11 characters, into room for 12; gives the end.
char* writeInteger(char* out, int32_t value);

template <std::integral Int>
NumberText formatInteger(Int value) {
    NumberText text;
    char* end = nullptr;
    if (std::in_range<int32_t>(value))
        end = writeInteger(text.chars, static_cast<int32_t>(value));
    else
        end = std::to_chars(text.chars, text.chars + sizeof text.chars, value).ptr;
    text.length = static_cast<uint32_t>(end - text.chars);
    return text;
}

/// The shortest text that reads back to the same bits: "12", "0.1", "inf", "nan" for the canonical quiet NaN,
/// "nan(7f800001)" with the bits in hexadecimal for any other.
NumberText formatReal(float value);
NumberText formatReal(double value);

/// A fixed-point number: the shortest decimal text to which no other one is nearer. `one` is 65536 for 16.16, 256 for
/// 8.8.
NumberText formatFixed(int32_t value, uint32_t one);

/// Optional sign, decimal digits, nothing else. Empty when the text is anything else or outside 64 bits.
std::optional<int64_t> parseInteger(std::string_view text);
/// The same, quicker: false instead of empty.
bool readInteger(std::string_view text, int64_t& value);
/// Accepts every form that formatReal gives.
std::optional<float> parseFloat(std::string_view text);
std::optional<double> parseDouble(std::string_view text);
/// 1 to 8 hexadecimal digits, no prefix.
std::optional<uint32_t> parseHex(std::string_view text);

} // namespace xml2swf
