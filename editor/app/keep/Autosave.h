// Keeps copies of documents with unsaved changes while they are edited.
#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QThreadPool>
#include <QTimer>

#include "DocumentView.h"
#include "RecoverySession.h"

namespace zelk {

/// Copies the text of a document some seconds after it was last touched, and writes it on a thread. A document without
/// unsaved changes has no copy. Copies of a window that is destroyed without end() stay, as after a crash.
class Autosave : public QObject {
    Q_OBJECT
public:
    explicit Autosave(std::shared_ptr<RecoverySession> session, QObject* parent = nullptr);
    /// Waits until what is being written is.
    ~Autosave() override;

    void watch(DocumentView& view);
    /// The document is a copy of an ended session; that copy becomes its own.
    void adopt(DocumentView& view, RecoverySession& from, const KeptDocument& kept);
    /// How long after the last change a copy is made; a text that takes long to write waits longer.
    void setPause(std::chrono::milliseconds pause) { _pause = pause; }
    /// All documents are closed: nothing stays.
    void end();

Q_SIGNALS:
    void kept(DocumentView* view);
    void failed(DocumentView* view, const QString& reason);

private:
    struct Entry {
        uint32_t id = 0;
        std::optional<uint64_t> keptChange; // the text's changeCount when it was copied
        bool hasCopy = false, isBusy = false;
        std::shared_ptr<const xml2swf::OriginalMovie> original; // of the last copy
        uint32_t originalNumber = 0;
    };
    void changed(DocumentView& view);
    void schedule();
    void keepAll();
    void keep(DocumentView& view, Entry& entry);
    void wasKept(DocumentView& view, const QString& failure);
    void forget(Entry& entry);

    std::shared_ptr<RecoverySession> _session; // used on the pool's one thread
    QThreadPool _pool;
    QTimer _timer;
    QElapsedTimer _waiting; // since the first change that no copy has
    std::chrono::milliseconds _pause{3000}, _lastWrite{0};
    QHash<DocumentView*, Entry> _entries;
    uint32_t _nextId = 0;
};

} // namespace zelk
