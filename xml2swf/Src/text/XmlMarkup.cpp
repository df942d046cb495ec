#include "XmlMarkup.h"

#include <algorithm>
#include <cstring>

#include "XmlBytes.h"
#include "XmlTagSpans.h"

namespace xml2swf {

// Passes over a document type as the parser does: its inner subset in brackets is not looked into, so that nothing in
// it (the start of a comment, a quote) can hide what follows.
static size_t skipDoctype(std::string_view text, size_t at) {
    uint32_t brackets = 0;
    for (; (at = text.find_first_of("[]>", at)) != text.npos; ++at) {
        if (text[at] == '[')
            ++brackets;
        else if (text[at] == ']')
            brackets -= brackets != 0;
        else if (brackets == 0)
            return at + 1;
    }
    return at;
}

// "<?xml " in any case: the parser reads attributes in it, whose values may hold "?>".
static bool isDeclaration(std::string_view text) {
    if (text.size() < 6 || !text.starts_with("<?") || std::strchr(" \t\r\n", text[5]) == nullptr)
        return false;
    constexpr std::string_view name = "xml";
    return std::equal(name.begin(), name.end(), text.begin() + 2, [](char a, char b) { return a == (b | 0x20); });
}

size_t endOfTag(std::string_view text, size_t at) {
    const char* end = text.data() + text.size();
    const char* found = findTagEnd(text.data() + std::min(at, text.size()), end);
    return found == end ? text.npos : static_cast<size_t>(found - text.data());
}

size_t skipSpecial(std::string_view text, size_t at) {
    auto after = [&](std::string_view end, size_t from) {
        const size_t found = text.find(end, from);
        return found == text.npos ? text.npos : found + end.size();
    };
    const std::string_view rest = text.substr(at, 9);
    if (rest.starts_with("<!--"))
        return after("-->", at + 4);
    if (rest.starts_with("<![CDATA["))
        return after("]]>", at + 9);
    if (isDeclaration(rest)) {
        const size_t end = endOfTag(text, at);
        return end == text.npos ? end : end + 1;
    }
    if (rest.starts_with("<?"))
        return after("?>", at + 2);
    const char following = at + 9 < text.size() ? text[at + 9] : '\0';
    if (rest == "<!DOCTYPE" && std::strchr(" \t\r\n", following) != nullptr)
        return skipDoctype(text, at + 9);
    return after(">", at + 2);
}

size_t markupEnd(std::string_view text, size_t start) {
    const char next = start + 1 < text.size() ? text[start + 1] : '\0';
    if (next == '!' || next == '?')
        return std::min(skipSpecial(text, start), text.size());
    const size_t end = endOfTag(text, start + 1);
    return end == text.npos ? text.size() : end + 1;
}

} // namespace xml2swf
