#include "FileGuard.h"

#include <QDateTime>
#include <QFileInfo>
#include <QLocale>
#include <QPointer>
#include <QPushButton>
#include <QThreadPool>

#include "NoticeBar.h"

namespace zelk {

namespace {

const QString changedNotice = QStringLiteral("file changed"), removedNotice = QStringLiteral("file removed");

QString sizeText(uint64_t bytes) { return FileGuard::tr("%1 bytes").arg(QLocale().toString(quint64(bytes))); }

QString stampText(const FileStamp& stamp) {
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(stamp.time / 1'000'000);
    return FileGuard::tr("%1 of %2").arg(sizeText(stamp.size), time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")));
}

// Another program may still be writing it.
bool isFresh(const FileStamp& stamp) {
    const qint64 age = QDateTime::currentMSecsSinceEpoch() - stamp.time / 1'000'000;
    return age >= 0 && age < 500;
}

} // namespace

FileGuard::FileGuard(DocumentTabsView& tabs, RequestQueue& requests, QObject* parent)
    : QObject(parent), _tabs(tabs), _requests(requests) {
    connect(&_watch, &FileWatch::happened, this, &FileGuard::look);
}

void FileGuard::documentsChanged() {
    const std::vector<DocumentView*> views = _tabs.all();
    QStringList files;
    for (const DocumentView* view : views) {
        if (view->document().hasFile)
            files.append(view->fileName());
    }
    _watch.setFiles(files);
    _states.removeIf([&](auto state) { return std::ranges::find(views, state.key()) == views.end(); });
}

void FileGuard::look() {
    for (DocumentView* view : _tabs.all())
        lookAt(*view);
}

void FileGuard::lookAt(DocumentView& view) {
    const Document& document = view.document();
    if (!document.hasFile || !document.fileStamp)
        return;
    // [worker thread] The answer is of no use when the document was saved or closed meanwhile.
    QThreadPool::globalInstance()->start(
        [guard = QPointer(this), view = QPointer(&view), name = document.fileName, known = *document.fileStamp] {
            const FileLook look = lookAgain(known, name);
            QMetaObject::invokeMethod(
                qApp,
                [=] {
                    if (guard.isNull() || view.isNull())
                        return;
                    guard->_requests.add(view, [=] {
                        if (!guard.isNull() && view->document().fileName == name && view->document().fileStamp == known)
                            guard->found(*view, look);
                    });
                },
                Qt::QueuedConnection);
        });
}

void FileGuard::found(DocumentView& view, const FileLook& look) {
    State& state = _states[&view];
    switch (look.change) {
    case FileChange::none:
        view.document().fileStamp = look.now; // its time is old enough by now to be relied on
        agree(view);
        break;
    case FileChange::changed:
        state = {false, false, look.now};
        if (isFresh(look.now))
            _watch.lookSoon();
        else
            tellChanged(view);
        break;
    case FileChange::removed:
        if (!std::exchange(state.isMissing, true))
            _watch.lookSoon(); // The program may be about to put a new file there.
        else if (!std::exchange(state.toldRemoved, true))
            tellRemoved(view);
        break;
    }
}

void FileGuard::agree(DocumentView& view) {
    _states.remove(&view);
    view.dropNotice(changedNotice);
    view.dropNotice(removedNotice);
    const Document& document = view.document();
    if (document.hasFile)
        view.setApart(!document.textStamp || !document.fileStamp ||
                      !document.textStamp->sameContent(*document.fileStamp));
}

void FileGuard::tellChanged(DocumentView& view) {
    const Document& document = view.document();
    view.dropNotice(removedNotice);
    NoticeBar* bar = view.notice(changedNotice);
    if (bar == nullptr) {
        bar = view.addNotice(changedNotice);
        connect(bar->addButton(tr("&Reload")), &QPushButton::clicked, this,
                [this, &view] { Q_EMIT reloadAsked(&view); });
        connect(bar->addButton(tr("&Keep Mine")), &QPushButton::clicked, this, [this, &view] {
            view.document().fileStamp = _states[&view].now;
            agree(view);
        });
    }
    QString details = tr("Now: %1. Before: %2.").arg(stampText(_states[&view].now), stampText(*document.fileStamp));
    if (document.kind == FileKind::xml)
        details += tr(" The text here: %1.").arg(sizeText(view.text().size()));
    if (document.isModified)
        details += tr(" Reloading loses what is not saved.");
    bar->setText(tr("Another program changed %1.").arg(QFileInfo(view.fileName()).fileName()), details);
}

void FileGuard::tellRemoved(DocumentView& view) {
    view.dropNotice(changedNotice);
    view.setApart(true);
    NoticeBar* bar = view.addNotice(removedNotice);
    bar->setText(tr("%1 is no longer there: it was removed or renamed.").arg(QFileInfo(view.fileName()).fileName()),
                 tr("The text here may be all that is left of it. Saving writes the file anew."));
    connect(bar->addButton(tr("&Keep Mine")), &QPushButton::clicked, this, [&view] { view.dropNotice(removedNotice); });
}

} // namespace zelk
