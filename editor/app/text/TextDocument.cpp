#include "TextDocument.h"

#include <Qsci/qsciscintillabase.h>

#include <algorithm>
#include <new>

#include "PaintLoop.h"

#ifdef Q_OS_LINUX
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace zelk {

namespace {

using Sci = QsciScintillaBase;

constexpr size_t pieceSize = 2 << 20; // some 10 ms

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

TextDocument documentOf(QsciScintillaBase& shower, QsciScintillaBase& owner) {
    void* document = shower.SendScintillaPtrResult(Sci::SCI_GETDOCPOINTER);
    owner.SendScintilla(Sci::SCI_ADDREFDOCUMENT, 0UL, document);
    return {document, [&owner](void* released) { owner.SendScintilla(Sci::SCI_RELEASEDOCUMENT, 0UL, released); }};
}

} // namespace

TextDocument shownDocument(QsciScintillaBase& control) { return documentOf(control, control); }

void showDocument(QsciScintillaBase& control, const TextDocument& document) {
    control.SendScintilla(Sci::SCI_SETDOCPOINTER, 0UL, document.get());
}

TextDocument makeDocument(QsciScintillaBase& control, std::string bytes) {
    QsciScintillaBase taker; // that no one sees
    taker.SendScintilla(Sci::SCI_SETMODEVENTMASK, 0UL);
    taker.SendScintilla(Sci::SCI_SETCODEPAGE, static_cast<unsigned long>(Sci::SC_CP_UTF8));
    taker.SendScintilla(Sci::SCI_SETUNDOCOLLECTION, 0UL);
    // Its memory is cleared, which takes a tenth of a second for 100 MB. Nothing but the document comes into play
    // there.
    besideWindow(
        [&] { taker.SendScintilla(Sci::SCI_ALLOCATE, static_cast<unsigned long>(bytes.size() + documentRoom)); });
    size_t start = 0;
    untilDone([&] {
        const size_t size = std::min(pieceSize, bytes.size() - start);
        taker.SendScintilla(Sci::SCI_ADDTEXT, static_cast<uintptr_t>(size), bytes.data() + start);
        letGo(bytes.data() + start, bytes.data() + start + size);
        start += size;
        return start == bytes.size();
    });
    if (taker.SendScintilla(Sci::SCI_GETSTATUS) != Sci::SC_STATUS_OK)
        throw std::bad_alloc();
    return documentOf(taker, control);
}

} // namespace zelk
