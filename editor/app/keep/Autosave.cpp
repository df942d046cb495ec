#include "Autosave.h"

#include <QCoreApplication>
#include <QPointer>

#include "Exceptions.h"

namespace zelk {

using namespace std::chrono;
using namespace std::chrono_literals;

Autosave::Autosave(std::shared_ptr<RecoverySession> session, QObject* parent)
    : QObject(parent), _session(std::move(session)) {
    _pool.setMaxThreadCount(1); // Copies and their removal keep their order.
    _timer.setSingleShot(true);
    connect(&_timer, &QTimer::timeout, this, &Autosave::keepAll);
}

Autosave::~Autosave() { _pool.waitForDone(); }

void Autosave::watch(DocumentView& view) {
    _entries[&view].id = ++_nextId;
    connect(&view, &DocumentView::stateChanged, this, [this, &view] { changed(view); });
    connect(&view.editor(), &TextControl::edited, this, [this, &view] { changed(view); });
    connect(&view, &QObject::destroyed, this, [this, gone = &view] {
        Entry entry = _entries.take(gone);
        forget(entry);
    });
    changed(view);
}

void Autosave::adopt(DocumentView& view, RecoverySession& from, const KeptDocument& kept) {
    _pool.waitForDone();
    Entry& entry = _entries[&view];
    if (!_session->adopt(entry.id, from, kept.id))
        return; // It stays in its old session, which is offered again at the next start.
    entry.hasCopy = true;
    entry.keptChange = view.changeCount();
    entry.original = view.document().original;
    entry.originalNumber = kept.original;
}

void Autosave::end() {
    _timer.stop();
    _pool.waitForDone();
    _entries.clear();
    _session->end();
}

// --- when ------------------------------------------------------------------------------------------------------------

void Autosave::changed(DocumentView& view) {
    const auto entry = _entries.find(&view);
    if (entry == _entries.end())
        return; // It is being closed.
    if (!view.document().isModified)
        forget(*entry);
    else if (entry->keptChange != view.changeCount())
        schedule();
}

// Every change puts it off, but not for ever. Writing takes a twentieth of the time at most, however big the text is.
void Autosave::schedule() {
    constexpr milliseconds longestWait = 30s;
    const milliseconds pause = std::max(_pause, 20 * _lastWrite);
    if (!_timer.isActive())
        _waiting.start();
    if (!_timer.isActive() || milliseconds(_waiting.elapsed()) < std::max(longestWait, pause))
        _timer.start(pause);
}

void Autosave::keepAll() {
    for (auto entry = _entries.begin(); entry != _entries.end(); ++entry) {
        DocumentView& view = *entry.key();
        if (!view.document().isModified || entry->keptChange == view.changeCount())
            continue;
        if (entry->isBusy)
            schedule();
        else
            keep(view, *entry);
    }
}

// --- what ------------------------------------------------------------------------------------------------------------

void Autosave::keep(DocumentView& view, Entry& entry) {
    const auto& original = view.document().original;
    if (std::exchange(entry.original, original) != original)
        ++entry.originalNumber;
    KeptDocument document = KeptDocument::of(view.document());
    document.id = entry.id;
    document.original = original == nullptr ? 0 : entry.originalNumber;
    document.caret = view.editor().caret();
    entry.keptChange = view.changeCount();
    entry.hasCopy = entry.isBusy = true;
    _pool.start(
        [this, session = _session, document, text = std::string(view.text()), original, view = QPointer(&view)] {
            QElapsedTimer timer;
            timer.start();
            QString failure;
            try {
                session->keep(document, text, original.get());
            } catch (const ZelkException& error) {
                failure = QString::fromStdString(error.description());
            }
            QMetaObject::invokeMethod(
                this,
                [this, view, failure, time = milliseconds(timer.elapsed())] {
                    _lastWrite = time;
                    if (!view.isNull())
                        wasKept(*view, failure);
                },
                Qt::QueuedConnection);
        });
}

void Autosave::wasKept(DocumentView& view, const QString& failure) {
    Entry& entry = _entries[&view];
    entry.isBusy = false;
    if (failure.isEmpty())
        Q_EMIT kept(&view);
    else
        Q_EMIT failed(&view, failure);
    changed(view);
}

void Autosave::forget(Entry& entry) {
    entry.keptChange.reset();
    if (std::exchange(entry.hasCopy, false))
        _pool.start([session = _session, id = entry.id] { session->forget(id); });
}

} // namespace zelk
