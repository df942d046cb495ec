// The application's only top-level window: menus, one tab per document, status bar.
#pragma once

#include <QHash>
#include <QMainWindow>
#include <QSettings>
#include <functional>

#include "Command.h"
#include "CommandActions.h"
#include "DocumentTabsView.h"
#include "PlayerProcess.h"
#include "RequestQueue.h"
#include "SearchController.h"
#include "StatusBar.h"
#include "WarningsPanel.h"
#include "WindowDialogs.h"
#include "WindowSettings.h"

namespace zelk {

class PreviewPane;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    /// The settings outlive the window.
    explicit MainWindow(QSettings& settings);

    /// Opens each file in a tab of its own, or shows the tab that has it. False when one cannot be opened.
    bool openFiles(const QStringList& fileNames);
    /// The same for files that come from elsewhere, as soon as nothing is open that they would disturb.
    void openLater(const QStringList& fileNames);
    void newDocument();
    /// Files of another start: opens them later and comes to the front now.
    void receiveFiles(const QStringList& fileNames);

    RequestQueue& requests() { return _requests; }
    CommandActions& actions() { return *_actions; }
    DocumentTabsView& tabs() { return *_tabs; }
    const IFileHistory& recentFiles() const { return _recentFiles; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using Handler = std::function<void()>;
    void addHandlers();
    void addTextHandlers();
    void addViewHandlers();
    void addWindowHandlers();
    void addListHandlers();
    void run(int id);

    bool openFile(const QString& fileName);
    DocumentView* viewOf(const QString& fileName) const;
    void addView(DocumentView* view);
    /// All but documents that are left as they were made.
    bool isUntouchedNew(const DocumentView& view) const;

    bool save(DocumentView& view);
    bool saveAs(DocumentView& view);
    bool saveBy(DocumentView& view, guicommand::CommandPtr command);
    void play(DocumentView& view);
    // Of the innermost tag around a place in the text.
    void exportPayloadAt(DocumentView& view, size_t offset);
    void replacePayloadAt(DocumentView& view, size_t offset);
    /// False when the user wants to keep it.
    bool closeView(DocumentView& view);
    bool closeViews(const DocumentView* butThis = nullptr);
    bool execute(guicommand::ICommand& command, ITextView* view);

    void watch(DocumentView& view);
    void showContextMenu(std::span<const MenuItem> items, const QPoint& globalPos);
    void fillRecentFiles();
    void showState();
    void showWarnings();
    /// Of commands whose state depends on whether the text or the tag list is shown.
    void showListState();
    void watchList(DocumentView& view);
    void setTheme(int id);
    void showAbout();
    void addPreview();
    void choosePreviewed();
    void restore();

    QSettings& _settings;
    WindowDialogs _dialogs;
    Session _session;
    RequestQueue _requests;
    QStringList _waitingFiles; // to be opened later
    PlayerProcess _player;
    WindowSettings _recentSettings;
    FilesRecentList _recentFiles;
    CommandActions* _actions;
    DocumentTabsView* _tabs;
    StatusBar* _statusBar;
    WarningsPanel* _warnings;
    PreviewPane* _preview = nullptr;
    SearchController* _search;
    QHash<int, Handler> _handlers;
};

} // namespace zelk
