#include "ReplaceDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QPushButton>

namespace zelk {

ReplaceDlg::ReplaceDlg(QWidget* parent)
    : FindDlg(parent), _replacement(addField(tr("Re&place with:"))),
      _inSelection(new QCheckBox(tr("Replace all in the &selection only"), this)) {
    setWindowTitle(tr("Replace"));
    _fields->addWidget(_inSelection, _fields->rowCount(), 1);
    connect(addButton(tr("&Replace")), &QPushButton::clicked, this, &ReplaceDlg::replaceAsked);
    connect(addButton(tr("Replace &All")), &QPushButton::clicked, this, &ReplaceDlg::replaceAllAsked);
}

std::string ReplaceDlg::replacement() const { return _replacement->currentText().toStdString(); }

bool ReplaceDlg::onlyInSelection() const { return _inSelection->isChecked(); }

} // namespace zelk
