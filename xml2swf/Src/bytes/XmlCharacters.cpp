#include "XmlCharacters.h"

#include <array>
#include <cstdio>

namespace xml2swf {

namespace {

// Of a sequence that begins with this byte; 0 for one that begins none.
size_t sequenceLength(uint8_t first) {
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first < 0xE0)
        return 2;
    if (first >= 0xE0 && first < 0xF0)
        return 3;
    return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

bool isCodePoint(char32_t c, size_t length) {
    static constexpr std::array<char32_t, 5> least = {0, 0, 0x80, 0x800, 0x10000};
    return c >= least[length] && c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
}

} // namespace

std::optional<std::u32string> fromUtf8(std::string_view bytes) {
    std::u32string result;
    for (size_t at = 0; at < bytes.size();) {
        const auto first = static_cast<uint8_t>(bytes[at]);
        const size_t length = sequenceLength(first);
        if (length == 0 || length > bytes.size() - at)
            return {};
        char32_t c = length == 1 ? first : first & (0x7F >> length);
        for (size_t i = 1; i < length; ++i) {
            const auto next = static_cast<uint8_t>(bytes[at + i]);
            if ((next & 0xC0) != 0x80)
                return {};
            c = c << 6 | (next & 0x3F);
        }
        if (!isCodePoint(c, length))
            return {};
        result += c;
        at += length;
    }
    return result;
}

std::string toUtf8(std::u32string_view characters) {
    std::string result;
    for (const char32_t c : characters)
        appendUtf8(result, c);
    return result;
}

std::string characterName(char32_t character) {
    std::array<char, 16> code{};
    std::snprintf(code.data(), code.size(), "U+%04X", static_cast<unsigned>(character));
    std::string name;
    if (character > U' ') {
        name += '\'';
        appendUtf8(name, character);
        name += "' ";
    }
    return name + "(" + code.data() + ")";
}

} // namespace xml2swf
