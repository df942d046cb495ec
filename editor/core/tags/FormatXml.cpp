#include "FormatXml.h"

#include "Conversion.h"
#include "Exceptions.h"
#include "XmlErrors.h"
#include "XmlTagSpans.h"

namespace zelk {

using namespace xml2swf;

namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr size_t pieceSize = size_t(1) << 20;

struct Markup {
    enum class Kind : uint8_t { start, end, empty, text, other }; // text: a CDATA section; other: comments and the like
    Kind kind;
    size_t start, end; // from "<" to behind ">"
};

// The markup that begins at or behind a place; none behind the last one.
std::optional<Markup> markupAt(std::string_view text, size_t place) {
    using Kind = Markup::Kind;
    const size_t start = text.find('<', place);
    if (start == text.npos)
        return std::nullopt;
    const size_t end = markupEnd(text, start);
    const std::string_view markup = text.substr(start, end - start);
    const Kind kind = markup.starts_with("</")                               ? Kind::end
                      : markup.starts_with("<![CDATA[")                      ? Kind::text
                      : markup.starts_with("<!") || markup.starts_with("<?") ? Kind::other
                      : markup.ends_with("/>")                               ? Kind::empty
                                                                             : Kind::start;
    return Markup{kind, start, end};
}

bool isBlank(std::string_view text) { return text.find_first_not_of(blanks) == text.npos; }

// The byte order mark, the only text that may stand outside of the elements.
size_t startOfXml(std::string_view text) { return text.starts_with("\xEF\xBB\xBF") ? 3 : 0; }

// What has to be known of the elements before they are written.
class Outline {
public:
    Outline(std::string_view text, size_t start, size_t end, IProgressReporter* progress)
        : _text(text), _start(start), _end(end) {
        size_t place = startOfXml(text), reported = 0;
        _open.push_back({0, place, false});
        while (const auto markup = markupAt(text, place)) {
            if (!isBlank(text.substr(place, markup->start - place)) || markup->kind == Markup::Kind::text)
                _open.back().hasText = true;
            add(*markup);
            place = markup->end;
            if (progress != nullptr && place - reported > pieceSize)
                progress->report(0.2 + 0.3 * double(reported = place) / double(text.size()));
        }
        if (!_isFound)
            take({0, startOfXml(text), false}, text.size(), 0);
    }

    /// Whether elements stand in the element, and no text. Elements count in the order of their starts.
    bool isFormatted(size_t element) const { return _formatted[element]; }

    // What is formatted: the content of an element, and how many elements were open and had started before.
    size_t contentStart = 0, contentEnd = 0, depth = 0, elementsBefore = 0;

private:
    struct Open {
        size_t number, contentStart;
        bool hasText, hasElements = false;
    };

    void add(const Markup& markup) {
        using Kind = Markup::Kind;
        if (markup.kind == Kind::start || markup.kind == Kind::empty)
            _open.back().hasElements = true;
        if (markup.kind == Kind::start) {
            _open.push_back({_formatted.size(), markup.end, false});
            _formatted.push_back(false);
        } else if (markup.kind == Kind::end && _open.size() > 1) {
            const Open element = _open.back();
            _open.pop_back();
            _formatted[element.number] = element.hasElements && !element.hasText;
            if (_start < _end && element.contentStart <= _start && _end <= markup.start && !_isFound &&
                _formatted[element.number]) {
                take(element, markup.start, _open.size());
                elementsBefore = element.number + 1;
            }
            // What stands among text is text.
            if (element.hasText && _isFound && contentStart > element.contentStart)
                _isFound = false;
        }
    }

    void take(const Open& element, size_t end, size_t elementDepth) {
        _isFound = true;
        contentStart = element.contentStart;
        contentEnd = end;
        depth = elementDepth;
        elementsBefore = 0;
    }

    const std::string_view _text;
    const size_t _start, _end;
    std::vector<Open> _open;
    std::vector<bool> _formatted;
    bool _isFound = false;
};

class Formatter {
public:
    Formatter(std::string_view text, const Outline& outline, size_t start, size_t end, size_t caret,
              const FormatStyle& style)
        : _text(text), _outline(outline), _start(start), _end(end), _style(style), _caret(caret), _depth(outline.depth),
          _element(outline.elementsBefore) {}

    FormattedXml run(IProgressReporter* progress) {
        _from = _place = _written = _outline.contentStart;
        size_t reported = _place;
        if (_caret < _place)
            setCaret(_caret);
        while (const auto markup = markupAt(_text, _place)) {
            if (markup->start > _outline.contentEnd || (_keepFrom == none && isBehindSelection(*markup)))
                break;
            add(*markup);
            if (progress != nullptr && _place - reported > pieceSize)
                progress->report(0.5 + 0.5 * double(reported = _place) / double(_text.size()));
        }
        endPiece();
        if (!_caretIsSet)
            _result.caret = _caret - _from + _written;
        return std::move(_result);
    }

private:
    static constexpr size_t none = SIZE_MAX;

    bool hasSelection() const { return _start < _end; }
    bool isTop() const { return _depth == _outline.depth; }

    // The first markup behind the selected elements still gets a line of its own.
    bool isBehindSelection(const Markup& markup) {
        if (!hasSelection() || !isTop() || markup.start < _end)
            return false;
        if (_hasWritten) {
            const size_t depth = _depth - (markup.kind == Markup::Kind::end ? 1 : 0);
            startLine(markup.start, depth);
            _place = markup.start;
        }
        return true;
    }

    void add(const Markup& markup) {
        using Kind = Markup::Kind;
        if (markup.kind == Kind::end)
            --_depth;
        const bool isKept = isInKept() || isBeforeSelection(markup);
        if (isKept) {
            if (!_caretIsSet && _caret < markup.end)
                setCaret(_written + _out.size() + (_caret - _place));
            _out.append(_text.substr(_place, markup.end - _place));
        } else {
            startLine(markup.start, _depth);
            if (!_caretIsSet && _caret < markup.end)
                setCaret(_written + _out.size() + (_caret - std::min(_caret, markup.start)));
            put(markup);
            _hasWritten = true;
        }
        _place = markup.end;
        if (markup.kind == Kind::start)
            open();
        else if (markup.kind == Kind::end && _depth == _keepFrom)
            _keepFrom = none;
        if (_out.size() > pieceSize && !isInKept())
            endPiece();
    }

    bool isInKept() const { return _keepFrom != none; }

    // Elements of the run before those that the selection touches.
    bool isBeforeSelection(const Markup& markup) const { return hasSelection() && !_hasWritten && !touches(markup); }

    // Whether an element that begins here reaches into the selection.
    bool touches(const Markup& markup) const {
        if (!isTop())
            return false;
        size_t end = markup.end;
        if (markup.kind == Markup::Kind::start) {
            size_t open = 1;
            while (open > 0 && end <= _start) {
                const auto next = markupAt(_text, end);
                open += next->kind == Markup::Kind::start ? 1 : next->kind == Markup::Kind::end ? size_t(-1) : 0;
                end = next->end;
            }
        }
        return end > _start;
    }

    void open() {
        if (!isInKept() && !_outline.isFormatted(_element))
            _keepFrom = _depth;
        ++_element;
        ++_depth;
    }

    void startLine(size_t until, size_t depth) {
        if (_outline.depth == 0 && _place == _outline.contentStart) { // the start of the text
            _out.append(_text.substr(_place, until - _place));
            return;
        }
        _out += _style.lineEnd;
        for (size_t i = 0; i < depth; ++i)
            _out += _style.unit;
    }

    // Blanks between attributes become one each.
    void put(const Markup& markup) {
        const std::string_view tag = _text.substr(markup.start, markup.end - markup.start);
        if (markup.kind != Markup::Kind::start && markup.kind != Markup::Kind::empty) {
            _out.append(tag);
            return;
        }
        const bool isEmpty = markup.kind == Markup::Kind::empty;
        size_t at = 0;
        const size_t end = tag.size() - (isEmpty ? 2 : 1);
        while (at < end) {
            const size_t next = std::min(tag.find_first_of(" \t\r\n\"'", at), end);
            _out.append(tag.substr(at, next - at));
            at = next;
            if (at < end && (tag[at] == '"' || tag[at] == '\'')) {
                const size_t behind = tag.find(tag[at], at + 1) + 1;
                _out.append(tag.substr(at, behind - at));
                at = behind;
            } else if (at < end) {
                at = std::min(tag.find_first_not_of(blanks, at), end);
                if (at < end && tag[at] != '=' && _out.back() != '=')
                    _out += ' ';
            }
        }
        _out += isEmpty ? " />" : ">";
    }

    void setCaret(size_t place) {
        _result.caret = place;
        _caretIsSet = true;
    }

    void endPiece() {
        if (_out != _text.substr(_from, _place - _from))
            _result.changes.push_back({_from, _place, _out});
        _written += _out.size();
        _out.clear();
        _from = _place;
    }

    const std::string_view _text;
    const Outline& _outline;
    const size_t _start, _end;
    const FormatStyle& _style;
    const size_t _caret;
    size_t _depth, _element;
    size_t _keepFrom = none;      // the depth of an element that stays as it is
    size_t _from = 0, _place = 0; // of the piece that is being written, and how far it has come
    size_t _written = 0;          // of the new text before that piece
    bool _hasWritten = false, _caretIsSet = false;
    std::string _out;
    FormattedXml _result;
};

} // namespace

FormattedXml formatXml(std::string_view text, size_t start, size_t end, size_t caret, const FormatStyle& style,
                       IProgressReporter* progress) {
    try {
        findTagSpans(text);
    } catch (const XmlSyntaxError& error) {
        throw XmlException(error.what(), error.place.row, error.place.column);
    }
    const Outline outline(text, start, end, progress);
    return Formatter(text, outline, start, end, caret, style).run(progress);
}

bool hasVeryLongLines(std::string_view text) {
    constexpr size_t longest = 2000;
    constexpr int mostTags = 8; // of a line that is long because of what stands in one element
    size_t start = 0, lineFeed = 0, carriageReturn = 0;
    const auto advance = [&](size_t& end, char c) {
        if (end < start || end == 0)
            end = std::min(text.find(c, start), text.size());
    };
    while (text.size() - start > longest) {
        advance(lineFeed, '\n');
        advance(carriageReturn, '\r');
        const size_t end = std::min(lineFeed, carriageReturn);
        if (end - start > longest) {
            int tags = 0;
            for (size_t at = text.find('<', start); at < end && tags <= mostTags; at = text.find('<', at + 1))
                ++tags;
            if (tags > mostTags)
                return true;
        }
        if (end == text.size())
            break;
        start = end + 1;
    }
    return false;
}

} // namespace zelk
