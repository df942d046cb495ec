#include "TextControl.h"

#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>

#include <algorithm>

#include "PaintLoop.h"
#include "TextAccessible.h"

namespace zelk {

namespace {

QString formatName() { return QString::fromLatin1(TextControl::bytesFormat); }

} // namespace

TextControl::TextControl(QWidget* parent) : QsciScintillaBase(parent) {
    installTextAccessibility();
    setUpDocument();
    send(SCI_SETPASTECONVERTENDINGS, 0);
    // What the control tells of every change, and how the accessibility of its own counts characters then, takes longer
    // the bigger the text is. These are enough; they come before the change.
    send(SCI_SETMODEVENTMASK, SC_MOD_CHANGEFOLD | SC_MOD_CHANGEMARKER | SC_MOD_BEFOREINSERT | SC_MOD_BEFOREDELETE);
    connect(this, &QsciScintillaBase::SCN_MODIFIED, this,
            [this](int position, int type, const char*, int length) { willChange(position, type, length); });
    connect(this, &QsciScintillaBase::SCN_UPDATEUI, this, [this](int what) {
        if ((what & (SC_UPDATE_CONTENT | SC_UPDATE_SELECTION)) != 0)
            tellCaret(*this);
    });
}

void TextControl::willChange(int position, int type, int length) {
    if ((type & (SC_MOD_BEFOREINSERT | SC_MOD_BEFOREDELETE)) == 0)
        return;
    if ((type & SC_PERFORMED_USER) != 0)
        forgetNext();
    ++_changeCount;
    const auto start = static_cast<size_t>(position);
    _quotes.changedAt(start);
    if (!_isReplacingAll && (type & SC_MOD_BEFOREINSERT) != 0)
        Q_EMIT willInsert(start, static_cast<size_t>(length));
    else if (!_isReplacingAll)
        Q_EMIT willDelete(start, start + static_cast<size_t>(length));
    if (!_isEditedQueued)
        queueEdited();
}

void TextControl::queueEdited() {
    _isEditedQueued = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            _isEditedQueued = false;
            Q_EMIT edited();
        },
        Qt::QueuedConnection);
}

// What the control keeps with its document and not for itself.
void TextControl::setUpDocument() {
    send(SCI_SETCODEPAGE, SC_CP_UTF8);
    send(SCI_SETTABWIDTH, 4);
    send(SCI_SETINDENT, 4);
    send(SCI_SETUNDOCOLLECTION, 1);
    send(SCI_SETUSETABS, 0);
    send(SCI_SETTABINDENTS, 1);
    send(SCI_SETBACKSPACEUNINDENTS, 1);
}

void TextControl::setBytes(std::string bytes) {
    if (bytes.size() > bigSize) {
        QuoteMap quotes;
        besideWindow([&] { quotes.at(bytes, bytes.size()); }); // once, so that a jump to the end need not
        showDocument(*this, makeDocument(*this, std::move(bytes)));
        setUpDocument();
        ++_changeCount;
        if (!_isEditedQueued)
            queueEdited();
        _quotes = std::move(quotes);
    } else {
        _isReplacingAll = true;
        send(SCI_SETUNDOCOLLECTION, 0);
        send(SCI_CLEARALL);
        SendScintilla(SCI_ADDTEXT, static_cast<uintptr_t>(bytes.size()), bytes.data());
        send(SCI_SETUNDOCOLLECTION, 1);
        _isReplacingAll = false;
    }
    _versions.assign(1, {});
    _shown = 0;
    send(SCI_EMPTYUNDOBUFFER);
    setSavePoint();
    send(SCI_GOTOPOS, 0);
    Q_EMIT documentShown();
}

std::string_view TextControl::bytes() const {
    const auto* data = static_cast<const char*>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER));
    return {data, static_cast<size_t>(send(SCI_GETLENGTH))};
}

std::string TextControl::copyOf(size_t start, size_t end) const {
    std::string result(end - start, '\0'); // The control puts a NUL behind, where the string has its own.
    SendScintilla(SCI_GETTEXTRANGE, static_cast<long>(start), static_cast<long>(end), result.data());
    return result;
}

std::string TextControl::lineEnd() const {
    switch (send(SCI_GETEOLMODE)) {
    case SC_EOL_CRLF: return "\r\n";
    case SC_EOL_CR: return std::string(1, '\r');
    default: return std::string(1, '\n');
    }
}

std::string TextControl::indentUnit() const { return std::string(static_cast<size_t>(send(SCI_GETINDENT)), ' '); }

void TextControl::replaceBytes(size_t start, size_t end, std::string_view bytes) {
    send(SCI_SETTARGETRANGE, static_cast<long>(start), static_cast<long>(end));
    SendScintilla(SCI_REPLACETARGET, static_cast<uintptr_t>(bytes.size()), bytes.data());
}

// --- clipboard and drops: the control would change the line ends of everything that it puts in -----------------------

void TextControl::pasteBytes() {
    if (!insertFrom(QGuiApplication::clipboard()->mimeData()))
        send(SCI_PASTE); // A rectangle goes to the ends of several lines.
}

// False for what is put in another way.
bool TextControl::insertFrom(const QMimeData* source) {
    if (source == nullptr || !canInsertFromMimeData(source))
        return true;
    bool isRectangle = false;
    const QByteArray bytes = fromMimeData(source, isRectangle);
    if (isRectangle)
        return false;
    const long start = send(SCI_GETSELECTIONSTART);
    replaceBytes(static_cast<size_t>(start), static_cast<size_t>(send(SCI_GETSELECTIONEND)),
                 {bytes.constData(), static_cast<size_t>(bytes.size())});
    send(SCI_GOTOPOS, start + bytes.size());
    return true;
}

// The middle button puts in what is selected elsewhere.
void TextControl::mousePressEvent(QMouseEvent* event) {
    const QClipboard* clipboard = QGuiApplication::clipboard();
    if (event->button() != Qt::MiddleButton || !clipboard->supportsSelection()) {
        QsciScintillaBase::mousePressEvent(event);
        return;
    }
    setFocus();
    const QPoint point = event->position().toPoint();
    send(SCI_SETEMPTYSELECTION, send(SCI_POSITIONFROMPOINT, point.x(), point.y()));
    insertFrom(clipboard->mimeData(QClipboard::Selection));
}

void TextControl::dropEvent(QDropEvent* event) {
    bool isRectangle = false;
    const QByteArray bytes =
        canInsertFromMimeData(event->mimeData()) ? fromMimeData(event->mimeData(), isRectangle) : QByteArray();
    if (bytes.isEmpty() || isRectangle) {
        QsciScintillaBase::dropEvent(event);
        return;
    }
    QDragLeaveEvent leave;
    dragLeaveEvent(&leave); // takes away the mark of the place
    const bool isOwn = event->source() == this || event->source() == viewport();
    const QPoint point = event->position().toPoint();
    moveOrCopyTo(static_cast<size_t>(send(SCI_POSITIONFROMPOINT, point.x(), point.y())),
                 {bytes.constData(), static_cast<size_t>(bytes.size())},
                 isOwn && event->dropAction() == Qt::MoveAction);
    event->acceptProposedAction();
}

// A text that is dropped onto itself stays.
void TextControl::moveOrCopyTo(size_t place, std::string_view bytes, bool isMove) {
    const auto start = static_cast<size_t>(send(SCI_GETSELECTIONSTART));
    const auto end = static_cast<size_t>(send(SCI_GETSELECTIONEND));
    if (isMove && place >= start && place <= end)
        return;
    send(SCI_BEGINUNDOACTION);
    replaceBytes(place, place, bytes);
    if (isMove) {
        const size_t moved = place <= start ? bytes.size() : 0;
        replaceBytes(start + moved, end + moved, {});
        place -= place < start ? 0 : end - start;
    }
    send(SCI_ENDUNDOACTION);
    send(SCI_SETSEL, static_cast<long>(place), static_cast<long>(place + bytes.size()));
}

void TextControl::setStyles(size_t start, const std::string& styles) {
    send(SCI_STARTSTYLING, static_cast<long>(start));
    SendScintilla(SCI_SETSTYLINGEX, static_cast<uintptr_t>(styles.size()), styles.data());
}

bool TextControl::canInsertFromMimeData(const QMimeData* source) const {
    return source->hasFormat(formatName()) || (source->hasText() && !source->hasUrls());
}

QByteArray TextControl::fromMimeData(const QMimeData* source, bool& rectangular) const {
    const QByteArray plain = QsciScintillaBase::fromMimeData(source, rectangular);
    return source->hasFormat(formatName()) ? source->data(formatName()) : plain;
}

QMimeData* TextControl::toMimeData(const QByteArray& text, bool rectangular) const {
    QMimeData* data = QsciScintillaBase::toMimeData(text, rectangular);
    data->setData(formatName(), text);
    return data;
}

} // namespace zelk
