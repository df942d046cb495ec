// Asks for one of several new elements and shows what each looks like.
#pragma once

#include <QDialog>

#include <vector>

#include "XmlVocabulary.h"

class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace zelk {

class InsertElementDlg : public QDialog {
    Q_OBJECT
public:
    /// Starts at the choice of the name `likely`, or the first one. The choices outlive it.
    InsertElementDlg(const QString& title, const std::vector<xml2swf::XmlChildForm>& choices, std::string_view likely,
                     QWidget* parent);

    /// After it was accepted.
    const xml2swf::XmlChildForm& choice() const;

private:
    void showMatching(const QString& part);
    void showPreview();

    const std::vector<xml2swf::XmlChildForm>& _choices;
    const QString _likely;
    QLineEdit* _filter;
    QListWidget* _list;
    QPlainTextEdit* _preview;
    QPushButton* _insert;
};

} // namespace zelk
