// The system's dialog for file names.
#pragma once

#include <QFileDialog>

#include <functional>
#include <optional>

namespace zelk {

/// Tells which kind of file is chosen, and shows the names of kinds as they are given. Both depend on whether Qt or the
/// desktop draws the dialog.
class FileDialog : public QFileDialog { // without Q_OBJECT: Qt lets the desktop draw only what calls itself QFileDialog
public:
    struct Kind {
        QString shown;    ///< "Xml File (*.xml)"
        QString patterns; ///< "*.xml", separated by blanks
    };

    FileDialog(QWidget* parent, const QString& title, const QList<Kind>& kinds);

    void selectKind(qsizetype index);
    qsizetype selectedKind() const;

    /// A full path; none when the user cancels. `complete` gives a name that was typed the suffix that it
    /// lacks, by the kind; a file that would be replaced is asked about by its whole name.
    std::optional<QString> askWhereToSave(const std::function<QString(const QString& name, qsizetype kind)>& complete);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QString nameToSave() const;

    const QList<Kind> _kinds;
};

} // namespace zelk
