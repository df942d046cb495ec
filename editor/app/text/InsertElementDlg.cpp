#include "InsertElementDlg.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

#include "FilterKeys.h"
#include "Theme.h"

namespace zelk {

InsertElementDlg::InsertElementDlg(const QString& title, const std::vector<xml2swf::XmlChildForm>& choices,
                                   std::string_view likely, QWidget* parent)
    : QDialog(parent), _choices(choices), _likely(QString::fromUtf8(likely.data(), qsizetype(likely.size()))),
      _filter(new QLineEdit(this)), _list(new QListWidget(this)), _preview(new QPlainTextEdit(this)) {
    setWindowTitle(title);
    _filter->setPlaceholderText(tr("Part of the name"));
    _filter->setClearButtonEnabled(true);
    _filter->setAccessibleName(tr("Name"));
    _list->setAccessibleName(tr("Elements"));
    _preview->setAccessibleName(tr("New element"));
    new FilterKeys(*_filter, *_list);
    _preview->setReadOnly(true);
    _preview->setLineWrapMode(QPlainTextEdit::NoWrap);
    _preview->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    for (size_t i = 0; i < choices.size(); ++i) {
        auto* item = new QListWidgetItem(QString::fromUtf8(choices[i].name.data(), qsizetype(choices[i].name.size())));
        item->setData(Qt::UserRole, QVariant::fromValue<qulonglong>(i));
        _list->addItem(item);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    _insert = buttons->addButton(tr("&Insert"), QDialogButtonBox::AcceptRole);
    _insert->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(_filter, &QLineEdit::textChanged, this, &InsertElementDlg::showMatching);
    connect(_list, &QListWidget::currentItemChanged, this, &InsertElementDlg::showPreview);
    connect(_list, &QListWidget::itemActivated, this, &QDialog::accept);
    auto* layout = new QGridLayout(this);
    layout->addWidget(_filter, 0, 0, 1, 2);
    layout->addWidget(_list, 1, 0);
    layout->addWidget(_preview, 1, 1);
    layout->addWidget(buttons, 2, 0, 1, 2);
    layout->setColumnStretch(0, 2);
    layout->setColumnStretch(1, 5);
    resizeOnScreen(*this, {760, 420});
    showMatching({});
    _filter->setFocus();
}

const xml2swf::XmlChildForm& InsertElementDlg::choice() const {
    return _choices[static_cast<size_t>(_list->currentItem()->data(Qt::UserRole).toULongLong())];
}

// The likely one is chosen before names that begin with the text, and these before those that have it somewhere.
void InsertElementDlg::showMatching(const QString& part) {
    const auto rank = [&](const QString& name) {
        return name == _likely && part.isEmpty() ? 2 : static_cast<int>(name.startsWith(part, Qt::CaseInsensitive));
    };
    QListWidgetItem* best = nullptr;
    for (int i = 0; i < _list->count(); ++i) {
        QListWidgetItem* item = _list->item(i);
        const bool isMatch = item->text().contains(part, Qt::CaseInsensitive);
        item->setHidden(!isMatch);
        if (isMatch && (best == nullptr || rank(item->text()) > rank(best->text())))
            best = item;
    }
    _list->setCurrentItem(best);
    showPreview();
}

void InsertElementDlg::showPreview() {
    const bool hasChoice = _list->currentItem() != nullptr;
    _insert->setEnabled(hasChoice);
    _preview->setPlainText(hasChoice ? QString::fromStdString(newElementText(choice())) : QString());
}

} // namespace zelk
