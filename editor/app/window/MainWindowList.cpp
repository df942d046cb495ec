// What the commands of the table do while the tag list is shown.
#include <QApplication>
#include <QLineEdit>

#include <algorithm>

#include "DocumentViewListCommands.h"
#include "MainWindow.h"

namespace zelk {

using namespace guicommand;
using namespace guicommand::documentviewlist;

namespace {

// Commands that mean nothing without the text.
constexpr int textOnly[] = {
    CommandId::findNext,  CommandId::findPrevious, CommandId::replace,      CommandId::zoomIn,
    CommandId::zoomOut,   CommandId::zoomReset,    CommandId::toggleFold,   CommandId::foldAll,
    CommandId::unfoldAll, CommandId::cutAll,       CommandId::copyAll,      CommandId::insertColor,
    CommandId::showColor, CommandId::complete,     CommandId::insertStruct, CommandId::insertAction};

// Shows a document's tag list, or says why that cannot be done and goes to the place.
class ShowListCmd : public FinalCommand {
public:
    ShowListCmd(Session& session, DocumentView& view) : _session(session), _view(view) {}
    bool Execute() override {
        BuildTagListCmd(_session, _view.tags()).Execute();
        _view.showList();
        return true;
    }

private:
    Session& _session;
    DocumentView& _view;
};

// Editing keys in the filter box mean its text.
bool runOnField(int id) {
    auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    if (field == nullptr)
        return false;
    switch (id) {
    case CommandId::undo: field->undo(); return true;
    case CommandId::redo: field->redo(); return true;
    case CommandId::cut: field->cut(); return true;
    case CommandId::copy: field->copy(); return true;
    case CommandId::paste: field->paste(); return true;
    case CommandId::clear: field->del(); return true;
    case CommandId::selectAll: field->selectAll(); return true;
    default: return false;
    }
}

} // namespace

void MainWindow::addListHandlers() {
    const auto showList = [this](DocumentView& view) {
        ShowListCmd command(_session, view);
        return execute(command, &view);
    };
    _handlers[CommandId::tagList] = [this, showList] {
        if (DocumentView* view = _tabs->current())
            showList(*view);
    };
    for (const CommandRow& row : commandTable()) {
        if (!DocumentViewList::handles(row.id))
            continue;
        _handlers[row.id] = [this, showList, id = row.id, onText = _handlers.value(row.id)] {
            DocumentView* view = _tabs->current();
            if (view == nullptr)
                return;
            if (!view->showsList() && onText) {
                onText();
            } else if (!runOnField(id) && (view->showsList() || showList(*view))) {
                BuildTagListCmd build(_session, view->tags());
                if (execute(build, view))
                    view->list().run(_session, id);
            }
        };
    }
    _actions->action(CommandId::movieXml)->setCheckable(true);
    _actions->action(CommandId::tagList)->setCheckable(true);
}

void MainWindow::watchList(DocumentView& view) {
    connect(&view, &DocumentView::currentTagChanged, this, [this, &view] {
        if (_tabs->current() == &view)
            choosePreviewed();
    });
    connect(&view.list(), &DocumentViewList::commandAsked, this, &MainWindow::run);
    connect(&view.list(), &DocumentViewList::executeAsked, this, [this, &view](const CommandPtr& command) {
        view.list().execute(_session, command);
        showState();
    });
    connect(&view.list(), &DocumentViewList::menuAsked, this,
            [this](const QPoint& position) { showContextMenu(tagListMenu(), position); });
}

void MainWindow::showListState() {
    DocumentView* view = _tabs->current();
    const bool showsList = view != nullptr && view->showsList();
    _actions->action(CommandId::movieXml)->setChecked(view != nullptr && !showsList);
    _actions->action(CommandId::tagList)->setChecked(showsList);
    if (!showsList)
        return;
    _statusBar->showPlace(0, 0);
    for (int id : textOnly)
        _actions->action(id)->setEnabled(false);
    for (int id : {CommandId::cut, CommandId::copy, CommandId::clear})
        _actions->action(id)->setEnabled(view->list().hasSelection());
}

} // namespace zelk
