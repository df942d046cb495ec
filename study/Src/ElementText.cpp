#include "ElementText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "XmlCharacters.h"
#include "XmlTagSpans.h"

namespace zelk {

using namespace xml2swf;

namespace {

constexpr std::string_view blanks = " \t\r\n";

// At most this many bytes stand between "&" and ";".
constexpr size_t longestReference = 10;

constexpr std::pair<std::string_view, char> references[] = {
    {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}};

// False for a name that stands for nothing.
bool appendReferred(std::string& out, std::string_view name) {
    for (const auto& [known, c] : references) {
        if (name == known) {
            out += c;
            return true;
        }
    }
    if (!name.starts_with('#'))
        return false;
    const bool isHex = name.starts_with("#x");
    name.remove_prefix(isHex ? 2 : 1);
    uint32_t code = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), code, isHex ? 16 : 10);
    if (error != std::errc() || end != name.data() + name.size() || code == 0 || code > 0x10FFFF)
        return false;
    xml2swf::appendUtf8(out, code);
    return true;
}

} // namespace

std::string_view elementName(std::string_view element) {
    const size_t end = std::min(element.find_first_of(" \t\r\n/>", 1), element.size());
    return element.substr(std::min<size_t>(1, end), end - std::min<size_t>(1, end));
}

std::string_view startTagOf(std::string_view element) { return element.substr(0, markupEnd(element, 0)); }

std::vector<TagAttribute> attributesOf(std::string_view startTag) {
    std::vector<TagAttribute> attributes;
    size_t at = elementName(startTag).size() + 1;
    for (;;) {
        const size_t name = startTag.find_first_not_of(blanks, at);
        const size_t equals = startTag.find('=', std::min(name, startTag.size()));
        const size_t quote = startTag.find_first_of("\"'", std::min(equals, startTag.size()));
        const size_t end = quote == startTag.npos ? quote : startTag.find(startTag[quote], quote + 1);
        if (end == startTag.npos)
            return attributes;
        const size_t nameEnd = std::min(startTag.find_first_of(" \t\r\n=", name), equals);
        attributes.push_back({startTag.substr(name, nameEnd - name), startTag.substr(quote + 1, end - quote - 1)});
        at = end + 1;
    }
}

std::optional<TagAttribute> attributeOf(std::string_view startTag, std::string_view name) {
    for (const TagAttribute& attribute : attributesOf(startTag)) {
        if (attribute.name == name)
            return attribute;
    }
    return {};
}

std::string decoded(std::string_view value) {
    std::string result;
    for (size_t at = 0; at < value.size();) {
        const size_t reference = std::min(value.find('&', at), value.size());
        result += value.substr(at, reference - at);
        at = reference;
        if (at == value.size())
            break;
        const size_t end = value.substr(at, longestReference).find(';');
        if (end != value.npos && appendReferred(result, value.substr(at + 1, end - 1)))
            at += end + 1;
        else
            result += value[at++];
    }
    return result;
}

} // namespace zelk
