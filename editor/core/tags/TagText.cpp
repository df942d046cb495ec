#include "TagText.h"

#include <algorithm>
#include <charconv>

#include "Exceptions.h"
#include "TagIndex.h"
#include "XmlCharacters.h"
#include "XmlErrors.h"

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

NotMovieException misplaced(std::string_view text, size_t offset, const char* what) {
    XmlPlace place{offset};
    place.locate(text);
    return {what, place.row, place.column};
}

// Throws for anything but blanks and comments.
void checkBetween(std::string_view text, size_t at, size_t end) {
    while ((at = text.find_first_not_of(blanks, at)) < end) {
        if (!text.substr(at).starts_with("<!--"))
            throw misplaced(text, at, "Only elements may stand here.");
        at = markupEnd(text, at);
    }
}

// An element with other blanks: `change` puts something in place of each that has a line end and stands between
// elements.
template <class Change>
std::string withBlanks(std::string_view element, Change change) {
    std::string result;
    for (size_t at = 0; at < element.size();) {
        const size_t end =
            element[at] == '<' ? markupEnd(element, at) : std::min(element.find('<', at), element.size());
        const std::string_view piece = element.substr(at, end - at);
        at = end;
        if (piece.find_first_of("\r\n") == piece.npos || piece.find_first_not_of(blanks) != piece.npos)
            result += piece;
        else
            change(piece, result);
    }
    return result;
}

} // namespace

std::string_view elementName(std::string_view element) {
    const size_t end = std::min(element.find_first_of(" \t\r\n/>", 1), element.size());
    return element.substr(std::min<size_t>(1, end), end - std::min<size_t>(1, end));
}

std::string_view startTagOf(std::string_view element) { return element.substr(0, markupEnd(element, 0)); }

// --- attributes ------------------------------------------------------------------------------------------------------

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

// --- elements --------------------------------------------------------------------------------------------------------

std::vector<std::string> splitElements(std::string_view text) {
    constexpr std::string_view before = "<Movie>\n", after = "</Movie>";
    const std::string whole = std::string(before).append(text).append(after);
    XmlTagSpans found;
    try {
        found = findTagSpans(whole);
    } catch (const XmlSyntaxError& error) {
        throw XmlException(error.what(), std::max(error.place.row, 2u) - 1, error.place.column);
    }
    if (found.movie.contentEnd != whole.size() - after.size())
        throw XmlException("elements do not close as they open", 1, 1);
    std::vector<std::string> elements;
    size_t at = 0;
    for (const ElementSpan& span : found.spans) {
        if (span.depth != 1)
            continue;
        const size_t start = span.start - before.size(), end = span.end - before.size();
        checkBetween(text, at, start);
        at = end;
        const std::string_view element = text.substr(start, end - start);
        if (elementName(element) == "Movie")
            throw misplaced(text, start, "Movie is no tag.");
        elements.push_back(reindented(element, lineIndent(text, start), {}));
    }
    checkBetween(text, at, text.size());
    if (elements.empty())
        throw NotMovieException("An element has to stand here.", 1, 1);
    return elements;
}

std::string trimmed(std::string_view text) {
    const size_t start = std::min(text.find_first_not_of(blanks), text.size());
    return std::string(text.substr(start, text.find_last_not_of(blanks) + 1 - start));
}

std::string reindented(std::string_view element, std::string_view from, std::string_view to) {
    return withBlanks(element, [&](std::string_view piece, std::string& result) {
        const size_t line = piece.find_last_of("\r\n") + 1;
        const std::string_view indent = piece.substr(line);
        result += piece.substr(0, line);
        if (indent.starts_with(from))
            result.append(to).append(indent.substr(from.size()));
        else
            result += indent;
    });
}

std::string withLineEnds(std::string_view element, std::string_view lineEnd) {
    return withBlanks(element, [&](std::string_view piece, std::string& result) {
        for (size_t i = 0; i < piece.size(); ++i) {
            if (piece[i] != '\r' && piece[i] != '\n') {
                result += piece[i];
                continue;
            }
            i += piece.substr(i).starts_with("\r\n") ? 1 : 0;
            result += lineEnd;
        }
    });
}

std::string_view lineEndOf(std::string_view text) {
    const size_t end = text.find_first_of("\r\n");
    if (end == text.npos || text[end] == '\n')
        return "\n";
    return text.substr(end).starts_with("\r\n") ? "\r\n" : "\r";
}

std::string_view lineIndent(std::string_view text, size_t offset) {
    const size_t before = offset == 0 ? text.npos : text.find_last_of("\r\n", offset - 1);
    const size_t start = before == text.npos ? 0 : before + 1;
    size_t end = start;
    while (end < offset && (text[end] == ' ' || text[end] == '\t'))
        ++end;
    return text.substr(start, end - start);
}

} // namespace zelk
