#include "MovieStrings.h"

#include <algorithm>

#include "FontCharacters.h"
#include "XmlCharacters.h"

namespace zelk {

using xml2swf::appendUtf8;

namespace {

bool isUtf8(std::string_view bytes, uint8_t version) {
    constexpr uint8_t firstWithUtf8 = 6;
    return version >= firstWithUtf8 && fromUtf8(bytes).has_value();
}

bool hasBareReturns(std::string_view text) { return text.find('\r') != text.npos && text.find('\n') == text.npos; }

} // namespace

std::string shownString(std::string_view bytes, uint8_t version) {
    std::string text;
    if (isUtf8(bytes, version)) {
        text = bytes;
    } else {
        for (const char byte : bytes)
            appendUtf8(text, xml2swf::ofWindows1252(static_cast<uint8_t>(byte)));
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

} // namespace zelk
