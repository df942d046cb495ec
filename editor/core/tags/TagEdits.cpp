#include "TagEdits.h"

#include <algorithm>

#include "TagText.h"

namespace zelk {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isLineEnd(char c) { return c == '\n' || c == '\r'; }

bool startsLine(std::string_view text, size_t offset) {
    const std::string_view indent = lineIndent(text, offset);
    return indent.data() + indent.size() == text.data() + offset;
}

// Behind the line end, if nothing but blanks stands before it; npos otherwise.
size_t behindLineEnd(std::string_view text, size_t at) {
    while (at < text.size() && isBlank(text[at]))
        ++at;
    if (at == text.size() || !isLineEnd(text[at]))
        return text.npos;
    return at + (text.substr(at).starts_with("\r\n") ? 2 : 1);
}

// The same behind the comments that begin on the line.
size_t behindComments(std::string_view text, size_t at) {
    for (;;) {
        while (at < text.size() && isBlank(text[at]))
            ++at;
        if (!text.substr(at).starts_with("<!--"))
            return behindLineEnd(text, at);
        at = xml2swf::markupEnd(text, at);
    }
}

TextChange without(std::string_view text, size_t start, size_t end) {
    const std::string_view indent = lineIndent(text, start);
    const bool isFirst = startsLine(text, start);
    const size_t next = behindLineEnd(text, end);
    if (isFirst && next != text.npos)
        return {start - indent.size(), next, {}};
    if (isFirst) {
        while (end < text.size() && isBlank(text[end]))
            ++end;
    } else {
        while (isBlank(text[start - 1]))
            --start;
    }
    return {start, end, {}};
}

// What elements need to know about where they go.
struct Place {
    std::string_view text, lineEnd;
    std::string indent;       // of the new elements
    std::string parentIndent; // of the line in which the parent starts

    std::string lines(const std::vector<std::string>& elements) const {
        std::string result;
        for (const std::string& element : elements)
            result.append(indent).append(reindented(element, {}, indent)).append(lineEnd);
        return result;
    }
    std::string inLine(const std::vector<std::string>& elements) const {
        std::string result;
        for (const std::string& element : elements)
            result += element;
        return result;
    }
};

struct Parent {
    size_t start, tagEnd;
    bool closesItself;
};

Parent parentAt(std::string_view text, const TagIndex& index, uint32_t parent) {
    const size_t start = parent == TagIndex::movie ? index.movieSpan().start : index.start(parent);
    const size_t tagEnd = start + startTagOf(text.substr(start)).size();
    return {start, tagEnd, text[tagEnd - 2] == '/'};
}

// One level of indentation, as the movie's first tag shows it.
std::string indentUnit(std::string_view text, const TagIndex& index) {
    if (index.count() != 0 && startsLine(text, index.start(0))) {
        const std::string_view outer = lineIndent(text, index.movieSpan().start);
        const std::string_view inner = lineIndent(text, index.start(0));
        if (inner.size() > outer.size() && inner.starts_with(outer))
            return std::string(inner.substr(outer.size()));
    }
    return "    ";
}

Place placeIn(std::string_view text, const TagIndex& index, uint32_t parent, uint32_t neighbour) {
    const Parent around = parentAt(text, index, parent);
    Place place{text, lineEndOf(text), {}, std::string(lineIndent(text, around.start))};
    if (neighbour != TagIndex::movie && startsLine(text, index.start(neighbour)))
        place.indent = lineIndent(text, index.start(neighbour));
    else
        place.indent = place.parentIndent + indentUnit(text, index);
    return place;
}

// Into an element without tags.
TextChange filling(const Place& place, const Parent& parent, const std::vector<std::string>& elements) {
    const std::string content = std::string(place.lineEnd) + place.lines(elements) + place.parentIndent;
    if (!parent.closesItself)
        return {parent.tagEnd, parent.tagEnd, content};
    size_t slash = parent.tagEnd - 2;
    while (isBlank(place.text[slash - 1]))
        --slash;
    const std::string name(elementName(place.text.substr(parent.start)));
    return {slash, parent.tagEnd, ">" + content + "</" + name + ">"};
}

} // namespace

std::vector<uint32_t> tagsAt(const TagIndex& index, const std::vector<TagPath>& positions) {
    std::vector<uint32_t> found, tags;
    for (const TagPath& position : positions)
        found.push_back(index.find(position));
    std::ranges::sort(found);
    for (uint32_t tag : found) {
        if (tag != TagIndex::movie && (tags.empty() || index.start(tag) >= index.end(tags.back())))
            tags.push_back(tag);
    }
    return tags;
}

std::vector<TextChange> removal(TaggedText& tagged, const std::vector<uint32_t>& tags) {
    const TagIndex& index = tagged.tags();
    const std::string_view text = tagged.text();
    std::vector<TextChange> result;
    for (size_t i = 0; i < tags.size();) {
        // Neighbours go together, so that a line which they share goes as well.
        const size_t start = index.start(tags[i]);
        size_t end = index.end(tags[i]);
        for (++i; i < tags.size(); ++i) {
            const std::string_view between = text.substr(end, index.start(tags[i]) - end);
            if (between.find_first_not_of(" \t\r\n") != between.npos)
                break;
            end = index.end(tags[i]);
        }
        result.push_back(without(text, start, end));
    }
    return result;
}

TextChange insertion(TaggedText& tagged, uint32_t parent, uint32_t before, const std::vector<std::string>& elements) {
    const TagIndex& index = tagged.tags();
    const std::string_view text = tagged.text();
    const bool hasTags = index.childCount(parent) != 0;
    const uint32_t neighbour = before != TagIndex::movie ? before : hasTags ? index.child(parent, 0) : before;
    const Place place = placeIn(text, index, parent, neighbour);
    const Parent around = parentAt(text, index, parent);
    const size_t at = before == TagIndex::movie ? around.tagEnd : index.end(before);
    if (around.closesItself)
        return filling(place, around, elements);
    if (const size_t next = behindComments(text, at); next != text.npos)
        return {next, next, place.lines(elements)};
    if (!hasTags)
        return filling(place, around, elements);
    return {at, at, place.inLine(elements)};
}

TextChange insertionAt(TaggedText& tagged, const TagPath& position, const std::vector<std::string>& elements) {
    const TagIndex& index = tagged.tags();
    const uint32_t parent = index.find(TagPath(position.begin(), position.end() - 1));
    const uint32_t row = std::min(position.back(), index.childCount(parent));
    return insertion(tagged, parent, row == 0 ? TagIndex::movie : index.child(parent, row - 1), elements);
}

TextChange replacement(TaggedText& tagged, uint32_t tag, std::string_view element) {
    const TagIndex& index = tagged.tags();
    const std::string_view text = tagged.text();
    const size_t start = index.start(tag);
    return {start, index.end(tag), reindented(element, {}, lineIndent(text, start))};
}

std::string loneElement(TaggedText& tagged, uint32_t tag) {
    const std::string_view indent = lineIndent(tagged.text(), tagged.tags().start(tag));
    return reindented(tagged.element(tag), indent, {});
}

} // namespace zelk
