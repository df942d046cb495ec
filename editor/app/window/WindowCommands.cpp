#include "WindowCommands.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QFileInfo>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QUrl>

#include "DocumentViewListCommands.h"
#include "DocumentViewTextCommands.h"
#include "FindSymbolDlg.h"
#include "GuideWindow.h"
#include "LinesNotice.h"
#include "PayloadCommands.h"
#include "PlayerProcess.h"
#include "PreviewPane.h"
#include "PrintCommands.h"
#include "RenameCharacterCmd.h"
#include "ScriptCommands.h"
#include "SettingsDlg.h"
#include "StatusBar.h"
#include "Theme.h"

namespace zelk {

using namespace guicommand;
using namespace guicommand::documentviewlist;
using namespace guicommand::documentviewtext;

namespace {

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

// Editing keys in a filter box mean its text.
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

void copyToClipboard(const QString& text) { QApplication::clipboard()->setText(text); }

} // namespace

WindowCommands::WindowCommands(const Parts& parts) : _parts(parts) {
    addProgramCommands();
    addDocumentCommands();
    addTextCommands();
    addListCommands();
}

void WindowCommands::run(int id) const {
    if (runOnField(id) || _parts.warnings.run(id) || _parts.texts.run(id) || _parts.kinds.run(id))
        return;
    if (const auto handler = _handlers.value(id))
        handler();
}

void WindowCommands::onCurrent(int id, Work work) {
    _handlers[id] = [this, work = std::move(work)] {
        if (DocumentView* view = _parts.tabs.current())
            work(*view);
    };
}

template <typename Command>
void WindowCommands::executeOnCurrent(int id) {
    onCurrent(id, [this](DocumentView& view) {
        Command command(_parts.session, view);
        runCommand(_parts.session, command, &view);
    });
}

// --- commands that need no document ----------------------------------------------------------------------------------

void WindowCommands::addProgramCommands() {
    _handlers[CommandId::fileNew] = [this] { _parts.documents.addNew(); };
    _handlers[CommandId::fileOpen] = [this] { openFiles(); };
    _handlers[CommandId::exit] = [this] { _parts.window.close(); };
    _handlers[CommandId::closeAll] = [this] { _parts.documents.closeAll(); };
    _handlers[CommandId::nextDocument] = [this] { _parts.tabs.step(1); };
    _handlers[CommandId::previousDocument] = [this] { _parts.tabs.step(-1); };
    _handlers[CommandId::guide] = [this] { showGuide(); };
    _handlers[CommandId::about] = [this] { showAbout(); };
    _handlers[CommandId::warnings] = [this] { _parts.warnings.toggle(); };
    _handlers[CommandId::kinds] = [this] { _parts.kinds.toggle(); };
    _handlers[CommandId::texts] = [this] { _parts.texts.toggle(); };
    _handlers[CommandId::preview] = [this] { _parts.preview.toggle(); };
    for (int id : {CommandId::themeSystem, CommandId::themeLight, CommandId::themeDark})
        _handlers[id] = [this, id] { setTheme(id); };
    _handlers[CommandId::openInFullForm] = [this] { setFullForm(!_parts.session.fullForm); };
    _handlers[CommandId::settings] = [this] { changeSettings(); };
    _handlers[CommandId::wordWrap] = [this] {
        TextEditorView::Look look = textLook(_parts.settings);
        look.wraps = !look.wraps;
        setTextLook(look);
        DocumentView* view = _parts.tabs.current();
        if (look.wraps && view != nullptr && !view->editor().canWrap())
            _parts.statusBar.showMessage(
                tr("Not in this document: it has more than 32 MB, or a line of more than 128 KB."));
    };
    _handlers[CommandId::find] = [this] { _parts.search.openFind(); };
    _handlers[CommandId::findNext] = [this] { _parts.search.findNext(); };
    _handlers[CommandId::findPrevious] = [this] { _parts.search.findPrevious(); };
    _handlers[CommandId::replace] = [this] { _parts.search.openReplace(); };
    _handlers[CommandId::findInAll] = [this] { _parts.search.findInAll(); };
    _handlers[CommandId::results] = [this] { _parts.results.toggle(); };
}

void WindowCommands::openFiles() {
    const DocumentView* view = _parts.tabs.current();
    const bool hasFolder = view != nullptr && view->document().hasFile;
    const QString folder = hasFolder ? QFileInfo(view->fileName()).absolutePath() : QString();
    _parts.documents.open(_parts.dialogs.chooseFilesToOpen(folder));
}

void WindowCommands::setTheme(int id) {
    if (id != CommandId::themeLight && id != CommandId::themeDark)
        id = CommandId::themeSystem;
    applyTheme(static_cast<Theme>(id - CommandId::themeSystem));
    for (int each : {CommandId::themeSystem, CommandId::themeLight, CommandId::themeDark})
        _parts.actions.action(each)->setChecked(each == id);
    _parts.settings.setValue(QStringLiteral("Window/theme"), id);
}

void WindowCommands::setTextLook(const TextEditorView::Look& look) {
    keepTextLook(_parts.settings, look);
    _parts.actions.action(CommandId::wordWrap)->setChecked(look.wraps);
    for (DocumentView* view : _parts.tabs.all())
        view->editor().setTextLook(look);
}

void WindowCommands::changeSettings() {
    const int theme = _parts.settings.value(QStringLiteral("Window/theme"), CommandId::themeSystem).toInt();
    SettingsDlg dialog(_parts.settings, std::clamp(theme - CommandId::themeSystem, 0, 2), _parts.session.fullForm,
                       PlayerProcess::hasOwn(), &_parts.window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    dialog.keepIn(_parts.settings);
    setTheme(CommandId::themeSystem + dialog.theme());
    setFullForm(dialog.fullForm());
    _parts.session.keepsBackups = keepsBackups(_parts.settings);
    setTextLook(textLook(_parts.settings));
}

void WindowCommands::setFullForm(bool isFull) {
    _parts.session.fullForm = isFull;
    _parts.actions.action(CommandId::openInFullForm)->setChecked(isFull);
    _parts.settings.setValue(QStringLiteral("Movies/form"),
                             isFull ? QStringLiteral("full") : QStringLiteral("classic"));
}

void WindowCommands::showGuide() {
    if (_guide == nullptr)
        _guide = new GuideWindow(&_parts.window);
    _guide->open();
}

void WindowCommands::showAbout() {
    QMessageBox::about(&_parts.window, tr("About Zelk"),
                       tr("<h3>Zelk %1</h3><p>Shows a Flash movie as XML and compiles the edited XML back.</p>"
                          "<p>Free software under the GNU General Public License, version 3 or later.</p>")
                           .arg(QStringLiteral(ZELK_VERSION)));
}

// --- commands on the current document --------------------------------------------------------------------------------

void WindowCommands::addDocumentCommands() {
    onCurrent(CommandId::save, [this](DocumentView& view) { _parts.documents.save(view); });
    onCurrent(CommandId::saveAs, [this](DocumentView& view) { _parts.documents.saveAs(view); });
    onCurrent(CommandId::close, [this](DocumentView& view) { _parts.documents.close(view); });
    onCurrent(CommandId::closeOthers, [this](DocumentView& view) { _parts.documents.closeAll(&view); });
    onCurrent(CommandId::play, [this](DocumentView& view) {
        _parts.documents.play(view, QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier)); // on the button
    });
    onCurrent(CommandId::playApart, [this](DocumentView& view) { _parts.documents.play(view, true); });
    onCurrent(CommandId::showColor, [this](DocumentView& view) { showSelectedColor(view); });
    onCurrent(CommandId::movieXml, [](DocumentView& view) { view.showText(); });
    onCurrent(CommandId::tagList, [this](DocumentView& view) { showList(view); });
    onCurrent(CommandId::switchView, [this](DocumentView& view) {
        if (view.showsList())
            view.showText();
        else
            showList(view);
    });
    onCurrent(CommandId::checkXml, [this](DocumentView& view) { checkXml(view); });
    onCurrent(CommandId::formatXml, [this](DocumentView& view) { formatXml(view); });
    onCurrent(CommandId::movieSettings, [this](DocumentView& view) {
        MovieSettingsCmd command(_parts.session, view.document(), view);
        if (runCommand(_parts.session, command, &view))
            Q_EMIT view.warningsChanged(); // of a form that was changed
    });
    executeOnCurrent<PrintCmd>(CommandId::print);
    executeOnCurrent<PrintPreviewCmd>(CommandId::printPreview);
    onCurrent(CommandId::exportText, [this](DocumentView& view) { exportText(view); });
    executeOnCurrent<GotoLineCmd>(CommandId::gotoLine);
    onCurrent(CommandId::gotoTarget, [](DocumentView& view) { view.gotoTarget(); });
    onCurrent(CommandId::showUses, [this](DocumentView& view) { showUses(view); });
    onCurrent(CommandId::renameCharacter, [this](DocumentView& view) { renameCharacter(view); });
    onCurrent(CommandId::labelBranches, [this](DocumentView& view) { changeBranches(view, BranchTargets::labels); });
    onCurrent(CommandId::unlabelBranches, [this](DocumentView& view) { changeBranches(view, BranchTargets::numbers); });
    onCurrent(CommandId::findSymbol, [this](DocumentView& view) { findSymbol(view); });
    onCurrent(CommandId::exportPayload, [this](DocumentView& view) { exportPayload(view); });
    onCurrent(CommandId::replacePayload, [this](DocumentView& view) { importPayload(view); });
    onCurrent(CommandId::copyFullPath, [](DocumentView& view) { copyToClipboard(view.fileName()); });
    onCurrent(CommandId::copyFileName,
              [](DocumentView& view) { copyToClipboard(QFileInfo(view.fileName()).fileName()); });
    onCurrent(CommandId::openFolder, [](DocumentView& view) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(view.fileName()).absolutePath()));
    });
}

void WindowCommands::checkXml(DocumentView& view) {
    CheckXmlCmd command(_parts.session, view, view.document().warnings);
    if (!runCommand(_parts.session, command, &view))
        return;
    Q_EMIT view.warningsChanged();
    if (command.foundProblems())
        _parts.warnings.open();
}

void WindowCommands::formatXml(DocumentView& view) {
    TextEditorView& editor = view.editor();
    const TextMatch selection = view.showsList() ? TextMatch{} : editor.selection();
    FormatXmlCmd command(_parts.session, view, selection.start, selection.end, editor.caret(),
                         {editor.indentUnit(), editor.lineEnd()});
    if (!runCommand(_parts.session, command, &view))
        return;
    editor.gotoOffset(command.caret());
    if (selection.start == selection.end)
        LinesNotice::drop(view);
}

void WindowCommands::showUses(DocumentView& view) {
    if (_parts.uses.isAncestorOf(QApplication::focusWidget()))
        return _parts.uses.toggle();
    if (const std::optional<IdAtPlace> id = view.characterId())
        _parts.uses.showUses(view, id->id);
    else
        _parts.session.user.inform({"There is no id of a character here.", "Uses"});
}

void WindowCommands::renameCharacter(DocumentView& view) {
    const std::optional<IdAtPlace> id = view.characterId();
    if (!id)
        return _parts.session.user.inform({"There is no id of a character here.", "Rename Character"});
    bool isGiven = false;
    const int to = QInputDialog::getInt(&_parts.window, tr("Rename Character"),
                                        tr("Id in place of %1, wherever it is used:").arg(id->id), id->id, 1,
                                        UINT16_MAX, 1, &isGiven);
    if (!isGiven || to == id->id)
        return;
    RenameCharacterCmd command(_parts.session, view, id->id, to);
    runCommand(_parts.session, command, &view);
}

void WindowCommands::showSelectedColor(DocumentView& view) {
    ShowColorCmd command(_parts.session, view.editor().selectedText());
    runCommand(_parts.session, command);
}

// Of the selected text; all scripts when nothing is selected.
void WindowCommands::changeBranches(DocumentView& view, BranchTargets targets) {
    const bool isPart = !view.showsList() && view.editor().hasSelection();
    const TextMatch range = isPart ? view.editor().selection() : TextMatch{};
    script::ChangeBranchesCmd command(_parts.session, view.tags(), targets, range.start, range.end);
    runCommand(_parts.session, command, &view);
}

// In the tag list, of the selected tag: what stands in a block of code is the second level of the list.
void WindowCommands::findSymbol(DocumentView& view) {
    const std::pair<size_t, size_t> tag = view.listedTag().value_or(std::pair<size_t, size_t>());
    script::CollectSymbolsCmd command(_parts.session, view.tags(), tag.first, tag.second);
    if (!runCommand(_parts.session, command, &view))
        return;
    FindSymbolDlg dialog(command.symbols, &_parts.window);
    if (dialog.exec() == QDialog::Accepted)
        view.jumpTo(dialog.choice().offset);
}

// Of the tag at the caret, or of the current one in the list.
void WindowCommands::exportPayload(DocumentView& view) {
    _parts.dialogs.setPayloadFolder(view.document());
    ExportPayloadCmd command(_parts.session, view, view.place());
    if (runCommand(_parts.session, command, &view))
        _parts.statusBar.showExported(QString::fromStdString(command.fileName()));
}

void WindowCommands::importPayload(DocumentView& view) {
    _parts.dialogs.setPayloadFolder(view.document());
    ImportPayloadCmd command(_parts.session, view, view.place());
    runCommand(_parts.session, command, &view);
}

void WindowCommands::exportText(DocumentView& view) {
    ExportTextCmd command(_parts.session, view);
    if (runCommand(_parts.session, command, &view))
        _parts.statusBar.showExported(command.fileName());
}

// --- commands that the text view carries out -------------------------------------------------------------------------

void WindowCommands::addTextCommands() {
    using Slot = void (TextEditorView::*)();
    const std::pair<int, Slot> rows[] = {
        {CommandId::undo, &TextEditorView::undo},
        {CommandId::redo, &TextEditorView::redo},
        {CommandId::cut, &TextEditorView::cut},
        {CommandId::cutAll, &TextEditorView::cutAll},
        {CommandId::copy, &TextEditorView::copy},
        {CommandId::copyAll, &TextEditorView::copyAll},
        {CommandId::paste, &TextEditorView::paste},
        {CommandId::clear, &TextEditorView::clear},
        {CommandId::selectAll, &TextEditorView::selectAll},
        {CommandId::insertColor, &TextEditorView::insertColorAsHex},
        {CommandId::complete, &TextEditorView::complete},
        {CommandId::insertTag, &TextEditorView::insertNewTag},
        {CommandId::insertTagTemplate, &TextEditorView::insertNewTag},
        {CommandId::insertAction, &TextEditorView::insertNewAction},
        {CommandId::insertActionTemplate, &TextEditorView::insertNewAction},
        {CommandId::insertStruct, &TextEditorView::insertNewStruct},
        {CommandId::insertStructTemplate, &TextEditorView::insertNewStruct},
        {CommandId::jumpBack, &TextEditorView::jumpBack},
        {CommandId::jumpForward, &TextEditorView::jumpForward},
        {CommandId::duplicateLines, &TextEditorView::duplicateLines},
        {CommandId::moveLinesUp, &TextEditorView::moveLinesUp},
        {CommandId::moveLinesDown, &TextEditorView::moveLinesDown},
        {CommandId::toggleBookmark, &TextEditorView::toggleBookmark},
        {CommandId::nextBookmark, &TextEditorView::nextBookmark},
        {CommandId::previousBookmark, &TextEditorView::previousBookmark},
        {CommandId::zoomIn, &TextEditorView::zoomIn},
        {CommandId::zoomOut, &TextEditorView::zoomOut},
        {CommandId::zoomReset, &TextEditorView::zoomReset},
        {CommandId::toggleFold, &TextEditorView::toggleFold},
        {CommandId::foldAll, &TextEditorView::foldAll},
        {CommandId::unfoldAll, &TextEditorView::unfoldAll},
    };
    for (const auto& [id, slot] : rows)
        onCurrent(id, [slot = slot](DocumentView& view) { (view.editor().*slot)(); });
}

// --- commands that the tag list carries out while it is shown --------------------------------------------------------

// Those that the text view has too go there while the text is shown; the others bring up the list.
void WindowCommands::addListCommands() {
    for (const CommandRow& row : commandTable()) {
        if (!DocumentViewList::handles(row.id))
            continue;
        onCurrent(row.id, [this, id = row.id, onText = _handlers.value(row.id)](DocumentView& view) {
            if (!view.showsList() && onText)
                onText();
            else
                runOnList(view, id);
        });
    }
}

void WindowCommands::runOnList(DocumentView& view, int id) {
    if (!(view.showsList() || showList(view)))
        return;
    BuildTagListCmd build(_parts.session, view.tags());
    if (runCommand(_parts.session, build, &view))
        view.list().run(_parts.session, id);
}

bool WindowCommands::showList(DocumentView& view) {
    ShowListCmd command(_parts.session, view);
    return runCommand(_parts.session, command, &view);
}

} // namespace zelk
