// Finds the original bytes of elements that were not touched.
#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include "OriginalMovie.h"
#include "XmlScan.h"

namespace xml2swf {

/// One compile's view of the original movie.
class TagKeeper {
public:
    TagKeeper(const OriginalMovie& original, std::string_view text, std::vector<ElementSpan> spans)
        : _search(original), _text(text), _spans(std::move(spans)) {}

    /// The original record of the element whose name stands at this offset; null when its text is not as it was.
    std::shared_ptr<libswf::SwfTag> untouched(size_t nameOffset) {
        _lastTagKept = false;
        const auto span = std::lower_bound(_spans.begin(), _spans.end(), nameOffset - 1,
                                           [](const ElementSpan& s, size_t start) { return s.start < start; });
        if (span == _spans.end() || span->start != nameOffset - 1 || span->end == std::string_view::npos)
            return nullptr;
        libswf::SwfBytes record = _search.find(_text.substr(span->start, span->end - span->start));
        if (record.empty())
            return nullptr;
        _lastTagKept = _search.atLastTag();
        return std::make_shared<libswf::SwfTagRecord>(std::move(record));
    }

    /// What the movie takes over; a tail that does not begin with End only while the last tag is the original's last.
    libswf::SwfMovieSource source(bool wholeText) const {
        libswf::SwfMovieSource result = _search.original().source();
        const libswf::SwfBytes& tail = *result.tail;
        const bool endsList = tail.size() >= 2 && tail.data()[1] == 0 && tail.data()[0] < 64;
        if (!endsList && !_lastTagKept)
            result.tail.reset();
        if (wholeText)
            result.wholeFile = _search.original().wholeFile();
        return result;
    }

private:
    OriginalMovie::Search _search;
    std::string_view _text;
    std::vector<ElementSpan> _spans;
    bool _lastTagKept = false;
};

} // namespace xml2swf
