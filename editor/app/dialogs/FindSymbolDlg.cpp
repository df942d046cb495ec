#include "FindSymbolDlg.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "FilterKeys.h"
#include "Theme.h"

namespace zelk {

FindSymbolDlg::FindSymbolDlg(const std::vector<Symbol>& symbols, QWidget* parent)
    : QDialog(parent), _symbols(symbols), _filter(new QLineEdit(this)), _list(new QTreeWidget(this)),
      _count(new QLabel(this)) {
    setWindowTitle(tr("Find Symbol"));
    _filter->setPlaceholderText(tr("Part of the name of a class, method, tag or label"));
    _filter->setClearButtonEnabled(true);
    _filter->setAccessibleName(tr("Name"));
    _list->setAccessibleName(tr("Symbols"));
    new FilterKeys(*_filter, *_list);
    _list->setHeaderLabels({tr("Name"), tr("Kind")});
    _list->setRootIsDecorated(false);
    _list->setUniformRowHeights(true);
    _list->header()->setStretchLastSection(true);
    _list->setColumnWidth(0, 380);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    _go = buttons->addButton(tr("&Go To"), QDialogButtonBox::AcceptRole);
    _go->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(_filter, &QLineEdit::textChanged, this, &FindSymbolDlg::showMatching);
    connect(_list, &QTreeWidget::itemActivated, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    for (QWidget* widget : {static_cast<QWidget*>(_filter), static_cast<QWidget*>(_list), static_cast<QWidget*>(_count),
                            static_cast<QWidget*>(buttons)})
        layout->addWidget(widget);
    resizeOnScreen(*this, {640, 460});
    showMatching({});
    _filter->setFocus();
}

const Symbol& FindSymbolDlg::choice() const {
    return _symbols[static_cast<size_t>(_list->currentItem()->data(0, Qt::UserRole).toULongLong())];
}

void FindSymbolDlg::showMatching(const QString& filter) {
    const std::vector<uint32_t> matches = matchingSymbols(_symbols, filter.trimmed().toStdString(), mostShown);
    QList<QTreeWidgetItem*> items;
    for (uint32_t match : matches) {
        const Symbol& symbol = _symbols[match];
        auto* item = new QTreeWidgetItem({QString::fromStdString(symbol.name), QString::fromStdString(symbol.where)});
        item->setData(0, Qt::UserRole, QVariant::fromValue<qulonglong>(match));
        items.append(item);
    }
    _list->clear();
    _list->addTopLevelItems(items);
    _list->setCurrentItem(items.isEmpty() ? nullptr : items.first());
    _go->setEnabled(!items.isEmpty());
    _count->setText(matches.size() == mostShown ? tr("The first %1 are shown.").arg(mostShown)
                    : items.isEmpty()           ? tr("Nothing of that name.")
                                                : QString());
}

} // namespace zelk
