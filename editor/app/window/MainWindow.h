// The application's only top-level window: menus, one tab per document, status bar. What the documents go through is
// OpenDocuments, what the commands do WindowCommands.
#pragma once

#include <QMainWindow>
#include <QSettings>
#include <QStackedWidget>

#include "CommandActions.h"
#include "DocumentKeeper.h"
#include "KindsPanel.h"
#include "OpenDocuments.h"
#include "PlayerProcess.h"
#include "RequestQueue.h"
#include "ResultsPanel.h"
#include "SearchController.h"
#include "StartPage.h"
#include "StaticTextSearch.h"
#include "StatusBar.h"
#include "TextsPanel.h"
#include "UsesPanel.h"
#include "WarningsPanel.h"
#include "WindowCommands.h"
#include "WindowDialogs.h"
#include "WindowSettings.h"

namespace zelk {

class PreviewPane;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    /// The settings outlive the window. What is kept for the next start goes to the state folder (DocumentKeeper); an
    /// empty name is none.
    explicit MainWindow(QSettings& settings, const QString& stateFolder = {});

    /// Opens each file in a tab of its own, or shows the tab that has it. False when one cannot be opened.
    bool openFiles(const QStringList& fileNames) { return _documents.open(fileNames); }
    /// The same for files that come from elsewhere, as soon as nothing is open that they would disturb.
    void openLater(const QStringList& fileNames);
    void newDocument() { _documents.addNew(); }
    /// Files of another start: opens them later and comes to the front now.
    void receiveFiles(const QStringList& fileNames);

    DocumentKeeper& keeper() { return _keeper; }
    RequestQueue& requests() { return _requests; }
    CommandActions& actions() { return *_actions; }
    DocumentTabsView& tabs() { return *_tabs; }
    StartPage& startPage() { return *_start; }
    const IFileHistory& recentFiles() const { return _recentFiles; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void childEvent(QChildEvent* event) override;

private:
    void buildLayout();
    void connectParts();
    void restore();
    void watch(DocumentView& view);
    void run(int id);

    void showState();
    void connectKinds();
    void connectStart();
    void goToDocument();
    void connectSearch();
    bool selectInList(size_t place);
    void showWarnings();
    void showPreview();
    void showStart();
    void showContextMenu(std::span<const MenuItem> items, const QPoint& globalPos);
    void fillRecentFiles();

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
    StartPage* _start; // instead of the tabs while there are none
    QStackedWidget* _pages;
    StatusBar* _statusBar;
    WarningsPanel* _warnings;
    UsesPanel* _uses;
    ResultsPanel* _results;
    KindsPanel* _kinds;
    TextsPanel* _texts;
    PreviewPane* _preview;
    SearchController* _search;
    StaticTextSearch _staticTexts;
    OpenDocuments _documents;
    WindowCommands _commands;
    DocumentKeeper _keeper;
};

} // namespace zelk
