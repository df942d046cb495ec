// What each command of the table does.
#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QFileInfo>
#include <QMessageBox>
#include <QUrl>

#include "DocumentViewCommands.h"
#include "DocumentViewTextCommands.h"
#include "MainWindow.h"
#include "Theme.h"

namespace zelk {

using namespace guicommand::documentviewtext;

void MainWindow::addHandlers() {
    using namespace CommandId;
    _handlers[fileNew] = [this] { newDocument(); };
    _handlers[fileOpen] = [this] {
        const DocumentView* view = _tabs->current();
        const bool hasFolder = view != nullptr && view->document().hasFile;
        openFiles(_dialogs.chooseFilesToOpen(hasFolder ? QFileInfo(view->fileName()).absolutePath() : QString()));
    };
    _handlers[CommandId::exit] = [this] { close(); };
    _handlers[CommandId::closeAll] = [this] { closeViews(); };
    _handlers[nextDocument] = [this] { _tabs->step(1); };
    _handlers[previousDocument] = [this] { _tabs->step(-1); };
    _handlers[about] = [this] { showAbout(); };
    _handlers[warnings] = [this] { _warnings->open(); };
    for (int id : {themeSystem, themeLight, themeDark}) {
        _handlers[id] = [this, id] { setTheme(id); };
        _actions->action(id)->setCheckable(true);
    }
    _handlers[CommandId::find] = [this] { _search->openFind(); };
    _handlers[findNext] = [this] { _search->findNext(); };
    _handlers[findPrevious] = [this] { _search->findPrevious(); };
    _handlers[replace] = [this] { _search->openReplace(); };
    addTextHandlers();
    addWindowHandlers();
    addListHandlers();
}

// Commands that the text view of the current document carries out.
void MainWindow::addTextHandlers() {
    using namespace CommandId;
    using Slot = void (TextEditorView::*)();
    const std::pair<int, Slot> rows[] = {
        {undo, &TextEditorView::undo},
        {redo, &TextEditorView::redo},
        {cut, &TextEditorView::cut},
        {cutAll, &TextEditorView::cutAll},
        {copy, &TextEditorView::copy},
        {copyAll, &TextEditorView::copyAll},
        {paste, &TextEditorView::paste},
        {clear, &TextEditorView::clear},
        {selectAll, &TextEditorView::selectAll},
        {insertColor, &TextEditorView::insertColorAsHex},
        {complete, &TextEditorView::complete},
        {insertTag, &TextEditorView::insertNewTag},
        {insertTagTemplate, &TextEditorView::insertNewTag},
        {CommandId::insertAction, &TextEditorView::insertNewAction},
        {insertActionTemplate, &TextEditorView::insertNewAction},
        {insertStruct, &TextEditorView::insertNewStruct},
        {insertStructTemplate, &TextEditorView::insertNewStruct},
        {zoomIn, &TextEditorView::zoomIn},
        {zoomOut, &TextEditorView::zoomOut},
        {zoomReset, &TextEditorView::zoomReset},
        {toggleFold, &TextEditorView::toggleFold},
        {foldAll, &TextEditorView::foldAll},
        {unfoldAll, &TextEditorView::unfoldAll},
    };
    for (const auto& [id, slot] : rows) {
        _handlers[id] = [this, slot = slot] {
            if (DocumentView* view = _tabs->current())
                (view->editor().*slot)();
        };
    }
}

// Commands on the current document.
void MainWindow::addWindowHandlers() {
    using namespace CommandId;
    const auto onCurrent = [this](int id, std::function<void(DocumentView&)> work) {
        _handlers[id] = [this, work = std::move(work)] {
            if (DocumentView* view = _tabs->current())
                work(*view);
        };
    };
    onCurrent(CommandId::save, [this](DocumentView& view) { save(view); });
    onCurrent(CommandId::saveAs, [this](DocumentView& view) { saveAs(view); });
    onCurrent(CommandId::close, [this](DocumentView& view) { closeView(view); });
    onCurrent(closeOthers, [this](DocumentView& view) { closeViews(&view); });
    onCurrent(CommandId::play, [this](DocumentView& view) { play(view); });
    onCurrent(showColor, [this](DocumentView& view) {
        ShowColorCmd command(_session, view.editor().selectedText());
        execute(command, nullptr);
    });
    onCurrent(movieXml, [](DocumentView& view) { view.showText(); });
    onCurrent(checkXml, [this](DocumentView& view) {
        CheckXmlCmd command(_session, view);
        execute(command, &view);
    });
    onCurrent(CommandId::movieSettings, [this](DocumentView& view) {
        MovieSettingsCmd command(_session, view);
        execute(command, &view);
    });
    const auto caret = [](DocumentView& view) { return view.place(); };
    onCurrent(exportPayload, [=, this](DocumentView& view) { exportPayloadAt(view, caret(view)); });
    onCurrent(replacePayload, [=, this](DocumentView& view) { replacePayloadAt(view, caret(view)); });
    onCurrent(CommandId::gotoLine, [this](DocumentView& view) {
        GotoLineCmd command(_session, view);
        execute(command, &view);
    });
    onCurrent(copyFullPath, [](DocumentView& view) { QApplication::clipboard()->setText(view.fileName()); });
    onCurrent(copyFileName,
              [](DocumentView& view) { QApplication::clipboard()->setText(QFileInfo(view.fileName()).fileName()); });
    onCurrent(openFolder, [](DocumentView& view) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(view.fileName()).absolutePath()));
    });
}

void MainWindow::setTheme(int id) {
    using namespace CommandId;
    if (id != themeLight && id != themeDark)
        id = themeSystem;
    applyTheme(static_cast<Theme>(id - themeSystem));
    for (int each : {themeSystem, themeLight, themeDark})
        _actions->action(each)->setChecked(each == id);
    _settings.setValue(QStringLiteral("Window/theme"), id);
}

void MainWindow::showAbout() {
    QMessageBox::about(this, tr("About Zelk"),
                       tr("<h3>Zelk %1</h3><p>Shows a Flash movie as XML and compiles the edited XML back.</p>"
                          "<p>Free software under the GNU General Public License, version 3 or later.</p>")
                           .arg(QStringLiteral(ZELK_VERSION)));
}

} // namespace zelk
