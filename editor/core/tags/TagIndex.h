// Where the tags of a document's text stand.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "XmlTagSpans.h"

namespace zelk {

/// A tag's position in the list of tags it stands in, after those of the sprites around it. Positions count from 0.
using TagPath = std::vector<uint32_t>;

/// Knows only places, in 24 bytes a tag; names and attributes are read from the text when they are needed. Tags are
/// numbered in the order in which they start. They are the children of the movie and of every sprite among its tags.
class TagIndex {
public:
    /// The movie itself, as the parent of its tags.
    static constexpr uint32_t movie = UINT32_MAX;

    TagIndex() = default;
    /// Goes over the whole text. Throws XmlException when it is not well-formed, NotMovieException when it has no
    /// Movie element.
    explicit TagIndex(std::string_view text, xml2swf::IProgressReporter* progress = nullptr);

    uint32_t count() const { return static_cast<uint32_t>(_tags.size()); }
    size_t start(uint32_t tag) const { return _tags[tag].start; }
    size_t end(uint32_t tag) const { return _tags[tag].end; }
    uint32_t parent(uint32_t tag) const { return _tags[tag].parent; }
    uint32_t row(uint32_t tag) const { return _tags[tag].row; }
    uint32_t childCount(uint32_t parent) const { return parent == movie ? _topCount : _tags[parent].childCount; }
    uint32_t child(uint32_t parent, uint32_t row) const;
    const xml2swf::MovieSpan& movieSpan() const { return _movie; }

    /// The innermost tag around a place of the text; `movie` when there is none.
    uint32_t at(size_t offset) const;
    TagPath path(uint32_t tag) const;
    /// `movie` for an empty path and for one that leads nowhere.
    uint32_t find(const TagPath& path) const;

private:
    struct Tag { // texts have at most 1 GiB
        uint32_t start, end, parent, row, firstChild, childCount;
    };

    void add(std::string_view text, const std::vector<xml2swf::ElementSpan>& spans);
    void orderChildren();

    std::vector<Tag> _tags;
    std::vector<uint32_t> _children; // those of each parent in a row, the movie's first
    uint32_t _topCount = 0;
    xml2swf::MovieSpan _movie;
};

} // namespace zelk
