#include "TextTyping.h"

#include <QKeyEvent>

#include "TextControl.h"
#include "XmlSurroundings.h"

namespace zelk {

namespace {

using Sci = QsciScintillaBase;

constexpr size_t longestStartTag = size_t(1) << 16; // that is looked for before a new line

// Without a modifier that makes a shortcut of the key.
bool isPlain(const QKeyEvent& event) {
    return (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
}

} // namespace

bool TextTyping::press(const QKeyEvent& event) {
    if (!isPlain(event))
        return false;
    if (event.text() == QStringLiteral("\"") || event.text() == QStringLiteral("'"))
        return stepOver(static_cast<char>(event.text()[0].unicode()));
    if (_control.send(Sci::SCI_AUTOCACTIVE) != 0) // whose keys the others are
        return false;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: startLine(); return true;
    case Qt::Key_Tab:
        if (_control.send(Sci::SCI_GETSELECTIONEMPTY) != 0)
            return false;
        indentLines(true);
        return true;
    case Qt::Key_Backtab: indentLines(false); return true;
    default: return false;
    }
}

void TextTyping::typed(int character) {
    if (character == '/')
        closeElement();
}

// --- new lines and quotes --------------------------------------------------------------------------------------------

// Starts where the line before it does, deeper behind a start tag; an end tag behind it goes below its start tag.
void TextTyping::startLine() {
    const size_t start = selectionStart(), end = selectionEnd();
    const std::string_view text = _control.bytes();
    const auto before = XmlTagsBefore(text, start, longestStartTag).next();
    const bool isDeeper = before && before->end == start && before->kind == XmlTagToken::Kind::start;
    const size_t behind = std::min(text.find_first_not_of(" \t", end), text.size());
    const bool isEndTag = text.substr(behind).starts_with("</");

    std::string line = _control.lineEnd();
    if (isDeeper)
        line += indentationOf(before->open) + _control.indentUnit();
    else if (const auto open = isEndTag ? openTagBefore(text, start) : std::nullopt)
        line += indentationOf(open->open);
    else
        line += indentationOf(start);
    const size_t caret = start + line.size();
    if (isDeeper && isEndTag)
        line += _control.lineEnd() + indentationOf(before->open);
    _control.replaceBytes(start, isEndTag ? behind : end, line);
    _control.send(Sci::SCI_GOTOPOS, static_cast<long>(caret));
}

// The quote that ends a value is there already.
bool TextTyping::stepOver(char quote) {
    const size_t place = selectionStart();
    const std::string_view text = _control.bytes();
    if (place != selectionEnd() || place >= text.size() || text[place] != quote)
        return false;
    const XmlPlaceKind kind = placeKindAt(text, place);
    if (kind.in != XmlPlaceKind::In::value || text[kind.start - 1] != quote)
        return false;
    _control.send(Sci::SCI_AUTOCCANCEL);
    _control.send(Sci::SCI_GOTOPOS, static_cast<long>(place + 1));
    return true;
}

// Behind "</".
void TextTyping::closeElement() {
    const size_t place = selectionStart();
    std::string_view text = _control.bytes();
    const XmlPlaceKind kind = placeKindAt(text, place);
    if (kind.in != XmlPlaceKind::In::endName || kind.start != place)
        return;
    const size_t start = kind.open;
    const auto open = openTagBefore(text, start);
    const char behind = place < text.size() ? text[place] : ' ';
    if (!open || std::string_view(" \t\r\n<>").find(behind) == std::string_view::npos)
        return;
    _control.send(Sci::SCI_AUTOCCANCEL);
    std::string closing = "</" + std::string(open->name) + ">";
    const auto lineStart = static_cast<size_t>(
        _control.send(Sci::SCI_POSITIONFROMLINE, _control.send(Sci::SCI_LINEFROMPOSITION, static_cast<long>(start))));
    const bool isFirst = text.find_first_not_of(" \t", lineStart) == start && open->open < lineStart;
    const size_t from = isFirst ? lineStart : start;
    closing.insert(0, isFirst ? indentationOf(open->open) : std::string());
    _control.replaceBytes(from, place + (behind == '>' ? 1 : 0), closing);
    _control.send(Sci::SCI_GOTOPOS, static_cast<long>(from + closing.size()));
}

// --- lines -----------------------------------------------------------------------------------------------------------

void TextTyping::duplicateLines() {
    const auto [first, last] = lines();
    const auto start = static_cast<size_t>(_control.send(Sci::SCI_POSITIONFROMLINE, first));
    const auto end = static_cast<size_t>(_control.send(Sci::SCI_GETLINEENDPOSITION, last));
    const std::string copy = _control.lineEnd() + _control.copyOf(start, end);
    const long anchor = _control.send(Sci::SCI_GETANCHOR), caret = _control.send(Sci::SCI_GETCURRENTPOS);
    _control.replaceBytes(end, end, copy);
    const auto moved = static_cast<long>(copy.size());
    _control.send(Sci::SCI_SETSEL, anchor + moved, caret + moved);
}

void TextTyping::moveLines(bool up) {
    _control.send(up ? Sci::SCI_MOVESELECTEDLINESUP : Sci::SCI_MOVESELECTEDLINESDOWN);
}

void TextTyping::indentLines(bool deeper) {
    const auto [first, last] = lines();
    if (first != last) {
        _control.send(deeper ? Sci::SCI_TAB : Sci::SCI_BACKTAB);
        return;
    }
    const auto start = static_cast<size_t>(_control.send(Sci::SCI_POSITIONFROMLINE, first));
    const long unit = _control.send(Sci::SCI_GETINDENT),
               indentation = _control.send(Sci::SCI_GETLINEINDENTATION, first);
    const auto blanks = static_cast<size_t>(_control.send(Sci::SCI_GETLINEINDENTPOSITION, first)) - start;
    const long anchor = _control.send(Sci::SCI_GETANCHOR), caret = _control.send(Sci::SCI_GETCURRENTPOS);
    const size_t wanted = static_cast<size_t>(std::max(0L, indentation + (deeper ? unit : -unit)));
    _control.replaceBytes(start, start + blanks, std::string(wanted, ' '));
    const auto moved = [&](long place) {
        return std::max(static_cast<long>(start), place + static_cast<long>(wanted) - static_cast<long>(blanks));
    };
    _control.send(Sci::SCI_SETSEL, moved(anchor), moved(caret));
}

// --- places ----------------------------------------------------------------------------------------------------------

size_t TextTyping::selectionStart() const { return static_cast<size_t>(_control.send(Sci::SCI_GETSELECTIONSTART)); }

size_t TextTyping::selectionEnd() const { return static_cast<size_t>(_control.send(Sci::SCI_GETSELECTIONEND)); }

std::pair<long, long> TextTyping::lines() const {
    const long start = _control.send(Sci::SCI_GETSELECTIONSTART), end = _control.send(Sci::SCI_GETSELECTIONEND);
    const long first = _control.send(Sci::SCI_LINEFROMPOSITION, start);
    const long last = _control.send(Sci::SCI_LINEFROMPOSITION, end);
    const bool endsAtStart = last > first && _control.send(Sci::SCI_POSITIONFROMLINE, last) == end;
    return {first, endsAtStart ? last - 1 : last};
}

// The blanks at the start of the line, before the place.
std::string TextTyping::indentationOf(size_t place) const {
    const long line = _control.send(Sci::SCI_LINEFROMPOSITION, static_cast<long>(place));
    const auto start = static_cast<size_t>(_control.send(Sci::SCI_POSITIONFROMLINE, line));
    const auto end = static_cast<size_t>(_control.send(Sci::SCI_GETLINEINDENTPOSITION, line));
    return _control.copyOf(start, std::min(end, std::max(place, start)));
}

} // namespace zelk
