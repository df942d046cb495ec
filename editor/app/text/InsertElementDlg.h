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
    InsertElementDlg(const QString& title, const std::vector<xml2swf::XmlChildForm>& choices, QWidget* parent);

    /// After it was accepted.
    const xml2swf::XmlChildForm& choice() const;

private:
    void showMatching(const QString& part);
    void showPreview();

    const std::vector<xml2swf::XmlChildForm>& _choices;
    QLineEdit* _filter;
    QListWidget* _list;
    QPlainTextEdit* _preview;
    QPushButton* _insert;
};

} // namespace zelk
