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
