// Finds the original bytes of elements that were not touched.
#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "FontCharacters.h"
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
        const std::string_view element = textOf(*span);
        libswf::SwfBytes record = _search.find(element);
        if (record.empty())
            return nullptr;
        auto tag = std::make_shared<libswf::SwfTagRecord>(std::move(record));
        if (!meansTheSame(*tag, element))
            return nullptr;
        _lastTagKept = _search.atLastTag();
        return tag;
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
    std::string_view textOf(const ElementSpan& span) const { return _text.substr(span.start, span.end - span.start); }

    // The glyphs that a text gives by their characters are others when its font is.
    bool meansTheSame(const libswf::SwfTag& tag, std::string_view element) {
        using namespace libswf;
        const bool mayBeSpelled = tag.type == SwfTagCode::DefineText || tag.type == SwfTagCode::DefineText2 ||
                                  tag.type == SwfTagCode::DefineSprite;
        return !_search.original().fullForm() || !mayBeSpelled || hasSameFonts() ||
               element.find("Character=") == element.npos;
    }

    bool hasSameFonts() {
        if (!_hasSameFonts) {
            std::vector<std::string_view> fonts;
            for (const ElementSpan& span : _spans) {
                const std::string_view name = _text.substr(span.start + 1);
                if (hasFontCodes(name.substr(0, name.find_first_of(" \t\r\n/>"))))
                    fonts.push_back(textOf(span));
            }
            _hasSameFonts = _search.original().hasFonts(fonts);
        }
        return *_hasSameFonts;
    }

    OriginalMovie::Search _search;
    std::string_view _text;
    std::vector<ElementSpan> _spans;
    bool _lastTagKept = false;
    std::optional<bool> _hasSameFonts; // once it was asked for
};

} // namespace xml2swf
