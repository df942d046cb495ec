#include "TextEditorView.h"

#include <QColorDialog>
#include <QContextMenuEvent>
#include <QMessageBox>
#include <QMouseEvent>

#include "CharacterText.h"
#include "ColorText.h"
#include "DocumentTags.h"
#include "InsertElementDlg.h"
#include "LongLines.h"
#include "ScriptFlow.h"
#include "TagMatch.h"
#include "TextFolds.h"
#include "TextMarks.h"

namespace zelk {

TextEditorView::TextEditorView(QWidget* parent)
    : TextControl(parent), _autocomplete(new TextEditorAutocomplete(*this)) {
    setLook();
    setColors();
    setKeys();
    connect(this, &QsciScintillaBase::SCN_SAVEPOINTLEFT, this, [this] { Q_EMIT modificationChanged(isModified()); });
    connect(this, &QsciScintillaBase::SCN_SAVEPOINTREACHED, this, [this] { Q_EMIT modificationChanged(isModified()); });
    connect(this, &QsciScintillaBase::SCN_STYLENEEDED, this, [this] { styleVisible(); });
    connect(this, &QsciScintillaBase::SCN_CHARADDED, this, [this](int character) { _typing.typed(character); });
    connect(this, &QsciScintillaBase::SCN_MARGINCLICK, this,
            [this](int position, int, int) { toggleFoldAt(send(SCI_LINEFROMPOSITION, position)); });
    connect(this, &QsciScintillaBase::SCN_UPDATEUI, this, [this](int what) {
        styleVisible();
        if (_marked != nullptr)
            markVisibleMatches();
        if ((what & (SC_UPDATE_SELECTION | SC_UPDATE_CONTENT)) != 0) {
            noteMove();
            markTags();
            markTarget();
            Q_EMIT placeChanged();
        }
    });
    // The screen can come to have other lines without a word of that: when the view grows, for one.
    connect(this, &QsciScintillaBase::SCN_PAINTED, this, [this] {
        if (linesOnScreen() == _styled)
            return;
        styleVisible();
        if (_marked != nullptr)
            markVisibleMatches();
    });
    connect(this, &TextControl::edited, this, [this] {
        fitNumbers();
        Q_EMIT placeChanged();
    });
    connect(this, &TextControl::documentShown, this, [this] {
        setTextLook(_look);
        fitNumbers();
        Q_EMIT modificationChanged(isModified());
    });
    connect(this, &TextControl::willInsert, this, [this](size_t at, size_t bytes) { _jumps.inserted(at, bytes); });
    connect(this, &TextControl::willDelete, this,
            [this](size_t start, size_t end) { _jumps.removed(start, end - start); });
}

// --- keys ----------------------------------------------------------------------------------------------------------

// Keys that are commands of the window, or that would only surprise.
void TextEditorView::setKeys() {
    constexpr int control = SCMOD_CTRL << 16, shift = SCMOD_SHIFT << 16;
    for (char key : {'D', 'L', 'T', 'U', 'Y', 'Z', 'X', 'C', 'V'}) {
        send(SCI_CLEARCMDKEY, key | control);
        send(SCI_CLEARCMDKEY, key | control | shift);
    }
    for (int key : {int(SCK_ADD), int(SCK_SUBTRACT), int(SCK_DIVIDE)})
        send(SCI_CLEARCMDKEY, key | control);
    for (int key : {SCK_INSERT | control, SCK_INSERT | shift, SCK_DELETE | shift, SCK_BACK | (SCMOD_ALT << 16)})
        send(SCI_CLEARCMDKEY, key);
}

void TextEditorView::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
    Q_EMIT contextMenuAsked(event->globalPos());
}

void TextEditorView::keyPressEvent(QKeyEvent* event) {
    if (!_typing.press(*event))
        TextControl::keyPressEvent(event);
}

// --- jumps -----------------------------------------------------------------------------------------------------------

void TextEditorView::followCaret() {
    const std::optional<FlowTarget> target = flowTargetAt(bytes(), caret(), FlowEffort::full);
    if (target && target->reason.empty())
        return jumpTo(target->start);
    const std::optional<IdAtPlace> id = target ? std::nullopt : characterIdAt(bytes(), caret());
    if (id && id->role == IdRole::defines)
        say(tr("This is where character %1 is defined. Shift+F12 lists its uses.").arg(id->id));
    else if (id)
        gotoDefinition(id->id);
    else
        say(target ? QString::fromStdString(target->reason) : tr("Nothing here leads anywhere."));
}

void TextEditorView::gotoDefinition(uint16_t id) {
    DocumentTags& tags = DocumentTags::of(*this);
    tags.whenCurrent([this, &tags, id] {
        const CharacterId* definition = tags.map()->characters().definition(id);
        if (definition == nullptr)
            return say(tr("Nothing defines character %1.").arg(id));
        jumpTo(definition->isInBytes ? definition->tagStart : definition->start);
    });
}

void TextEditorView::say(const QString& reason) {
    SendScintilla(SCI_CALLTIPSHOW, static_cast<uintptr_t>(caret()), reason.toUtf8().constData());
}

// The caret was moved far from a place where it had been for a moment: that is one to come back to.
void TextEditorView::noteMove() {
    constexpr long far = 10; // lines
    constexpr qint64 moment = 700;
    const size_t place = caret(), last = std::min(_lastCaret, static_cast<size_t>(send(SCI_GETLENGTH)));
    const auto line = [this](size_t at) { return send(SCI_LINEFROMPOSITION, static_cast<long>(at)); };
    if (std::abs(line(place) - line(last)) > far && _stays.isValid() && _stays.elapsed() >= moment)
        _jumps.jumpFrom(last);
    if (place != _lastCaret)
        _stays.start();
    _lastCaret = place;
}

void TextEditorView::jumpTo(size_t offset) {
    _jumps.jumpFrom(caret());
    reveal(offset);
    Q_EMIT jumped();
}

void TextEditorView::jumpBack() {
    if (const auto place = _jumps.back(caret()))
        reveal(*place);
}

void TextEditorView::jumpForward() {
    if (const auto place = _jumps.forward(caret()))
        reveal(*place);
}

// With Ctrl, the left button goes where the code leads.
void TextEditorView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || event->modifiers() != Qt::ControlModifier) {
        TextControl::mousePressEvent(event);
        return;
    }
    setFocus();
    const QPoint point = event->position().toPoint();
    send(SCI_SETEMPTYSELECTION, send(SCI_POSITIONFROMPOINT, point.x(), point.y()));
    followCaret();
}

// --- the text --------------------------------------------------------------------------------------------------------

void TextEditorView::setText(std::string newText) {
    setBytes(std::move(newText));
    _jumps.clear();
    _lastCaret = 0;
    const std::string_view bytes = text();
    // New lines end as the first one does.
    const size_t end = bytes.find_first_of("\r\n");
    const bool isCr = end != bytes.npos && bytes[end] == '\r';
    const bool isCrLf = isCr && bytes.substr(end).starts_with("\r\n");
    send(SCI_SETEOLMODE, isCrLf ? SC_EOL_CRLF : isCr ? SC_EOL_CR : SC_EOL_LF);
}

TextMatch TextEditorView::selection() const {
    return {static_cast<size_t>(send(SCI_GETSELECTIONSTART)), static_cast<size_t>(send(SCI_GETSELECTIONEND))};
}

std::string TextEditorView::selectedText() const {
    const TextMatch range = selection();
    return std::string(bytes(range.start, range.end));
}

void TextEditorView::replaceSelection(std::string_view bytes) {
    const TextMatch range = selection();
    replaceBytes(range.start, range.end, bytes);
    select({range.start + bytes.size(), range.start + bytes.size()});
}

void TextEditorView::select(const TextMatch& range) {
    send(SCI_ENSUREVISIBLEENFORCEPOLICY, send(SCI_LINEFROMPOSITION, static_cast<long>(range.start)));
    send(SCI_SETSEL, static_cast<long>(range.start), static_cast<long>(range.end));
}

uint32_t TextEditorView::row() const {
    return static_cast<uint32_t>(send(SCI_LINEFROMPOSITION, send(SCI_GETCURRENTPOS))) + 1;
}

uint32_t TextEditorView::column() const {
    const long caret = send(SCI_GETCURRENTPOS);
    const long start = send(SCI_POSITIONFROMLINE, send(SCI_LINEFROMPOSITION, caret));
    return static_cast<uint32_t>(send(SCI_COUNTCHARACTERS, start, caret)) + 1;
}

void TextEditorView::gotoPlace(uint32_t row, uint32_t column) {
    const long line = std::clamp<long>(static_cast<long>(row) - 1, 0, rowCount() - 1);
    const long start = send(SCI_POSITIONFROMLINE, line), end = send(SCI_GETLINEENDPOSITION, line);
    long position = send(SCI_POSITIONRELATIVE, start, static_cast<long>(column) - 1);
    if (position == 0 || position > end) // behind the line's or the text's end
        position = column <= 1 ? start : end;
    gotoOffset(static_cast<size_t>(position));
}

void TextEditorView::gotoOffset(size_t offset) {
    noteMove();
    send(SCI_GOTOPOS, static_cast<long>(offset));
    noteMove();
    reveal(offset);
}

// As a place that was come from already.
void TextEditorView::reveal(size_t offset) {
    _lastCaret = offset;
    const auto position = static_cast<long>(offset);
    send(SCI_ENSUREVISIBLEENFORCEPOLICY, send(SCI_LINEFROMPOSITION, position));
    send(SCI_GOTOPOS, position);
    send(SCI_VERTICALCENTRECARET);
}

void TextEditorView::cutAll() {
    selectAll();
    cut();
}

void TextEditorView::copyAll() { SendScintilla(SCI_COPYRANGE, 0UL, send(SCI_GETLENGTH)); }

void TextEditorView::insertColorAsHex() {
    const std::optional<QColor> shown = colorFromText(selectedText());
    const QColor color =
        QColorDialog::getColor(shown.value_or(Qt::black), this, tr("Insert Color"), QColorDialog::ShowAlphaChannel);
    if (color.isValid())
        replaceSelection(colorText(color));
}

void TextEditorView::insertElement(ElementKind kind) {
    const QString title = kind == ElementKind::tag      ? tr("Insert Tag Template")
                          : kind == ElementKind::action ? tr("Insert Action Template")
                                                        : tr("Insert Struct Template");
    const auto place =
        placeForElement(text(), static_cast<size_t>(send(SCI_GETCURRENTPOS)), kind, _autocomplete->fullForm());
    if (!place) {
        QMessageBox::information(this, title, tr("Nothing of this kind can stand here."));
        return;
    }
    InsertElementDlg dialog(title, place->choices, place->likely, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const TextChange change = zelk::insertElement(*place, dialog.choice());
    replaceBytes(change.start, change.end, change.text);
    // The first value is there to be typed over.
    const std::string_view line = std::string_view(change.text).substr(0, change.text.find('>', place->before.size()));
    const size_t value = line.find('"', place->before.size());
    const size_t end = value == line.npos ? line.size() : line.find('"', value + 1);
    select({change.start + (value == line.npos ? end : value + 1), change.start + end});
}

// --- what is drawn ---------------------------------------------------------------------------------------------------

std::pair<long, long> TextEditorView::linesOnScreen() const {
    const long top = send(SCI_GETFIRSTVISIBLELINE), shown = send(SCI_LINESONSCREEN) + 1;
    return {send(SCI_DOCLINEFROMVISIBLE, top), send(SCI_DOCLINEFROMVISIBLE, top + shown)};
}

void TextEditorView::forVisible(const std::function<void(long first, long last)>& act) const {
    const long top = send(SCI_GETFIRSTVISIBLELINE), shown = send(SCI_LINESONSCREEN) + 1;
    const auto [first, last] = linesOnScreen();
    long run = first; // Folded lines between the visible ones are left out.
    long before = first;
    for (long i = 1; i <= shown; ++i) {
        const long line = send(SCI_DOCLINEFROMVISIBLE, top + i);
        if (line > before + 1) {
            act(run, before);
            run = line;
        }
        before = line;
    }
    act(run, last);
}

// Only what is on the screen is ever coloured. That is little, so it is done again whenever something may have changed.
void TextEditorView::styleVisible() {
    if (_longLines.size() > 1000)
        _longLines.clear();
    _styled = linesOnScreen();
    forVisible([this](long first, long last) { styleLines(first, last); });
    // All the rest counts as coloured; it will be when it is on the screen.
    send(SCI_STARTSTYLING, send(SCI_GETLENGTH));
}

void TextEditorView::markMatches(std::shared_ptr<const TextSearch> search) {
    _marked = std::move(search);
    markVisibleMatches();
}

void TextEditorView::markVisibleMatches() {
    constexpr size_t mostBytes = 256 * 1024;
    send(SCI_SETINDICATORCURRENT, matchIndicator);
    send(SCI_INDICATORCLEARRANGE, 0, send(SCI_GETLENGTH));
    if (_marked == nullptr || _marked->options().pattern.empty())
        return;
    forVisible([this](long first, long last) {
        const auto start = static_cast<size_t>(send(SCI_POSITIONFROMLINE, first));
        const size_t end = std::min(static_cast<size_t>(send(SCI_GETLINEENDPOSITION, last)), start + mostBytes);
        const std::string_view near = bytes().substr(0, end);
        try {
            for (auto match = _marked->next(near, start); match;
                 match = _marked->next(near, std::max(match->start + 1, match->end)))
                send(SCI_INDICATORFILLRANGE, static_cast<long>(match->start),
                     static_cast<long>(match->end - match->start));
        } catch (const SearchError&) { // takes too long
        }
    });
}

void TextEditorView::styleLines(long first, long last) {
    for (long line = first; line <= last; ++line) {
        const long start = send(SCI_POSITIONFROMLINE, line), length = send(SCI_LINELENGTH, line);
        if (start < 0 || length == 0)
            continue;
        if (static_cast<size_t>(length) > longLine)
            styleLongLine(line);
        else
            _highlighter.highlight(*this, static_cast<size_t>(start), static_cast<size_t>(start + length));
        setFoldLevel(*this, line);
    }
}

// Once for each change of the text and each place of the caret in it.
void TextEditorView::styleLongLine(long line) {
    const auto start = static_cast<size_t>(send(SCI_POSITIONFROMLINE, line));
    const size_t end = start + static_cast<size_t>(send(SCI_LINELENGTH, line));
    const size_t place = caret() >= start && caret() <= end ? caret() : SIZE_MAX / 2;
    const StyledLine styled{start, place, changeCount()};
    StyledLine& known = _longLines[line];
    if (known == styled)
        return;
    known = styled;
    setStyles(start, stylesOfLongLine(bytes(), start, end, place, quoteStateAt(start)));
}

void TextEditorView::markTags() {
    send(SCI_SETINDICATORCURRENT, tagIndicator);
    send(SCI_INDICATORCLEARRANGE, 0, send(SCI_GETLENGTH));
    const auto tags = matchingTags(bytes(), static_cast<size_t>(send(SCI_GETCURRENTPOS)));
    if (!tags)
        return;
    for (const TextRange& range : {tags->here, tags->other})
        send(SCI_INDICATORFILLRANGE, static_cast<long>(range.start), static_cast<long>(range.end - range.start));
}

// Where the branch or constant at the caret leads to.
void TextEditorView::markTarget() {
    send(SCI_SETINDICATORCURRENT, targetIndicator);
    send(SCI_INDICATORCLEARRANGE, 0, send(SCI_GETLENGTH));
    const std::optional<FlowTarget> target = flowTargetAt(bytes(), caret(), FlowEffort::quick);
    if (target && target->reason.empty())
        send(SCI_INDICATORFILLRANGE, static_cast<long>(target->start), static_cast<long>(target->end - target->start));
}

// --- bookmarks -------------------------------------------------------------------------------------------------------

void TextEditorView::toggleBookmark() {
    const long line = send(SCI_LINEFROMPOSITION, send(SCI_GETCURRENTPOS));
    const bool isSet = (send(SCI_MARKERGET, line) & (1 << bookmark)) != 0;
    send(isSet ? SCI_MARKERDELETE : SCI_MARKERADD, line, bookmark);
    const bool hasAny = send(SCI_MARKERNEXT, 0, 1 << bookmark) >= 0;
    send(SCI_SETMARGINWIDTHN, bookmarks, hasAny ? 14 : 0);
}

// From the last one to the first, and the other way round.
void TextEditorView::gotoBookmark(bool up) {
    const long line = send(SCI_LINEFROMPOSITION, send(SCI_GETCURRENTPOS)), mask = 1 << bookmark;
    long found =
        up ? (line == 0 ? -1 : send(SCI_MARKERPREVIOUS, line - 1, mask)) : send(SCI_MARKERNEXT, line + 1, mask);
    if (found < 0)
        found = up ? send(SCI_MARKERPREVIOUS, send(SCI_GETLINECOUNT) - 1, mask) : send(SCI_MARKERNEXT, 0, mask);
    if (found < 0)
        say(tr("There is no bookmark. Ctrl+B sets one."));
    else
        jumpTo(static_cast<size_t>(send(SCI_POSITIONFROMLINE, found)));
}

// --- folds -----------------------------------------------------------------------------------------------------------

void TextEditorView::toggleFoldAt(long line) {
    const long header = foldHeader(*this, line);
    if (header < 0)
        return;
    setFoldLevelsBelow(*this, header);
    send(SCI_TOGGLEFOLD, header);
}

void TextEditorView::toggleFold() { toggleFoldAt(send(SCI_LINEFROMPOSITION, send(SCI_GETCURRENTPOS))); }

// The children of the root, so that the movie's list of tags remains.
void TextEditorView::foldAll() {
    for (long line = 0; line < static_cast<long>(rowCount()); ++line)
        setFoldLevel(*this, line);
    for (long line = 0; line < static_cast<long>(rowCount()); ++line) {
        const long level = send(SCI_GETFOLDLEVEL, line);
        if ((level & SC_FOLDLEVELHEADERFLAG) == 0 || (level & SC_FOLDLEVELNUMBERMASK) == SC_FOLDLEVELBASE)
            continue;
        send(SCI_FOLDLINE, line, SC_FOLDACTION_CONTRACT);
        line = send(SCI_GETLASTCHILD, line, -1);
    }
}

void TextEditorView::unfoldAll() { send(SCI_FOLDALL, SC_FOLDACTION_EXPAND); }

} // namespace zelk
