#include "XmlScan.h"

#include <algorithm>
#include <cstring>

#include "XmlBytes.h"
#include "XmlErrors.h"

namespace xml2swf {

namespace {

// Passes over a document type as the parser does: its inner subset in brackets is not looked into, so that nothing in
// it (the start of a comment, a quote) can hide what follows.
size_t skipDoctype(std::string_view text, size_t at) {
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

// Position of the ">" that ends a tag, quoted values passed over.
size_t endOfTag(std::string_view text, size_t at) {
    const char* end = text.data() + text.size();
    const char* found = findTagEnd(text.data() + std::min(at, text.size()), end);
    return found == end ? text.npos : static_cast<size_t>(found - text.data());
}

// "<?xml " in any case: the parser reads attributes in it, whose values may hold "?>".
bool isDeclaration(std::string_view text) {
    if (text.size() < 6 || !text.starts_with("<?") || std::strchr(" \t\r\n", text[5]) == nullptr)
        return false;
    constexpr std::string_view name = "xml";
    return std::equal(name.begin(), name.end(), text.begin() + 2, [](char a, char b) { return a == (b | 0x20); });
}

// Passes over markup that is no element. Gives the position after it, or npos when it has no end.
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

std::string_view nameAt(std::string_view text, size_t at) {
    size_t end = at;
    while (end < text.size() && std::strchr(" \t\r\n/>", text[end]) == nullptr)
        ++end;
    return text.substr(at, end - at);
}

class Scanner {
public:
    Scanner(std::string_view text, uint32_t maxDepth, std::vector<ElementSpan>* spans)
        : _text(text), _maxDepth(maxDepth), _spans(spans), _open(1) {}

    XmlStructure run() {
        const void* nul = _text.empty() ? nullptr : std::memchr(_text.data(), 0, _text.size());
        if (nul != nullptr)
            throw XmlSyntaxError("unexpected end of data",
                                 static_cast<size_t>(static_cast<const char*>(nul) - _text.data()));
        _result.regular = walk() && _depth == 0;
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
    };

    bool walk() {
        for (size_t at = 0; (at = _text.find('<', at)) != _text.npos;) {
            const char next = at + 1 < _text.size() ? _text[at + 1] : '\0';
            if (next == '!' || next == '?') {
                at = skipSpecial(_text, at);
                if (at == _text.npos)
                    return false;
                continue;
            }
            const size_t end = endOfTag(_text, at + 1);
            if (end == _text.npos)
                return false;
            if (next == '/') {
                if (_depth == 0 || !close(at, end + 1))
                    return false;
            } else {
                open(at, end + 1, _text[end - 1] == '/');
            }
            at = end + 1;
        }
        return true;
    }

    void open(size_t start, size_t tagEnd, bool closed) {
        Open& parent = _open[_depth];
        ++parent.children;
        const bool isTag = _spans != nullptr && parent.holdsTags;
        if (isTag)
            _spans->push_back({start, closed ? tagEnd : _text.npos, _depth});
        if (_depth == 0 && _result.movie.start == MovieSpan::none && nameAt(_text, start + 1) == "Movie")
            _result.movie = {start, tagEnd, tagEnd, closed ? tagEnd : MovieSpan::none};
        if (closed) {
            childEnds(parent, start, tagEnd);
            return;
        }
        if (++_depth > _maxDepth)
            throw XmlSyntaxError("elements nested more than 1000 deep", start);
        if (_depth == _open.size())
            _open.emplace_back();
        Open& element = _open[_depth];
        element.start = start;
        element.tagEnd = element.pieceStart = tagEnd;
        element.children = element.pieceChildren = 0;
        element.span = isTag ? _spans->size() - 1 : SIZE_MAX;
        if (_spans != nullptr) {
            const std::string_view name = nameAt(_text, start + 1);
            element.holdsTags = name == "Movie" || name == "DefineSprite";
        }
        element.pieces.clear();
    }

    // False when a big element closes under another name; the parser sees to the small ones.
    bool close(size_t start, size_t end) {
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
    uint32_t _depth = 0;
    XmlStructure _result;
};

} // namespace

XmlStructure scanXml(std::string_view text, uint32_t maxDepth, std::vector<ElementSpan>* spans) {
    return Scanner(text, maxDepth, spans).run();
}

size_t markupEnd(std::string_view text, size_t start) {
    const char next = start + 1 < text.size() ? text[start + 1] : '\0';
    if (next == '!' || next == '?')
        return std::min(skipSpecial(text, start), text.size());
    const size_t end = endOfTag(text, start + 1);
    return end == text.npos ? text.size() : end + 1;
}

} // namespace xml2swf
