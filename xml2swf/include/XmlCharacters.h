// Characters: as bytes of UTF-8, in messages, and as digits.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace xml2swf {

/// A code point up to 0x10FFFF; a surrogate becomes the three bytes of its number.
inline void appendUtf8(std::string& out, uint32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
        return;
    }
    const int tails = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    out += static_cast<char>((0xF00 >> (tails + 1)) | (c >> (6 * tails)));
    for (int i = tails - 1; i >= 0; --i)
        out += static_cast<char>(0x80 | (c >> (6 * i) & 0x3F));
}

/// Nothing for bytes that are no UTF-8.
std::optional<std::u32string> fromUtf8(std::string_view bytes);
std::string toUtf8(std::u32string_view characters);

/// 'x' (U+0078) for messages.
std::string characterName(char32_t character);

/// 0 to 15; -1 for what is no hexadecimal digit.
inline int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

} // namespace xml2swf
