#include "TagIndex.h"

#include <algorithm>

#include "Exceptions.h"
#include "TagText.h"
#include "XmlErrors.h"

namespace zelk {

using namespace xml2swf;

TagIndex::TagIndex(std::string_view text, IProgressReporter* progress) {
    try {
        const XmlTagSpans found = findTagSpans(text, progress);
        _movie = found.movie;
        if (_movie.start == MovieSpan::none)
            throw NotMovieException::noMovie();
        add(text, found.spans);
    } catch (const XmlSyntaxError& error) {
        throw XmlException(error.what(), error.place.row, error.place.column);
    }
    orderChildren();
}

void TagIndex::add(std::string_view text, const std::vector<ElementSpan>& spans) {
    std::vector<std::pair<uint32_t, uint32_t>> open; // the sprites around, with the depth of their children
    for (const ElementSpan& span : spans) {
        if (span.start < _movie.tagEnd || span.start >= _movie.contentEnd)
            continue;
        while (!open.empty() && _tags[open.back().first].end <= span.start)
            open.pop_back();
        // What stands in an element that is no list of tags is no tag of this movie.
        if (span.depth != (open.empty() ? 1 : open.back().second))
            continue;
        const uint32_t parent = open.empty() ? movie : open.back().first;
        uint32_t& siblings = parent == movie ? _topCount : _tags[parent].childCount;
        const auto number = static_cast<uint32_t>(_tags.size());
        const uint32_t row = siblings++;
        _tags.push_back({static_cast<uint32_t>(span.start), static_cast<uint32_t>(span.end), parent, row, 0, 0});
        if (elementName(text.substr(span.start)) == "DefineSprite")
            open.emplace_back(number, span.depth + 1);
    }
}

void TagIndex::orderChildren() {
    uint32_t next = _topCount;
    for (Tag& tag : _tags) {
        tag.firstChild = next;
        next += tag.childCount;
    }
    _children.resize(_tags.size());
    for (uint32_t i = 0; i < count(); ++i) {
        const Tag& tag = _tags[i];
        _children[(tag.parent == movie ? 0 : _tags[tag.parent].firstChild) + tag.row] = i;
    }
}

uint32_t TagIndex::child(uint32_t parent, uint32_t row) const {
    return _children[(parent == movie ? 0 : _tags[parent].firstChild) + row];
}

uint32_t TagIndex::at(size_t offset) const {
    const auto behind = std::ranges::upper_bound(_tags, offset, {}, [](const Tag& tag) { return size_t(tag.start); });
    if (behind == _tags.begin())
        return movie;
    auto tag = static_cast<uint32_t>(behind - _tags.begin() - 1);
    while (tag != movie && _tags[tag].end <= offset)
        tag = _tags[tag].parent;
    return tag;
}

TagPath TagIndex::path(uint32_t tag) const {
    TagPath path;
    for (; tag != movie; tag = parent(tag))
        path.push_back(row(tag));
    std::ranges::reverse(path);
    return path;
}

uint32_t TagIndex::find(const TagPath& path) const {
    uint32_t tag = movie;
    for (uint32_t row : path) {
        if (row >= childCount(tag))
            return movie;
        tag = child(tag, row);
    }
    return tag;
}

} // namespace zelk
