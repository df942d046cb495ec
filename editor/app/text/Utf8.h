// Single characters of a text that may be broken UTF-8.
#pragma once

#include <cstdint>
#include <string_view>

namespace zelk {

struct Utf8Char {
    char32_t code;   // U+FFFD for a byte that is not part of a character
    uint32_t length; // bytes, at least 1
};

/// The character at `position`, which has to be inside the text.
inline Utf8Char utf8CharAt(std::string_view text, size_t position) {
    const auto byte = [&](size_t i) { return static_cast<uint8_t>(text[position + i]); };
    const uint8_t first = byte(0);
    if (first < 0x80)
        return {first, 1};
    const uint32_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() - position < length)
        return {0xFFFD, 1};
    char32_t code = first & (0xFFu >> (length + 1));
    for (uint32_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return {0xFFFD, 1};
        code = code << 6 | (byte(i) & 0x3F);
    }
    const char32_t least = length == 4 ? 0x10000 : length == 3 ? 0x800 : 0x80;
    const bool surrogate = code >= 0xD800 && code < 0xE000;
    return code < least || code > 0x10FFFF || surrogate ? Utf8Char{0xFFFD, 1} : Utf8Char{code, length};
}

} // namespace zelk
