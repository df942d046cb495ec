// The open documents: how they come into their tabs, are saved, played and closed.
#pragma once

#include "Command.h"
#include "DocumentTabsView.h"
#include "RecentFiles.h"
#include "RecoverySession.h"

namespace zelk {

class OpenDocuments : public QObject {
    Q_OBJECT
public:
    /// All outlive it.
    OpenDocuments(Session& session, IFileHistory& recentFiles, DocumentTabsView& tabs);

    void addNew();
    /// Opens each file in a tab of its own, or shows the tab that has it. False when one cannot be opened.
    bool open(const QStringList& fileNames);
    /// False when it was not saved: the reason is told.
    bool save(DocumentView& view);
    bool saveAs(DocumentView& view);
    void play(DocumentView& view, bool isApart);
    /// In place of what is there, with the caret in its row; asks first when that has unsaved changes.
    void reload(DocumentView& view);
    /// Opens what a run that ended kept of a document, as modified. Null when it cannot be read.
    DocumentView* recover(const RecoverySession& session, const KeptDocument& kept);
    /// Null when the file is not open.
    DocumentView* viewOf(const QString& fileName) const;
    /// False when the user wants to keep it.
    bool close(DocumentView& view);
    /// Stops at the first that the user wants to keep.
    bool closeAll(const DocumentView* butThis = nullptr);

Q_SIGNALS:
    /// Before it stands in a tab.
    void added(DocumentView* view);
    /// Documents came or went, or their warnings are others.
    void changed();
    void saved(const QString& fileName);
    /// The document's file holds its text: it was saved or read anew.
    void agreed(DocumentView* view);

private:
    bool openFile(const QString& fileName);
    void add(DocumentView* view);
    void addInPlaceOfUntouched(DocumentView* view);
    bool saveBy(DocumentView& view, guicommand::CommandPtr command);

    Session& _session;
    IFileHistory& _recentFiles;
    DocumentTabsView& _tabs;
};

} // namespace zelk
