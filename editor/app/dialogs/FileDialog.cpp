#include "FileDialog.h"

#include <QComboBox>
#include <QFileInfo>
#include <QMessageBox>
#include <QOperatingSystemVersion>

namespace zelk {

namespace {

QComboBox* kindBox(const QFileDialog& dialog) { return dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo")); }

// As Qt reads it: the last parentheses are hidden. Of two blanks Qt makes one unless something stands between them;
// this has no width.
QString nameFilter(const FileDialog::Kind& kind) {
    QString shown = kind.shown;
    shown.replace(QStringLiteral("  "), QStringLiteral(" \u200B "));
    return QStringLiteral("%1 (%2)").arg(shown, kind.patterns);
}

} // namespace

FileDialog::FileDialog(QWidget* parent, const QString& title, const QList<Kind>& kinds)
    : QFileDialog(parent, title), _kinds(kinds) {
    setOption(HideNameFilterDetails);
    setOption(DontConfirmOverwrite); // askWhereToSave does, once the name is complete.
    QStringList names;
    for (const Kind& kind : kinds)
        names.append(nameFilter(kind));
    setNameFilters(names);
}

void FileDialog::showEvent(QShowEvent* event) {
    QFileDialog::showEvent(event);
    if (QComboBox* box = kindBox(*this)) {
        for (int i = 0; i < box->count(); ++i)
            box->setItemText(i, _kinds[i].shown);
        box->setAccessibleName(tr("Kind of file"));
    }
    if (auto* folders = findChild<QComboBox*>(QStringLiteral("lookInCombo")))
        folders->setAccessibleName(tr("Folder"));
}

void FileDialog::selectKind(qsizetype index) { selectNameFilter(nameFilters().at(index)); }

qsizetype FileDialog::selectedKind() const {
    if (const QComboBox* box = kindBox(*this))
        return box->currentIndex();
    const qsizetype index = nameFilters().indexOf(selectedNameFilter()); // A desktop's dialog gives it back as a whole.
    return std::max<qsizetype>(index, 0);
}

// Windows puts the chosen kind's suffix even behind the suffix of another kind, unless a program has made that known to
// it.
QString FileDialog::nameToSave() const {
    QString name = selectedFiles().value(0);
    constexpr bool isWindows = QOperatingSystemVersion::currentType() == QOperatingSystemVersion::Windows;
    if (!isWindows || QFileInfo::exists(name))
        return name;
    const QFileInfo typed(name.chopped(QFileInfo(name).suffix().size() + 1));
    const QString pattern = QStringLiteral("*.") + typed.suffix();
    const bool hasKind = std::ranges::any_of(_kinds, [&](const Kind& kind) { return kind.patterns == pattern; });
    return hasKind ? typed.filePath() : name;
}

std::optional<QString>
FileDialog::askWhereToSave(const std::function<QString(const QString& name, qsizetype kind)>& complete) {
    setAcceptMode(AcceptSave);
    while (exec() == Accepted) {
        const QString name = complete(nameToSave(), selectedKind());
        const auto mayReplace = [&] {
            return QMessageBox::warning(
                       parentWidget(), windowTitle(),
                       tr("%1 already exists.\nDo you want to replace it?").arg(QFileInfo(name).fileName()),
                       QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
        };
        if (!QFileInfo::exists(name) || mayReplace())
            return name;
        selectFile(QFileInfo(name).fileName());
    }
    return std::nullopt;
}

} // namespace zelk
