#include "OpenDocuments.h"

#include <QDir>
#include <QFileInfo>

#include "DocumentViewCommands.h"
#include "DocumentViewTextCommands.h"

namespace zelk {

using namespace guicommand;
using namespace guicommand::documentview;
using namespace guicommand::documentviewtext;

namespace {

// A new document that was not touched: a file may take its tab, and nothing is lost.
bool isUntouchedNew(const DocumentView& view) { return !view.document().hasFile && !view.document().isModified; }

} // namespace

OpenDocuments::OpenDocuments(Session& session, IFileHistory& recentFiles, DocumentTabsView& tabs)
    : _session(session), _recentFiles(recentFiles), _tabs(tabs) {
    _session.isOpenElsewhere = [this](const Document& document, const std::string& fileName) {
        const DocumentView* view = viewOf(QString::fromStdString(fileName));
        return view != nullptr && &view->document() != &document;
    };
}

void OpenDocuments::addNew() {
    auto* view = new DocumentView;
    view->document() = newDocument(_session.names, _session.fullForm);
    LoadFromDocCmd(view->document(), *view).Execute();
    add(view);
    Q_EMIT changed();
}

void OpenDocuments::add(DocumentView* view) {
    Q_EMIT added(view);
    _tabs.add(view);
}

bool OpenDocuments::open(const QStringList& fileNames) {
    bool all = true;
    for (const QString& name : fileNames)
        all = openFile(name) && all;
    return all;
}

bool OpenDocuments::openFile(const QString& fileName) {
    const QString name = QDir::toNativeSeparators(QFileInfo(fileName).absoluteFilePath()); // as it is shown
    if (DocumentView* view = viewOf(name)) {
        _recentFiles.add(view->document().fileName);
        _tabs.setCurrentWidget(view);
        return true;
    }
    auto view = std::make_unique<DocumentView>();
    MacroCommand command{std::make_shared<LoadFromFileCmd>(_session, view->document(), name.toStdString()),
                         std::make_shared<LoadFromDocCmd>(view->document(), *view)};
    if (!runCommand(_session, command)) {
        if (!QFileInfo::exists(name))
            _recentFiles.remove(name.toStdString());
        return false;
    }
    _recentFiles.add(name.toStdString());
    addInPlaceOfUntouched(view.release());
    return true;
}

void OpenDocuments::addInPlaceOfUntouched(DocumentView* view) {
    DocumentView* untouched = _tabs.count() == 1 && isUntouchedNew(*_tabs.at(0)) ? _tabs.at(0) : nullptr;
    add(view);
    if (untouched != nullptr)
        _tabs.remove(untouched);
    Q_EMIT changed();
}

DocumentView* OpenDocuments::recover(const RecoverySession& session, const KeptDocument& kept) {
    auto view = std::make_unique<DocumentView>();
    MacroCommand command{std::make_shared<RecoverCmd>(_session, session, kept, view->document()),
                         std::make_shared<LoadFromDocCmd>(view->document(), *view)};
    if (!runCommand(_session, command))
        return nullptr;
    view->setApart(true);
    view->editor().gotoOffset(std::min<size_t>(kept.caret, view->text().size()));
    DocumentView* recovered = view.get();
    addInPlaceOfUntouched(view.release());
    return recovered;
}

void OpenDocuments::reload(DocumentView& view) {
    if (view.document().isModified && !_session.user.askToReload(view.document()))
        return;
    Document fresh;
    const auto& original = view.document().original;
    const std::optional<bool> form = original == nullptr ? std::nullopt : std::optional(original->fullForm());
    LoadFromFileCmd load(_session, fresh, view.document().fileName, form);
    if (!runCommand(_session, load))
        return;
    const uint32_t row = view.editor().row(), column = view.editor().column();
    view.document() = std::move(fresh);
    LoadFromDocCmd(view.document(), view).Execute();
    view.editor().gotoPlace(row, column);
    Q_EMIT view.stateChanged();
    Q_EMIT agreed(&view);
    Q_EMIT changed();
}

DocumentView* OpenDocuments::viewOf(const QString& fileName) const {
    const QFileInfo file(fileName);
    for (DocumentView* view : _tabs.all()) {
        if (view->document().hasFile && QFileInfo(view->fileName()) == file)
            return view;
    }
    return nullptr;
}

bool OpenDocuments::save(DocumentView& view) {
    if (!hasFileOfItsKind(view.document()))
        return saveAs(view);
    return saveBy(view, std::make_shared<SaveToFileCmd>(_session, view.document()));
}

bool OpenDocuments::saveAs(DocumentView& view) {
    return saveBy(view, std::make_shared<SaveAsFileCmd>(_session, view.document()));
}

bool OpenDocuments::saveBy(DocumentView& view, CommandPtr command) {
    MacroCommand all{std::make_shared<SaveAsDocCmd>(view.document(), view), std::move(command)};
    const bool isDone = runCommand(_session, all, &view);
    view.document().text = {};
    if (!isDone)
        return false;
    view.setSavePoint();
    Q_EMIT agreed(&view);
    _recentFiles.add(view.document().fileName);
    Q_EMIT view.stateChanged();
    Q_EMIT changed();
    Q_EMIT saved(view.fileName());
    return true;
}

void OpenDocuments::play(DocumentView& view, bool isApart) {
    MacroCommand all{std::make_shared<SaveAsDocCmd>(view.document(), view),
                     std::make_shared<SwfPlayCmd>(_session, view.document(), isApart)};
    runCommand(_session, all, &view);
    view.document().text = {};
    Q_EMIT changed();
}

bool OpenDocuments::close(DocumentView& view) {
    if (view.document().isModified) {
        _tabs.setCurrentWidget(&view);
        const SaveAnswer answer = _session.user.askToSave(view.document());
        if (answer == SaveAnswer::cancel || (answer == SaveAnswer::yes && !save(view)))
            return false;
    }
    _tabs.remove(&view);
    Q_EMIT changed();
    return true;
}

bool OpenDocuments::closeAll(const DocumentView* butThis) {
    for (DocumentView* view : _tabs.all()) {
        if (view != butThis && !close(*view))
            return false;
    }
    return true;
}

} // namespace zelk
