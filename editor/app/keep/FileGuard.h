// Documents and what other programs do to their files: told in a bar above the text.
#pragma once

#include <QHash>
#include <QObject>

#include "DocumentTabsView.h"
#include "FileWatch.h"
#include "RequestQueue.h"

namespace zelk {

/// Looks at the files on a thread; what it finds waits in the queue before a document is touched.
class FileGuard : public QObject {
    Q_OBJECT
public:
    /// Tabs and queue outlive it.
    FileGuard(DocumentTabsView& tabs, RequestQueue& requests, QObject* parent = nullptr);

    /// Other documents are open, or they have other files.
    void documentsChanged();
    /// The file holds what the text says, or the text what the file says.
    void agree(DocumentView& view);
    /// Looks at all files now.
    void look();

Q_SIGNALS:
    void reloadAsked(DocumentView* view);

private:
    struct State {
        bool isMissing = false, toldRemoved = false;
        FileStamp now; // what the bar tells of
    };
    void lookAt(DocumentView& view);
    void found(DocumentView& view, const FileLook& look);
    void tellChanged(DocumentView& view);
    void tellRemoved(DocumentView& view);

    DocumentTabsView& _tabs;
    RequestQueue& _requests;
    FileWatch _watch;
    QHash<const DocumentView*, State> _states;
};

} // namespace zelk
