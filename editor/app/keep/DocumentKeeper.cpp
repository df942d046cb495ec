#include "DocumentKeeper.h"

#include <QAction>
#include <QFileInfo>
#include <QPushButton>

#include "NoticeBar.h"
#include "RecoveryDialog.h"

namespace zelk {

namespace {

// The files are those of the last session, each as the offset of its caret and its name.
const QString reopenKey = QStringLiteral("Session/reopen"), filesKey = QStringLiteral("Session/files"),
              currentKey = QStringLiteral("Session/current");

const QString noCopyNotice = QStringLiteral("no copy");

// A document of a session that ended, as it is offered.
struct Offer {
    RecoverySession* session;
    KeptDocument document;
};

using Sessions = std::vector<std::unique_ptr<RecoverySession>>;

QString nameOf(const std::filesystem::path& path) { return QString::fromStdU16String(path.u16string()); }

std::vector<Offer> offersOf(const Sessions& sessions) {
    std::vector<Offer> offers;
    for (const auto& session : sessions) {
        for (const KeptDocument& document : session->documents())
            offers.push_back({session.get(), document});
    }
    return offers;
}

} // namespace

DocumentKeeper::DocumentKeeper(const Parts& parts) : _parts(parts), _files(parts.tabs, parts.requests) {
    connect(&_files, &FileGuard::reloadAsked, this, [this](DocumentView* view) { _parts.documents.reload(*view); });
    connect(&_parts.documents, &OpenDocuments::added, this, [this](DocumentView* view) { watch(*view); });
    connect(&_parts.documents, &OpenDocuments::agreed, this, [this](DocumentView* view) { _files.agree(*view); });
    connect(&_parts.documents, &OpenDocuments::changed, this, [this] {
        _files.documentsChanged();
        remember();
    });
    _parts.reopens.setChecked(_parts.settings.value(reopenKey).toBool());
    connect(&_parts.reopens, &QAction::toggled, this, [this](bool isOn) {
        _parts.settings.setValue(reopenKey, isOn);
        _hasStarted = true;
        remember();
    });
}

void DocumentKeeper::keepIn(const QString& stateFolder) {
    const std::filesystem::path folder = stateFolder.toStdU16String();
    _parts.session.writtenFiles.keepIn(folder / "written");
    _copies = folder / "recovery"; // of earlier runs, whatever is wanted of this one
    if (!_parts.settings.value(QStringLiteral("Recovery/copies"), true).toBool())
        return;
    std::shared_ptr<RecoverySession> session = RecoverySession::begin(_copies);
    if (session == nullptr) { // as on a full disk
        connect(&_parts.documents, &OpenDocuments::added, this, [this](DocumentView* view) {
            if (!std::exchange(_toldNoCopies, true))
                _parts.requests.add(view, [this, view] {
                    tellFailure(*view, tr("Nothing can be written to %1.").arg(nameOf(_copies)));
                });
        });
        return;
    }
    _autosave = std::make_unique<Autosave>(std::move(session));
    connect(_autosave.get(), &Autosave::kept, this, [](DocumentView* view) { view->dropNotice(noCopyNotice); });
    connect(_autosave.get(), &Autosave::failed, this, [this](DocumentView* view, const QString& reason) {
        _parts.requests.add(view, [this, view, reason] { tellFailure(*view, reason); });
    });
}

void DocumentKeeper::watch(DocumentView& view) {
    if (_autosave != nullptr)
        _autosave->watch(view);
}

void DocumentKeeper::tellFailure(DocumentView& view, const QString& reason) {
    if (view.notice(noCopyNotice) != nullptr)
        return;
    NoticeBar* bar = view.addNotice(noCopyNotice);
    bar->setText(tr("No copy of unsaved changes can be kept for the case of a crash."), reason);
    connect(bar->addButton(tr("Hi&de")), &QPushButton::clicked, bar, &QWidget::hide);
}

void DocumentKeeper::willClose() {
    remember();
    _isClosing = true;
}

void DocumentKeeper::hasEnded(bool areClosed) {
    _isClosing = areClosed; // Documents that close with the window stay in the list of files to reopen.
    if (areClosed && _autosave != nullptr)
        _autosave->end();
}

// --- recovery --------------------------------------------------------------------------------------------------------

void DocumentKeeper::offerRecovery() {
    if (_copies.empty())
        return;
    const Sessions sessions = RecoverySession::ended(_copies);
    std::vector<Offer> offers = offersOf(sessions);
    while (!offers.empty()) {
        std::vector<KeptDocument> documents;
        for (const Offer& offer : offers)
            documents.push_back(offer.document);
        RecoveryDialog dialog(
            documents, [&](size_t i) { return offers[i].session->text(offers[i].document.id); }, &_parts.window);
        const RecoveryDialog::Choice choice = dialog.ask();
        if (choice == RecoveryDialog::Choice::later)
            break;
        const std::vector<size_t> selected = dialog.selected();
        for (size_t i : selected) {
            if (choice == RecoveryDialog::Choice::discard)
                offers[i].session->forget(offers[i].document.id);
            else
                recover(*offers[i].session, offers[i].document);
        }
        for (size_t i = selected.size(); i-- > 0;)
            offers.erase(offers.begin() + static_cast<std::ptrdiff_t>(selected[i]));
    }
    for (const auto& session : sessions) {
        if (session->documents().empty())
            session->end();
    }
}

// The copy becomes that of the document before it is gone from the session that ended.
void DocumentKeeper::recover(RecoverySession& session, const KeptDocument& kept) {
    DocumentView* view = _parts.documents.recover(session, kept);
    if (view != nullptr && _autosave != nullptr)
        _autosave->adopt(*view, session, kept);
    _files.look();
}

// --- the last session ------------------------------------------------------------------------------------------------

void DocumentKeeper::remember() {
    if (_isClosing || !_hasStarted)
        return;
    if (!_parts.reopens.isChecked()) {
        _parts.settings.remove(filesKey);
        return;
    }
    QStringList files;
    for (DocumentView* view : _parts.tabs.all()) {
        if (view->document().hasFile)
            files.append(QString::number(view->editor().caret()) + u' ' + view->fileName());
    }
    const DocumentView* current = _parts.tabs.current();
    _parts.settings.setValue(filesKey, files);
    _parts.settings.setValue(currentKey, current == nullptr ? QString() : current->fileName());
}

void DocumentKeeper::reopenSession() {
    _hasStarted = true;
    if (!_parts.reopens.isChecked())
        return;
    OpenDocuments& documents = _parts.documents;
    const QStringList files = _parts.settings.value(filesKey).toStringList();
    const QString current = _parts.settings.value(currentKey).toString();
    for (const QString& file : files) {
        const QString name = file.section(u' ', 1);
        if (documents.viewOf(name) != nullptr || !QFileInfo::exists(name) || !documents.open({name}))
            continue;
        TextEditorView& editor = documents.viewOf(name)->editor();
        const size_t caret = file.section(u' ', 0, 0).toULongLong();
        editor.gotoOffset(std::min(caret, editor.text().size()));
    }
    if (DocumentView* view = documents.viewOf(current))
        _parts.tabs.setCurrentWidget(view);
}

} // namespace zelk
