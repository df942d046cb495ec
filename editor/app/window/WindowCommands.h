// What each command of the table does in the window.
#pragma once

#include <QCoreApplication>
#include <QHash>
#include <QSettings>

#include <functional>

#include "CommandActions.h"
#include "KindsPanel.h"
#include "OpenDocuments.h"
#include "ResultsPanel.h"
#include "ScriptLabels.h"
#include "SearchController.h"
#include "TextsPanel.h"
#include "UsesPanel.h"
#include "WarningsPanel.h"
#include "WindowDialogs.h"

namespace zelk {

class GuideWindow;
class PreviewPane;
class StatusBar;

class WindowCommands {
    Q_DECLARE_TR_FUNCTIONS(WindowCommands)
public:
    /// What the commands work on. All outlive them.
    struct Parts {
        QWidget& window;
        QSettings& settings;
        Session& session;
        WindowDialogs& dialogs;
        OpenDocuments& documents;
        DocumentTabsView& tabs;
        CommandActions& actions;
        SearchController& search;
        WarningsPanel& warnings;
        UsesPanel& uses;
        ResultsPanel& results;
        KindsPanel& kinds;
        TextsPanel& texts;
        PreviewPane& preview;
        StatusBar& statusBar;
    };
    explicit WindowCommands(const Parts& parts);

    void run(int id) const;
    /// One of the theme commands; any other number is the system's.
    void setTheme(int id);
    /// How texts are shown, in all documents.
    void setTextLook(const TextEditorView::Look& look);
    /// In which form movies are opened and made.
    void setFullForm(bool isFull);

private:
    using Work = std::function<void(DocumentView&)>;
    void addProgramCommands();
    void addDocumentCommands();
    void addTextCommands();
    void addListCommands();

    /// Nothing is done while no document is open.
    void onCurrent(int id, Work work);
    template <typename Command>
    void executeOnCurrent(int id);
    void exportPayload(DocumentView& view);
    void importPayload(DocumentView& view);
    void runOnList(DocumentView& view, int id);
    bool showList(DocumentView& view);
    void openFiles();
    void checkXml(DocumentView& view);
    void formatXml(DocumentView& view);
    void renameCharacter(DocumentView& view);
    void showUses(DocumentView& view);
    void showSelectedColor(DocumentView& view);
    void changeBranches(DocumentView& view, BranchTargets targets);
    void findSymbol(DocumentView& view);
    void exportText(DocumentView& view);
    void showGuide();
    void showAbout();
    void changeSettings();

    const Parts _parts;
    QHash<int, std::function<void()>> _handlers;
    GuideWindow* _guide = nullptr; // made when it is first asked for
};

} // namespace zelk
