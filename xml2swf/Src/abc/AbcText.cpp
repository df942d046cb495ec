#include "AbcText.h"

#include <algorithm>
#include <array>

#include "XmlCharacters.h"

namespace xml2swf {

namespace {

constexpr char hexDigits[] = "0123456789abcdef";

// Which bytes cannot be taken over as they are: bit 1 << AbcTextPlace.
constexpr auto specials = [] {
    std::array<uint8_t, 256> table{};
    for (size_t i = 0; i < table.size(); ++i)
        table[i] = i < 0x20 || i >= 0x7F || i == '\\' ? 7 : 0;
    for (const char c : std::string_view("()[]{}#@*,"))
        table[static_cast<uint8_t>(c)] = 6;
    table[':'] = 4;
    return table;
}();

bool isSpecial(char c, AbcTextPlace place) {
    return (specials[static_cast<uint8_t>(c)] >> static_cast<uint32_t>(place) & 1) != 0;
}

// Length of the character that starts here, if it is UTF-8 and may stand in XML; 0 otherwise.
size_t characterAt(std::string_view bytes, size_t at) {
    const auto byte = [&](size_t i) {
        return at + i < bytes.size() ? static_cast<uint8_t>(bytes[at + i]) : uint8_t(0);
    };
    const uint8_t first = byte(0);
    const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4)
        return 0;
    uint32_t code = first & (0xFFu >> (length + 1));
    for (size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return 0;
        code = code << 6 | (byte(i) & 0x3F);
    }
    const bool isShortest = code >= (length == 2 ? 0x80u : length == 3 ? 0x800u : 0x10000u);
    const bool isSurrogate = code >= 0xD800 && code < 0xE000;
    return isShortest && !isSurrogate && code != 0xFFFE && code != 0xFFFF && code <= 0x10FFFF ? length : 0;
}

void appendByte(std::string& out, uint8_t byte) {
    switch (byte) {
    case '\n': out += "\\n"; break;
    case '\r': out += "\\r"; break;
    case '\t': out += "\\t"; break;
    default:
        out += "\\x";
        out += hexDigits[byte >> 4];
        out += hexDigits[byte & 15];
    }
}

} // namespace

void appendAbcText(std::string& out, std::string_view bytes, AbcTextPlace place) {
    for (size_t at = 0; at < bytes.size();) {
        size_t end = at;
        while (end < bytes.size() && !isSpecial(bytes[end], place))
            ++end;
        out.append(bytes, at, end - at);
        at = end;
        if (at == bytes.size())
            return;
        const auto byte = static_cast<uint8_t>(bytes[at]);
        const size_t length = byte < 0x80 ? byte >= 0x20 && byte != 0x7F : characterAt(bytes, at);
        if (length == 0) {
            appendByte(out, byte);
            ++at;
            continue;
        }
        if (byte < 0x80)
            out += '\\';
        out.append(bytes, at, length);
        at += length;
    }
}

std::optional<std::string> abcBytes(std::string_view text) {
    std::string bytes;
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\\') {
            bytes += text[at];
            continue;
        }
        if (++at == text.size())
            return {};
        switch (text[at]) {
        case 'n': bytes += '\n'; break;
        case 'r': bytes += '\r'; break;
        case 't': bytes += '\t'; break;
        case 'x': {
            const int high = at + 1 < text.size() ? hexDigit(text[at + 1]) : -1;
            const int low = at + 2 < text.size() ? hexDigit(text[at + 2]) : -1;
            if (high < 0 || low < 0)
                return {};
            bytes += static_cast<char>(high << 4 | low);
            at += 2;
            break;
        }
        default:
            if (std::string_view("\\()[]{}#@*,:").find(text[at]) == std::string_view::npos)
                return {};
            bytes += text[at];
        }
    }
    return bytes;
}

static bool isMarkup(char c) { return c == '"' || c == '&' || c == '\'' || c == '<' || c == '>'; }

bool needsReferences(std::string_view text) { return std::any_of(text.begin(), text.end(), isMarkup); }

void appendAttributeText(std::string& out, std::string_view text) {
    for (;;) {
        const auto at = static_cast<size_t>(std::find_if(text.begin(), text.end(), isMarkup) - text.begin());
        out.append(text.substr(0, at));
        if (at == text.size())
            return;
        switch (text[at]) {
        case '"': out += "&quot;"; break;
        case '&': out += "&amp;"; break;
        case '\'': out += "&apos;"; break;
        case '<': out += "&lt;"; break;
        default: out += "&gt;";
        }
        text.remove_prefix(at + 1);
    }
}

} // namespace xml2swf
