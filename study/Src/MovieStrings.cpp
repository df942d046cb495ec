#include "MovieStrings.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "FontCharacters.h"
#include "XmlCharacters.h"

namespace zelk {

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

bool isUtf8(std::string_view bytes, uint8_t version) {
    constexpr uint8_t firstWithUtf8 = 6;
    return version >= firstWithUtf8 && fromUtf8(bytes).has_value();
}

bool hasBareReturns(std::string_view text) { return text.find('\r') != text.npos && text.find('\n') == text.npos; }

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
        xml2swf::appendUtf8(result, c);
    return result;
}

std::string shownString(std::string_view bytes, uint8_t version) {
    std::string text;
    if (isUtf8(bytes, version)) {
        text = bytes;
    } else {
        for (const char byte : bytes)
            xml2swf::appendUtf8(text, xml2swf::ofWindows1252(static_cast<uint8_t>(byte)));
    }
    if (hasBareReturns(bytes))
        std::replace(text.begin(), text.end(), '\r', '\n');
    return text;
}

std::string storedString(std::string_view text, std::string_view before, uint8_t version) {
    std::string result(text);
    if (hasBareReturns(before))
        std::replace(result.begin(), result.end(), '\n', '\r');
    const std::optional<std::u32string> characters = fromUtf8(result);
    if (!characters)
        throw TextRefusal{"the new text is no UTF-8"};
    if (characters->find(U'\0') != characters->npos)
        throw TextRefusal{"the new text has a NUL in it"};
    if (isUtf8(before, version))
        return result;
    result.clear();
    for (const char32_t c : *characters) {
        const std::optional<uint8_t> byte = xml2swf::toWindows1252(c);
        if (!byte)
            throw TextRefusal{"the movie's strings are Windows-1252, which has no " + characterName(c)};
        result += static_cast<char>(*byte);
    }
    return result;
}

std::string characterName(char32_t character) {
    std::array<char, 16> code{};
    std::snprintf(code.data(), code.size(), "U+%04X", static_cast<unsigned>(character));
    std::string name;
    if (character > U' ') {
        name += '\'';
        xml2swf::appendUtf8(name, character);
        name += "' ";
    }
    return name + "(" + code.data() + ")";
}

} // namespace zelk
