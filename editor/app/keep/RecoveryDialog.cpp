#include "RecoveryDialog.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "Exceptions.h"
#include "TextEditorView.h"
#include "Theme.h"

namespace zelk {

RecoveryDialog::RecoveryDialog(const std::vector<KeptDocument>& documents, Texts texts, QWidget* parent)
    : QDialog(parent), _texts(std::move(texts)), _list(new QTreeWidget(this)), _text(new TextEditorView(this)) {
    setWindowTitle(tr("Recover Documents"));
    auto* words = new QLabel(tr("Zelk ended without closing these documents. This is what was changed in them and not "
                                "saved. The files themselves are as they were saved last."),
                             this);
    words->setWordWrap(true);
    _list->setAccessibleName(tr("Documents"));
    _list->setHeaderLabels({tr("Document"), tr("Folder"), tr("Last change"), tr("Size of the text")});
    _list->setRootIsDecorated(false);
    _list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    for (const KeptDocument& document : documents)
        addRow(document);
    _list->setCurrentItem(_list->topLevelItem(0));
    _list->selectAll();
    _list->header()->resizeSections(QHeaderView::ResizeToContents);
    connect(_list, &QTreeWidget::currentItemChanged, this, [this] {
        if (_text->isVisible())
            look();
    });
    _text->hide();

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(words);
    layout->addWidget(_list, 1);
    layout->addWidget(_text, 2);
    layout->addLayout(new QHBoxLayout);
    addButton(tr("&Recover"), "Open the selected documents with their changes", [this] { choose(Choice::recover); });
    addButton(tr("&Look"), "Show the text of the current document here", [this] { look(); });
    addButton(tr("&Discard..."), "Remove what was kept of the selected documents", [this] { choose(Choice::discard); });
    addButton(tr("La&ter"), "Keep them, and ask again at the next start", [this] { reject(); });
    _list->setFocus();
    resizeOnScreen(*this, {720, 300});
}

void RecoveryDialog::addRow(const KeptDocument& document) {
    const QFileInfo file(QString::fromStdString(document.fileName));
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(document.time);
    const QString folder = document.hasFile ? QDir::toNativeSeparators(file.absolutePath()) : tr("(never saved)");
    auto* item = new QTreeWidgetItem(_list, {file.fileName(), folder, time.toString(QStringLiteral("yyyy-MM-dd hh:mm")),
                                             QLocale().formattedDataSize(qint64(document.textSize))});
    item->setToolTip(1, folder);
}

void RecoveryDialog::addButton(const QString& text, const char* tip, std::function<void()> work) {
    auto* row = static_cast<QHBoxLayout*>(layout()->itemAt(layout()->count() - 1));
    auto* button = new QPushButton(text, this);
    button->setToolTip(tr(tip));
    if (row->isEmpty()) {
        row->addStretch(1);
        button->setDefault(true);
    } else {
        button->setAutoDefault(false);
    }
    row->addWidget(button);
    connect(button, &QPushButton::clicked, this, work);
}

RecoveryDialog::Choice RecoveryDialog::ask() {
    exec();
    return _choice;
}

std::vector<size_t> RecoveryDialog::selected() const {
    std::vector<size_t> rows;
    for (int row = 0; row < _list->topLevelItemCount(); ++row) {
        if (_list->topLevelItem(row)->isSelected())
            rows.push_back(static_cast<size_t>(row));
    }
    return rows;
}

void RecoveryDialog::choose(Choice choice) {
    if (selected().empty() || (choice == Choice::discard && !isSureToDiscard()))
        return;
    _choice = choice;
    accept();
}

bool RecoveryDialog::isSureToDiscard() {
    const auto count = static_cast<int>(selected().size());
    QMessageBox box(QMessageBox::Question, tr("Discard"),
                    count == 1 ? tr("What was changed in this document is lost then.")
                               : tr("What was changed in these %1 documents is lost then.").arg(count),
                    QMessageBox::NoButton, this);
    const QPushButton* discard = box.addButton(tr("&Discard"), QMessageBox::DestructiveRole);
    box.setDefaultButton(box.addButton(QMessageBox::Cancel));
    box.exec();
    return box.clickedButton() == discard;
}

void RecoveryDialog::look() {
    const int row = _list->indexOfTopLevelItem(_list->currentItem());
    if (row < 0)
        return;
    std::string text;
    try {
        text = _texts(static_cast<size_t>(row));
    } catch (const ZelkException& error) {
        text = error.description();
    }
    _text->send(QsciScintillaBase::SCI_SETREADONLY, 0);
    _text->setText(std::move(text));
    _text->send(QsciScintillaBase::SCI_SETREADONLY, 1);
    if (_text->isHidden()) {
        _text->show();
        const QRect free = screen()->availableGeometry();
        resize(width(), std::min(620, free.height()));
        move(x(), std::min(y(), free.bottom() - frameGeometry().height()));
    }
}

} // namespace zelk
