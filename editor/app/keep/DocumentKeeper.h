// What keeps work from being lost: files that other programs change, copies for the case of a crash, the files of the
// last session.
#pragma once

#include <QSettings>

#include "Autosave.h"
#include "FileGuard.h"
#include "OpenDocuments.h"

namespace zelk {

class DocumentKeeper : public QObject {
    Q_OBJECT
public:
    /// What it works on. All outlive it.
    struct Parts {
        QWidget& window;
        QSettings& settings;
        Session& session;
        OpenDocuments& documents;
        DocumentTabsView& tabs;
        RequestQueue& requests;
        QAction& reopens; ///< checked while the user wants the files of the last session at each start
    };
    explicit DocumentKeeper(const Parts& parts);

    /// What is kept for the next start goes to this folder. Without one no copies are made, and which files Zelk wrote
    /// is known during this run only.
    void keepIn(const QString& stateFolder);
    /// Asks what shall become of the documents of runs that ended without closing them.
    void offerRecovery();
    /// Opens what was open last, if the user wants that. From here on the open files are remembered.
    void reopenSession();

    /// Looks at the files of all documents.
    void look() { _files.look(); }
    /// The documents are about to be closed with the window, which the user may still stop: `hasEnded` says whether.
    void willClose();
    void hasEnded(bool areClosed);

    /// Null without a state folder.
    Autosave* autosave() { return _autosave.get(); }

private:
    void watch(DocumentView& view);
    void recover(RecoverySession& session, const KeptDocument& kept);
    void remember();
    void tellFailure(DocumentView& view, const QString& reason);

    const Parts _parts;
    FileGuard _files;
    std::filesystem::path _copies; // the folder of all sessions
    std::unique_ptr<Autosave> _autosave;
    bool _isClosing = false, _toldNoCopies = false;
    bool _hasStarted = false; // the files of the last session are no longer needed
};

} // namespace zelk
