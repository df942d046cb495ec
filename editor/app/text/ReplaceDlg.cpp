#include "ReplaceDlg.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QPushButton>

namespace zelk {

ReplaceDlg::ReplaceDlg(QWidget* parent)
    : FindDlg(parent), _replacement(addField(1, tr("Re&place with:"))),
      _inSelection(new QCheckBox(tr("Replace all in the &selection only"), this)) {
    setWindowTitle(tr("Replace"));
    _replacement->setToolTip(tr("In regular expressions $1 or \\1 is the first group, $0 the whole match."));
    QPushButton* replace = addButton(1, 2, tr("&Replace"));
    QPushButton* all = addButton(1, 3, tr("Replace &All"));
    _inSelection->setShortcut({});
    _choices->insertWidget(0, _inSelection);
    connect(replace, &QPushButton::clicked, this, &ReplaceDlg::replaceAsked);
    connect(all, &QPushButton::clicked, this, &ReplaceDlg::replaceAllAsked);
    setOrder({_replacement}, {replace, all, _inSelection});
}

std::string ReplaceDlg::replacement() const { return _replacement->currentText().toStdString(); }

bool ReplaceDlg::onlyInSelection() const { return _inSelection->isChecked(); }

} // namespace zelk
