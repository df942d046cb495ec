#include "WarningsPanel.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>
#include <QVBoxLayout>

#include "CommandTable.h"
#include "WarningsModel.h"

namespace zelk {

WarningsPanel::WarningsPanel(QWidget* parent)
    : QDockWidget(tr("Warnings"), parent), _model(new WarningsModel(this)), _filter(new QLineEdit(this)),
      _counts(new QLabel(this)), _list(new QTreeView(this)) {
    setObjectName(QStringLiteral("warnings"));
    setAllowedAreas(Qt::BottomDockWidgetArea | Qt::RightDockWidgetArea);
    _filter->setPlaceholderText(tr("Filter"));
    _filter->setClearButtonEnabled(true);
    _filter->setMaximumWidth(260);
    _counts->setForegroundRole(QPalette::PlaceholderText);
    _list->setModel(_model);
    _list->setUniformRowHeights(true);
    _list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    _list->setAllColumnsShowFocus(true);
    _list->setExpandsOnDoubleClick(false);
    _list->header()->setStretchLastSection(false);
    _list->header()->setSectionResizeMode(WarningsModel::text, QHeaderView::Stretch);
    _list->setColumnWidth(WarningsModel::row, 110);
    _list->setColumnWidth(WarningsModel::tag, 180);
    _list->setColumnWidth(WarningsModel::effect, 150);
    _list->setColumnWidth(WarningsModel::from, 60);
    buildLayout();
    for (QWidget* widget : {static_cast<QWidget*>(_filter), static_cast<QWidget*>(_list)})
        widget->installEventFilter(this);
    connect(_filter, &QLineEdit::textChanged, this, &WarningsPanel::refresh);
    connect(_list, &QTreeView::activated, this, &WarningsPanel::choose);
    connect(this, &QDockWidget::visibilityChanged, this, [this](bool isShown) {
        if (isShown)
            refresh();
    });
    hide();
}

void WarningsPanel::buildLayout() {
    auto* top = new QHBoxLayout;
    top->setContentsMargins(6, 2, 6, 2);
    top->addWidget(_counts, 1);
    top->addWidget(_filter, 1);
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(top);
    layout->addWidget(_list);
    setWidget(content);
}

// --- what is shown ---------------------------------------------------------------------------------------------------

void WarningsPanel::showDocument(DocumentView* view) {
    if (view != _view) {
        _model->show(nullptr,
                     {}); // Forgets which groups were open and which row was current: those were the other document's.
        disconnect(_edits);
        if (view != nullptr) // Row numbers are looked up while drawing, so drawing again is enough.
            _edits = connect(&view->editor(), &TextControl::edited, _list->viewport(), qOverload<>(&QWidget::update));
    }
    _view = view;
    refresh();
}

std::vector<WarningList::Entry> WarningsPanel::openGroups() const {
    std::vector<WarningList::Entry> first;
    for (int group = 0; group < _model->rowCount(); ++group) {
        const QModelIndex index = _model->index(group, 0);
        if (_list->isExpanded(index))
            first.push_back(*_model->entryOf(_model->index(0, 0, index)));
    }
    return first;
}

void WarningsPanel::refresh() {
    if (!isVisible())
        return; // Opening it calls this again.
    const std::vector<WarningList::Entry> open = openGroups();
    const std::optional<WarningList::Entry> current = _model->entryOf(_list->currentIndex());
    _model->show(_view, _filter->text());
    for (WarningList::Entry entry : open)
        _list->expand(_model->indexOf(entry).parent());
    if (const QModelIndex index = current ? _model->indexOf(*current) : QModelIndex(); index.isValid())
        _list->setCurrentIndex(index);
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
    _counts->setText(text);
}

// --- what the user does ----------------------------------------------------------------------------------------------

void WarningsPanel::toggle() {
    if (isVisible()) {
        hide();
        Q_EMIT left();
    } else {
        open();
    }
}

void WarningsPanel::open() {
    show();
    raise();
    _list->setFocus();
    if (!_list->currentIndex().isValid())
        _list->setCurrentIndex(_model->index(0, 0));
}

bool WarningsPanel::run(int id) {
    const QWidget* focus = QApplication::focusWidget();
    if (focus != _list && focus != _filter)
        return false;
    switch (id) {
    case CommandId::find: openFilter(); return true;
    case CommandId::copy: copy(); return true;
    case CommandId::selectAll: _list->selectAll(); return true;
    default: return false;
    }
}

void WarningsPanel::openFilter() {
    _filter->setFocus();
    _filter->selectAll();
}

void WarningsPanel::copy() const {
    QModelIndexList rows = _list->selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, [](const QModelIndex& index) {
        const QModelIndex outer = index.parent();
        return outer.isValid() ? std::pair(outer.row(), index.row()) : std::pair(index.row(), -1);
    });
    QString lines;
    for (const QModelIndex& index : rows)
        lines += _model->lineOf(index) + u'\n';
    if (!lines.isEmpty())
        QApplication::clipboard()->setText(lines);
}

void WarningsPanel::choose(const QModelIndex& index) {
    const std::optional<WarningList::Entry> entry = _model->entryOf(index);
    if (entry && _view != nullptr)
        Q_EMIT chosen(*entry);
    else
        _list->setExpanded(index.siblingAtColumn(0), !_list->isExpanded(index.siblingAtColumn(0)));
}

bool WarningsPanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        // The command is there only while the text has a selection.
        if (watched == _list && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
            copy();
            return true;
        }
        if (handleKey(watched, static_cast<QKeyEvent*>(event)->key()))
            return true;
    }
    return QDockWidget::eventFilter(watched, event);
}

bool WarningsPanel::handleKey(QObject* watched, int key) {
    if (key == Qt::Key_Escape && _filter->text().isEmpty()) {
        Q_EMIT left();
        return true;
    }
    const bool isDone = watched == _filter && (key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter);
    if (key == Qt::Key_Escape)
        _filter->clear();
    else if (!isDone)
        return false;
    _list->setFocus();
    if (!_list->currentIndex().isValid())
        _list->setCurrentIndex(_model->index(0, 0));
    return true;
}

} // namespace zelk
