// The way through a movie's text: its tags, what stands in them, and text where none belongs.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "ElementText.h"
#include "XmlTagSpans.h"

namespace zelk {

/// A child of the movie or of a sprite among its tags.
struct ScannedTag {
    static constexpr uint32_t movie = UINT32_MAX;

    std::string_view name;
    size_t start = 0;      ///< of "<"
    uint32_t number = 0;   ///< tags are counted in the order in which they start, from 0
    uint32_t list = movie; ///< the number of the sprite that it stands in
    uint32_t row = 0;      ///< in that list, from 0
};

/// What a scan tells of. Texts and places are those of the whole text.
class MovieVisitor {
public:
    virtual ~MovieVisitor() = default;
    virtual void tagBegins(const ScannedTag&, std::string_view /*startTag*/) {}
    virtual void tagEnds(const ScannedTag&, size_t /*end*/) {}
    /// An element inside a tag that is no list of tags.
    virtual void element(const ScannedTag& /*around*/, std::string_view /*startTag*/, size_t /*offset*/) {}
    /// Text and not only blanks between the elements of a list of tags, or in an element. `isAlone`: the element has no
    /// elements. Once for an element; `around` is null in the movie's own list.
    virtual void text(const ScannedTag* /*around*/, std::string_view /*element*/, bool /*isAlone*/, size_t) {}
};

class MovieScan {
public:
    /// `text` is well-formed, as findTagSpans says, and `movie` is its Movie element.
    MovieScan(std::string_view text, const xml2swf::MovieSpan& movie, MovieVisitor& visitor)
        : _text(text), _movie(movie), _visitor(visitor) {}

    void run();

private:
    struct Element {
        std::string_view name;
        bool isList = false, isTag = false, hasElements = false;
        size_t text = std::string_view::npos; // the first of it
        uint32_t rows = 0;                    // of a list
        ScannedTag tag = {};                  // around it, or itself
    };

    void begin(size_t open, size_t end);
    void finish(size_t end);
    void noteText(size_t at, size_t end);

    const std::string_view _text;
    const xml2swf::MovieSpan _movie;
    MovieVisitor& _visitor;
    std::vector<Element> _open;
    uint32_t _tags = 0;
};

} // namespace zelk
