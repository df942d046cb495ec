#include "TextControl.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#ifdef Q_OS_LINUX
#include <sys/mman.h>
#include <unistd.h>
#endif

#include <algorithm>

#include "TextAccessible.h"

namespace zelk {

namespace {

// The clipboard's plain text has no broken UTF-8 and, on some systems, other line ends.
const QString bytesFormat = QStringLiteral("application/x-zelk-text");

constexpr size_t pieceSize = 8 << 20; // of a text that is handed over

// Gives the whole pages in a range of a string that is no longer needed back to the system; they read as zeros then.
void letGo([[maybe_unused]] char* start, [[maybe_unused]] char* end) {
#ifdef Q_OS_LINUX
    const auto page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    const uintptr_t first = (reinterpret_cast<uintptr_t>(start) + page - 1) / page * page;
    const uintptr_t last = reinterpret_cast<uintptr_t>(end) / page * page;
    if (first < last)
        madvise(reinterpret_cast<void*>(first), last - first, MADV_DONTNEED);
#endif
}

} // namespace

TextControl::TextControl(QWidget* parent) : QsciScintillaBase(parent) {
    installTextAccessibility();
    send(SCI_SETCODEPAGE, SC_CP_UTF8);
    send(SCI_SETPASTECONVERTENDINGS, 0);
    // What the control tells of every change, and how the accessibility of its own counts characters then, takes longer
    // the bigger the text is. These are enough; they come before the change.
    send(SCI_SETMODEVENTMASK, SC_MOD_CHANGEFOLD | SC_MOD_CHANGEMARKER | SC_MOD_BEFOREINSERT | SC_MOD_BEFOREDELETE);
    connect(this, &QsciScintillaBase::SCN_MODIFIED, this,
            [this](int position, int type) { willChange(position, type); });
}

void TextControl::willChange(int position, int type) {
    if ((type & (SC_MOD_BEFOREINSERT | SC_MOD_BEFOREDELETE)) == 0)
        return;
    ++_changeCount;
    _quotes.changedAt(static_cast<size_t>(position));
    if (_isEditedQueued)
        return;
    _isEditedQueued = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            _isEditedQueued = false;
            Q_EMIT edited();
        },
        Qt::QueuedConnection);
}

void TextControl::setBytes(std::string bytes) {
    send(SCI_SETUNDOCOLLECTION, 0);
    send(SCI_CLEARALL);
    send(SCI_ALLOCATE, static_cast<long>(bytes.size()) + 1024);
    for (size_t start = 0; start < bytes.size(); start += pieceSize) {
        const size_t size = std::min(pieceSize, bytes.size() - start);
        SendScintilla(SCI_ADDTEXT, static_cast<uintptr_t>(size), bytes.data() + start);
        letGo(bytes.data() + start, bytes.data() + start + size);
    }
    send(SCI_SETUNDOCOLLECTION, 1);
    send(SCI_EMPTYUNDOBUFFER);
    send(SCI_SETSAVEPOINT);
    send(SCI_GOTOPOS, 0);
}

std::string_view TextControl::bytes() const {
    const auto* data = static_cast<const char*>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER));
    return {data, static_cast<size_t>(send(SCI_GETLENGTH))};
}

void TextControl::replaceBytes(size_t start, size_t end, std::string_view bytes) {
    send(SCI_SETTARGETRANGE, static_cast<long>(start), static_cast<long>(end));
    SendScintilla(SCI_REPLACETARGET, static_cast<uintptr_t>(bytes.size()), bytes.data());
}

void TextControl::replaceAll(std::span<const TextChange> changes) {
    send(SCI_BEGINUNDOACTION);
    for (size_t i = changes.size(); i-- > 0;) // from the last one, so that places before it stay
        replaceBytes(changes[i].start, changes[i].end, changes[i].text);
    send(SCI_ENDUNDOACTION);
}

// The control changes the line ends of everything that it pastes itself.
void TextControl::pasteBytes() {
    const QMimeData* clipboard = QGuiApplication::clipboard()->mimeData();
    if (clipboard == nullptr || !clipboard->hasFormat(bytesFormat)) {
        send(SCI_PASTE);
        return;
    }
    const QByteArray bytes = clipboard->data(bytesFormat);
    const long start = send(SCI_GETSELECTIONSTART);
    replaceBytes(static_cast<size_t>(start), static_cast<size_t>(send(SCI_GETSELECTIONEND)),
                 {bytes.constData(), static_cast<size_t>(bytes.size())});
    send(SCI_GOTOPOS, start + bytes.size());
}

void TextControl::setStyles(size_t start, const std::string& styles) {
    send(SCI_STARTSTYLING, static_cast<long>(start));
    SendScintilla(SCI_SETSTYLINGEX, static_cast<uintptr_t>(styles.size()), styles.data());
}

bool TextControl::canInsertFromMimeData(const QMimeData* source) const {
    return source->hasFormat(bytesFormat) || (source->hasText() && !source->hasUrls());
}

QByteArray TextControl::fromMimeData(const QMimeData* source, bool& rectangular) const {
    const QByteArray plain = QsciScintillaBase::fromMimeData(source, rectangular);
    return source->hasFormat(bytesFormat) ? source->data(bytesFormat) : plain;
}

QMimeData* TextControl::toMimeData(const QByteArray& text, bool rectangular) const {
    QMimeData* data = QsciScintillaBase::toMimeData(text, rectangular);
    data->setData(bytesFormat, text);
    return data;
}

} // namespace zelk
