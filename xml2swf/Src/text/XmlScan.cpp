#include "XmlScan.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <optional>

#include "SwfInOrder.h"
#include "XmlErrors.h"
#include "XmlMarks.h"
#include "XmlMarkup.h"

namespace xml2swf {

namespace {

std::string_view nameAt(std::string_view text, size_t at) {
    size_t end = at;
    while (end < text.size() && std::strchr(" \t\r\n/>", text[end]) == nullptr)
        ++end;
    return text.substr(at, end - at);
}

class Scanner {
public:
    Scanner(std::string_view text, uint32_t maxDepth, std::vector<ElementSpan>* spans = nullptr)
        : _text(text), _maxDepth(maxDepth), _spans(spans), _open(1) {}

    /// The scanner of a part of the text, from a "<" on that is thought to stand outside of markup. Around it are
    /// elements that began before.
    static Scanner ofPart(std::string_view text, uint32_t maxDepth, size_t start) {
        Scanner scanner(text, maxDepth);
        scanner._isPart = true;
        scanner._at = scanner._open[0].pieceStart = start;
        return scanner;
    }

    /// Goes over the text up to `stop`. False for what does not close as it opens, and when `stop` turns out to stand
    /// inside markup.
    bool scan(size_t stop) { return walk(stop) && _at == stop; }

    /// Goes on behind a part that this scanner came up to. False when the text has to be scanned in one go.
    bool append(Scanner& part) {
        if (_depth + part._deepest > _maxDepth)
            return false;
        const auto firstBlock = static_cast<uint32_t>(_result.blocks.size());
        for (XmlBlock& block : part._result.blocks) {
            shiftBlocks(block.pieces, firstBlock);
            _result.blocks.push_back(std::move(block));
        }
        for (OuterEnd& outer : part._outerEnds) {
            if (!join(outer.content, firstBlock) || !close(outer.start, outer.end))
                return false;
        }
        if (!join(part._open[0], firstBlock))
            return false;
        for (uint32_t i = 1; i <= part._depth; ++i) {
            shiftBlocks(part._open[i].pieces, firstBlock);
            push() = std::move(part._open[i]);
        }
        return true;
    }

    XmlStructure take(bool isRegular) {
        if (!isRegular)
            refuseNul(0, _text.size());
        _result.regular = isRegular && _depth == 0;
        finish(_open[0], _result.document, _text.size());
        _result.document.end = _text.size();
        return std::move(_result);
    }

private:
    // An element whose end has not come yet. Kept after use, so that its vector is used again.
    struct Open {
        size_t start = 0, tagEnd = 0, pieceStart = 0;
        uint32_t children = 0;
        uint32_t pieceChildren = 0; // the children before the piece
        bool holdsTags = false;
        size_t span = SIZE_MAX; // index in _spans
        std::vector<XmlPiece> pieces;

        // Nothing in it yet.
        void begin(size_t contentStart) {
            pieceStart = contentStart;
            children = pieceChildren = 0;
            pieces.clear();
        }
    };

    // The end tag of an element that began before the part, and what the part holds of its content.
    struct OuterEnd {
        Open content;
        size_t start, end;
    };

    static void shiftBlocks(std::vector<XmlPiece>& pieces, uint32_t by) {
        for (XmlPiece& piece : pieces)
            piece.block += piece.block == XmlPiece::small ? 0 : by;
    }

    // Joins a part's share to the innermost open element. False for elements outside of all others, which are rare.
    bool join(Open& share, uint32_t firstBlock) {
        if (_depth == 0 && share.children != 0)
            return false;
        Open& element = _open[_depth];
        const uint32_t before = element.children;
        shiftBlocks(share.pieces, firstBlock);
        for (size_t i = 0; i < share.pieces.size(); ++i) {
            const XmlPiece& piece = share.pieces[i];
            const bool isLast = i + 1 == share.pieces.size();
            if (piece.block != XmlPiece::small)
                cut(element, piece.start, before + piece.firstChild);
            cut(element, piece.end, before + (isLast ? share.pieceChildren : share.pieces[i + 1].firstChild),
                piece.block);
        }
        element.children = before + share.children;
        return true;
    }

    // Goes over what starts before `stop`. False for what does not close as it opens.
    bool walk(size_t stop) {
        constexpr size_t leastStretch = 256;
        for (size_t stretch = XmlMarks::most; _at < stop;) {
            const Walked walked = walkMarked(stretch, stop);
            if (walked == Walked::on) {
                stretch = std::min(2 * stretch, XmlMarks::most);
                continue;
            }
            if (walked == Walked::irregular || !walkOne(stop))
                return false;
            stretch = leastStretch; // more of the kind may follow
        }
        return true;
    }

    enum class Walked : uint8_t { on, toUnusual, irregular };

    // Goes over tags of the usual form. Does not move when the next one is of another.
    Walked walkMarked(size_t stretch, size_t stop) {
        const char* text = _text.data();
        const char* from = text + _at;
        const char* end = _marks.find(from, from + std::min(stretch, stop - _at), text + _text.size());
        const char* start = nullptr; // of a tag whose end has not come yet
        for (const uint32_t offset : _marks) {
            const char* at = from + offset;
            if (*at == '>') {
                if (start != nullptr && !tag(static_cast<size_t>(start - text), static_cast<size_t>(at - text)))
                    return Walked::irregular;
                start = nullptr;
            } else if (start != nullptr) {
                break;
            } else {
                start = at;
                if (at[1] == '!' || at[1] == '?')
                    break;
            }
        }
        end = start != nullptr ? start : end;
        _at = static_cast<size_t>(end - text);
        return end != from ? Walked::on : Walked::toUnusual;
    }

    // Goes over the next piece of markup, whatever it is.
    bool walkOne(size_t stop) {
        const size_t from = _at;
        _at = std::min(_text.find('<', from), stop);
        if (_at != stop) {
            const char next = _at + 1 < _text.size() ? _text[_at + 1] : '\0';
            const bool isSpecial = next == '!' || next == '?';
            const size_t end = isSpecial ? skipSpecial(_text, _at) : endOfTag(_text, _at + 1);
            if (end == _text.npos || (!isSpecial && !tag(_at, end)))
                return false;
            _at = isSpecial ? end : end + 1;
        }
        refuseNul(from, _at);
        return true;
    }

    // The parser would take it for the end.
    void refuseNul(size_t from, size_t to) const {
        const size_t at = _text.substr(from, to - from).find('\0');
        if (at != _text.npos)
            throw XmlSyntaxError("unexpected end of data", from + at);
    }

    [[gnu::always_inline]] bool tag(size_t start, size_t end) {
        if (_text[start + 1] == '/')
            return close(start, end + 1);
        const bool isClosed = _text[end - 1] == '/';
        if (isClosed && _depth != 0 && _spans == nullptr) { // most of a text, and nothing to note of it
            Open& parent = _open[_depth];
            ++parent.children;
            childEnds(parent, start, end + 1);
        } else {
            open(start, end + 1, isClosed);
        }
        return true;
    }

    void open(size_t start, size_t tagEnd, bool closed) {
        Open& parent = _open[_depth];
        ++parent.children;
        const bool isTag = _spans != nullptr && parent.holdsTags;
        if (isTag)
            _spans->push_back({start, closed ? tagEnd : _text.npos, _depth});
        if (_depth == 0 && !_isPart && _result.movie.start == MovieSpan::none && nameAt(_text, start + 1) == "Movie")
            _result.movie = {start, tagEnd, tagEnd, closed ? tagEnd : MovieSpan::none};
        if (closed) {
            childEnds(parent, start, tagEnd);
            return;
        }
        Open& element = push();
        element.start = start;
        element.tagEnd = tagEnd;
        element.begin(tagEnd);
        element.span = isTag ? _spans->size() - 1 : SIZE_MAX;
        if (_spans != nullptr) {
            const std::string_view name = nameAt(_text, start + 1);
            element.holdsTags = name == "Movie" || name == "DefineSprite";
        }
        if (_depth > _maxDepth) {
            refuseNul(0, _text.size());
            throw XmlSyntaxError("elements nested more than 1000 deep", start);
        }
    }

    Open& push() {
        _deepest = std::max(_deepest, ++_depth);
        return _depth == _open.size() ? _open.emplace_back() : _open[_depth];
    }

    // False when a big element closes under another name; the parser sees to the small ones.
    bool close(size_t start, size_t end) {
        if (_depth == 0)
            return closeOuter(start, end);
        Open& element = _open[_depth];
        Open& parent = _open[--_depth];
        if (element.span != SIZE_MAX)
            (*_spans)[element.span].end = end;
        if (element.start == _result.movie.start && _depth == 0) {
            _result.movie.contentEnd = start;
            _result.movie.end = end;
        }
        if (end - element.start < windowSize) {
            childEnds(parent, element.start, end);
            return true;
        }
        if (nameAt(_text, element.start + 1) != nameAt(_text, start + 2))
            return false;
        XmlBlock& block = _result.blocks.emplace_back();
        finish(element, block, start);
        block.start = element.start;
        block.tagEnd = element.tagEnd;
        block.end = end;
        cut(parent, element.start, parent.children - 1);
        cut(parent, end, parent.children, static_cast<uint32_t>(_result.blocks.size() - 1));
        return true;
    }

    bool closeOuter(size_t start, size_t end) {
        if (!_isPart)
            return false;
        _outerEnds.push_back({std::move(_open[0]), start, end});
        _open[0].begin(end);
        return true;
    }

    // A small child has ended: a run of them that is long enough becomes a piece.
    void childEnds(Open& parent, size_t start, size_t end) {
        if (end - start >= windowSize)
            cut(parent, start, parent.children - 1); // one huge start tag
        if (end - parent.pieceStart >= windowSize)
            cut(parent, end, parent.children);
    }

    // A piece ends, with so many children before its end.
    static void cut(Open& element, size_t end, uint32_t children, uint32_t block = XmlPiece::small) {
        if (end != element.pieceStart)
            element.pieces.push_back({element.pieceStart, end, block, element.pieceChildren});
        element.pieceStart = end;
        element.pieceChildren = children;
    }

    static void finish(Open& element, XmlBlock& block, size_t contentEnd) {
        cut(element, contentEnd, element.children);
        block.contentEnd = contentEnd;
        block.children = element.children;
        block.pieces = std::move(element.pieces);
    }

    std::string_view _text;
    uint32_t _maxDepth;
    std::vector<ElementSpan>* _spans;
    std::vector<Open> _open; // [0] stands for the document
    uint32_t _depth = 0, _deepest = 0;
    size_t _at = 0; // outside of tags
    bool _isPart = false;
    std::vector<OuterEnd> _outerEnds; // of a part
    XmlMarks _marks;
    XmlStructure _result;
};

// Where the text may be cut: at the first tag of a line every now and then.
std::vector<size_t> cutsOf(std::string_view text) {
    constexpr size_t partSize = 256 * 1024, furthest = 4096;
    std::vector<size_t> cuts(1, 0);
    for (size_t at = partSize; at < text.size(); at += partSize) {
        const std::string_view near = text.substr(at, furthest);
        for (size_t line = 0; (line = near.find('\n', line)) != near.npos;) {
            line = near.find_first_not_of(" \t\r\n", line);
            if (line != near.npos && near[line] == '<') {
                at += line;
                cuts.push_back(at);
                break;
            }
        }
    }
    return cuts;
}

// Scans parts of a text on several threads. Nothing when the text cannot be taken apart like this: it was cut inside
// markup, or is not well-formed.
std::optional<XmlStructure> scanParts(std::string_view text, uint32_t maxDepth, uint32_t threads) {
    const std::vector<size_t> cuts = cutsOf(text);
    std::vector<std::unique_ptr<Scanner>> parts(cuts.size());
    std::atomic<bool> isRegular = true;
    const auto scan = [&](size_t i) {
        if (!isRegular)
            return;
        parts[i] =
            std::make_unique<Scanner>(i == 0 ? Scanner(text, maxDepth) : Scanner::ofPart(text, maxDepth, cuts[i]));
        try {
            if (!parts[i]->scan(i + 1 < cuts.size() ? cuts[i + 1] : text.size()))
                isRegular = false;
        } catch (const XmlSyntaxError&) {
            isRegular = false;
        }
    };
    const auto join = [&](size_t i) {
        if (i == 0 || !isRegular)
            return;
        if (!parts[0]->append(*parts[i]))
            isRegular = false;
        parts[i].reset();
    };
    libswf::workInOrder({cuts.size(), scan, join}, threads);
    if (!isRegular)
        return {};
    return parts[0]->take(true);
}

} // namespace

XmlStructure scanXml(std::string_view text, uint32_t maxDepth, std::vector<ElementSpan>* spans, uint32_t threads) {
    if (threads > 1 && spans == nullptr) {
        if (std::optional<XmlStructure> structure = scanParts(text, maxDepth, threads); structure && structure->regular)
            return std::move(*structure);
    }
    Scanner scanner(text, maxDepth, spans);
    return scanner.take(scanner.scan(text.size()));
}

} // namespace xml2swf
