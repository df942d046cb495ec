#include "WindowDialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QMessageBox>

#include <algorithm>

#include "FileDialog.h"
#include "GotoLineDlg.h"
#include "MovieSettingsDlg.h"
#include "ProgressBarDialog.h"

namespace zelk {

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

// The kinds of document, in the order of the dialogs. The two blanks of the first are meant.
constexpr FileKind kinds[] = {FileKind::swf, FileKind::project, FileKind::xml};

QList<FileDialog::Kind> shownKinds() {
    return {{text("Swf  File (*.swf)"), text("*.swf")},
            {text("Zelk File (*.zelk)"), text("*.zelk")},
            {text("Xml File (*.xml)"), text("*.xml")}};
}

// A box is as wide as its text, and its title is cut when that is short. The window system draws the title in a font of
// its own and puts buttons beside it.
void makeRoomForTitle(QMessageBox& box) {
    constexpr int buttons = 160;
    QFont font = box.font();
    font.setBold(true);
    const int width = QFontMetrics(font).horizontalAdvance(box.windowTitle()) + buttons;
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    if (grid != nullptr)
        grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
}

void showBox(QWidget* parent, QMessageBox::Icon icon, const Message& message, const QString& more) {
    QMessageBox box(icon, QString::fromStdString(message.caption), QString::fromStdString(message.text),
                    QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(more);
    makeRoomForTitle(box);
    box.exec();
}

} // namespace

QStringList WindowDialogs::chooseFilesToOpen(const QString& folder) {
    QList<FileDialog::Kind> all = shownKinds();
    all.prepend({text("Compatible Files (*.swf;*.zelk;*.xml)"), text("*.swf *.zelk *.xml")});
    all.append({QObject::tr("All Files (*)"), text("*")}); // backups among them
    FileDialog dialog(_parent, QObject::tr("Open"), all);
    dialog.setFileMode(QFileDialog::ExistingFiles);
    if (!folder.isEmpty())
        dialog.setDirectory(folder);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles() : QStringList();
}

std::optional<std::string> WindowDialogs::chooseFileToSave(const std::string& proposal) {
    FileDialog dialog(_parent, QObject::tr("Save As"), shownKinds());
    const auto kind = std::ranges::find(kinds, fileKind(proposal));
    dialog.selectKind(kind == std::end(kinds) ? 0 : kind - kinds);
    const QFileInfo proposed(QString::fromStdString(proposal));
    if (proposed.isAbsolute())
        dialog.setDirectory(proposed.absolutePath());
    dialog.selectFile(proposed.fileName());
    const auto name = dialog.askWhereToSave([](const QString& typed, qsizetype kind) {
        if (fileKind(typed.toStdString()))
            return typed;
        const QString extension = QString::fromLatin1(extensionOf(kinds[kind]));
        return typed.endsWith(u'.') ? typed + extension : typed + u'.' + extension;
    });
    return name ? std::optional(QDir::toNativeSeparators(*name).toStdString()) : std::nullopt;
}

void WindowDialogs::setPayloadFolder(const Document& document) {
    if (_payloadFolder.isEmpty() && document.hasFile)
        _payloadFolder = QFileInfo(QString::fromStdString(document.fileName)).absolutePath();
}

std::optional<std::string> WindowDialogs::chooseFileToExport(const std::string& proposal) {
    const QString suffix = QFileInfo(QString::fromStdString(proposal)).suffix();
    FileDialog dialog(_parent, QObject::tr("Export Payload"),
                      {{QObject::tr("%1 File (*.%2)").arg(suffix.toUpper(), suffix), QStringLiteral("*.") + suffix},
                       {QObject::tr("All Files (*)"), QStringLiteral("*")}});
    if (!_payloadFolder.isEmpty())
        dialog.setDirectory(_payloadFolder);
    dialog.selectFile(QString::fromStdString(proposal));
    const auto name = dialog.askWhereToSave([&suffix](const QString& typed, qsizetype kind) {
        const bool isWhole = kind != 0 || !QFileInfo(typed).suffix().isEmpty();
        return isWhole ? typed : typed + u'.' + suffix;
    });
    if (!name)
        return std::nullopt;
    _payloadFolder = QFileInfo(*name).absolutePath();
    return name->toStdString();
}

std::optional<std::string> WindowDialogs::chooseFileToImport(const std::vector<std::string>& kinds) {
    QStringList patterns;
    for (const std::string& kind : kinds)
        patterns.append(kind == "*" ? QStringLiteral("*") : QStringLiteral("*.") + QString::fromStdString(kind));
    QString names = QObject::tr("All Files (*)");
    if (!patterns.contains(QStringLiteral("*")))
        names.prepend(QObject::tr("Fitting Files (%1)").arg(patterns.join(u' ')) + QStringLiteral(";;"));
    const QString name = QFileDialog::getOpenFileName(_parent, QObject::tr("Replace Payload"), _payloadFolder, names);
    if (name.isEmpty())
        return std::nullopt;
    _payloadFolder = QFileInfo(name).absolutePath();
    return name.toStdString();
}

SaveAnswer WindowDialogs::askToSave(const Document& document) {
    const Message question = saveQuestion();
    QMessageBox box(QMessageBox::Question, QString::fromStdString(question.caption),
                    QString::fromStdString(question.text), QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
                    _parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(QString::fromStdString(document.fileName));
    switch (box.exec()) {
    case QMessageBox::Yes: return SaveAnswer::yes;
    case QMessageBox::No: return SaveAnswer::no;
    default: return SaveAnswer::cancel;
    }
}

bool WindowDialogs::askToReplaceChanged(const Document& document, bool keepsBackup) {
    QMessageBox box(
        QMessageBox::Warning, QObject::tr("Save"),
        QObject::tr("Another program changed the file since it was opened. Saving replaces that version; ") +
            (keepsBackup ? QObject::tr("a backup of it stays beside the file.")
                         : QObject::tr("no backup of it is kept.")),
        QMessageBox::NoButton, _parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(QString::fromStdString(document.fileName));
    const QPushButton* save = box.addButton(QObject::tr("&Save"), QMessageBox::AcceptRole);
    box.setDefaultButton(box.addButton(QMessageBox::Cancel));
    box.exec();
    return box.clickedButton() == save;
}

bool WindowDialogs::askToReload(const Document& document) {
    QMessageBox box(QMessageBox::Warning, QObject::tr("Reload"),
                    QObject::tr("What was changed in the document and not saved is lost then."), QMessageBox::NoButton,
                    _parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(QString::fromStdString(document.fileName));
    const QPushButton* reload = box.addButton(QObject::tr("&Reload"), QMessageBox::DestructiveRole);
    box.setDefaultButton(box.addButton(QMessageBox::Cancel));
    box.exec();
    return box.clickedButton() == reload;
}

std::optional<uint32_t> WindowDialogs::askForRow(uint32_t current, uint32_t rows) {
    GotoLineDlg dialog(current, rows, _parent);
    return dialog.exec() == QDialog::Accepted ? std::optional(dialog.line()) : std::nullopt;
}

std::optional<MovieSettings> WindowDialogs::askForMovieSettings(const MovieSettings& current) {
    MovieSettingsDlg dialog(current, _parent);
    return dialog.exec() == QDialog::Accepted ? std::optional(dialog.settings()) : std::nullopt;
}

void WindowDialogs::report(const Failure& failure) {
    QString more = QString::fromStdString(failure.reason);
    if (failure.row != 0 && !failure.reason.empty())
        more += QObject::tr("\nRow: %1, column: %2").arg(failure.row).arg(failure.column);
    showBox(_parent, QMessageBox::Warning, failure.message, more);
}

void WindowDialogs::inform(const Message& message) { showBox(_parent, QMessageBox::Information, message, {}); }

void WindowDialogs::runJob(const std::string& title, ThreadParams& params, JobWork work) {
    ProgressBarDialog(_parent, QString::fromStdString(title), params).run(work);
}

} // namespace zelk
