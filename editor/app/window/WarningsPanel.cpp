#include "WarningsPanel.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>

#include "WarningsModel.h"

namespace zelk {

WarningsPanel::WarningsPanel(QWidget* parent)
    : ListPanel(tr("Warnings"), QStringLiteral("warnings"), Place::bottom, parent), _model(new WarningsModel(this)) {
    list().setModel(_model);
    list().setSelectionMode(QAbstractItemView::ExtendedSelection);
    list().setExpandsOnDoubleClick(false);
    list().header()->setStretchLastSection(false);
    list().header()->setSectionResizeMode(WarningsModel::text, QHeaderView::Stretch);
    list().setColumnWidth(WarningsModel::row, 110);
    list().setColumnWidth(WarningsModel::tag, 180);
    list().setColumnWidth(WarningsModel::effect, 150);
    list().setColumnWidth(WarningsModel::from, 60);
    connect(&filter(), &QLineEdit::textChanged, this, &WarningsPanel::refresh);
    connect(&list(), &QTreeView::activated, this, &WarningsPanel::choose);
}

// --- what is shown ---------------------------------------------------------------------------------------------------

void WarningsPanel::showDocument(DocumentView* view) {
    if (view != _view) {
        _model->show(nullptr,
                     {}); // Forgets which groups were open and which row was current: those were the other document's.
        disconnect(_edits);
        if (view != nullptr) // Row numbers are looked up while drawing, so drawing again is enough.
            _edits = connect(&view->editor(), &TextControl::edited, list().viewport(), qOverload<>(&QWidget::update));
    }
    _view = view;
    refresh();
}

std::vector<WarningList::Entry> WarningsPanel::openGroups() const {
    std::vector<WarningList::Entry> first;
    for (int group = 0; group < _model->rowCount(); ++group) {
        const QModelIndex index = _model->index(group, 0);
        if (list().isExpanded(index))
            first.push_back(*_model->entryOf(_model->index(0, 0, index)));
    }
    return first;
}

void WarningsPanel::refresh() {
    if (!isVisible())
        return; // Opening it calls this again.
    const std::vector<WarningList::Entry> open = openGroups();
    const std::optional<WarningList::Entry> current = _model->entryOf(list().currentIndex());
    _model->show(_view, filter().text());
    for (WarningList::Entry entry : open)
        list().expand(_model->indexOf(entry).parent());
    if (const QModelIndex index = current ? _model->indexOf(*current) : QModelIndex(); index.isValid())
        list().setCurrentIndex(index);
    showCounts();
}

void WarningsPanel::showCounts() {
    const size_t all = _view == nullptr ? 0 : _view->warnings().entries().size();
    const uint64_t more = _view == nullptr ? 0 : _view->warnings().more();
    QString text = all == 0   ? tr("Nothing was lost on load or save.")
                   : all == 1 ? tr("1 warning")
                              : tr("%1 warnings").arg(all);
    if (_model->shownCount() != all)
        text = tr("%1 of %2 warnings").arg(_model->shownCount()).arg(all);
    if (more != 0)
        text += tr(", and %1 more that are not listed").arg(more);
    words().setText(text);
}

// --- what the user does ----------------------------------------------------------------------------------------------

void WarningsPanel::choose(const QModelIndex& index) {
    const std::optional<WarningList::Entry> entry = _model->entryOf(index);
    if (entry && _view != nullptr)
        Q_EMIT chosen(*entry);
    else
        list().setExpanded(index.siblingAtColumn(0), !list().isExpanded(index.siblingAtColumn(0)));
}

QString WarningsPanel::lineOf(const QModelIndex& index) const { return _model->lineOf(index); }

} // namespace zelk
