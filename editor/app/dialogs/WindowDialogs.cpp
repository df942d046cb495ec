#include "WindowDialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QMessageBox>

#include "GotoLineDlg.h"
#include "MovieSettingsDlg.h"
#include "ProgressBarDialog.h"

namespace zelk {

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

// What is shown, and what Qt reads: it hides the last parentheses, in which it wants blanks between patterns.
QString nameFilter(const char* shown, const char* patterns) {
    return QStringLiteral("%1 (%2)").arg(text(shown), text(patterns));
}

constexpr auto hidePatterns = QFileDialog::HideNameFilterDetails;

struct Filter {
    FileKind kind;
    const char* shown; // The two blanks of the first are meant.
    const char* pattern;

    QString name() const { return nameFilter(shown, pattern); }
};

// In the order of the dialogs.
constexpr Filter filters[] = {{FileKind::swf, "Swf  File (*.swf)", "*.swf"},
                              {FileKind::project, "Zelk File (*.zelk)", "*.zelk"},
                              {FileKind::xml, "Xml File (*.xml)", "*.xml"}};

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
    QStringList names = {nameFilter("Compatible Files (*.swf;*.zelk;*.xml)", "*.swf *.zelk *.xml")};
    for (const Filter& filter : filters)
        names.append(filter.name());
    names.append(QObject::tr("All Files (*)")); // backups among them
    return QFileDialog::getOpenFileNames(_parent, QObject::tr("Open"), folder, names.join(QStringLiteral(";;")),
                                         nullptr, hidePatterns);
}

std::optional<std::string> WindowDialogs::chooseFileToSave(const std::string& proposal) {
    QFileDialog dialog(_parent, QObject::tr("Save As"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setOption(hidePatterns);
    QStringList names;
    for (const Filter& filter : filters)
        names.append(filter.name());
    dialog.setNameFilters(names);
    const auto showSuffix = [&dialog] {
        for (const Filter& filter : filters) {
            if (dialog.selectedNameFilter() == filter.name())
                dialog.setDefaultSuffix(QString::fromLatin1(extensionOf(filter.kind)));
        }
    };
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, showSuffix);
    for (const Filter& filter : filters) {
        if (filter.kind == fileKind(proposal))
            dialog.selectNameFilter(filter.name());
    }
    showSuffix();
    const QFileInfo proposed(QString::fromStdString(proposal));
    if (proposed.isAbsolute())
        dialog.setDirectory(proposed.absolutePath());
    dialog.selectFile(proposed.fileName());
    while (dialog.exec() == QDialog::Accepted) {
        const std::string name = dialog.selectedFiles().value(0).toStdString();
        if (fileKind(name))
            return name;
        report({message(MessageCode::cannotSave),
                QObject::tr("The name has to end in .swf, .zelk or .xml.").toStdString()});
    }
    return std::nullopt;
}

void WindowDialogs::setPayloadFolder(const Document& document) {
    if (_payloadFolder.isEmpty() && document.hasFile)
        _payloadFolder = QFileInfo(QString::fromStdString(document.fileName)).absolutePath();
}

std::optional<std::string> WindowDialogs::chooseFileToExport(const std::string& proposal) {
    const QString suffix = QFileInfo(QString::fromStdString(proposal)).suffix();
    const QString name = QFileDialog::getSaveFileName(
        _parent, QObject::tr("Export Payload"), QDir(_payloadFolder).filePath(QString::fromStdString(proposal)),
        QObject::tr("%1 File (*.%2);;All Files (*)").arg(suffix.toUpper(), suffix));
    if (name.isEmpty())
        return std::nullopt;
    _payloadFolder = QFileInfo(name).absolutePath();
    return name.toStdString();
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

bool WindowDialogs::askToReplaceChanged(const Document& document) {
    QMessageBox box(QMessageBox::Warning, QObject::tr("Save"),
                    QObject::tr("Another program changed the file since it was opened. Saving replaces that version; a "
                                "backup of it stays beside the file."),
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

void WindowDialogs::runJob(const std::string& title, ThreadParams& params, std::function<void()> work) {
    ProgressBarDialog(_parent, QString::fromStdString(title), params).run(std::move(work));
}

} // namespace zelk
