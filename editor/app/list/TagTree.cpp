#include "TagTree.h"

#include <QHeaderView>
#include <QKeyEvent>

namespace zelk {

namespace {

constexpr int nameWidth = 180; // of the first column, in pixels

} // namespace

TagTree::TagTree(QWidget* parent) : QTreeView(parent) {
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setExpandsOnDoubleClick(false);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTextElideMode(Qt::ElideRight);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(QAbstractItemView::DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setContextMenuPolicy(Qt::CustomContextMenu);
    header()->setDefaultSectionSize(nameWidth);
    header()->setStretchLastSection(true);
    header()->setSectionsMovable(false);
}

void TagTree::selectAll() {
    const int rows = model()->rowCount();
    if (rows == 0)
        return;
    selectionModel()->select(QItemSelection(model()->index(0, 0), model()->index(rows - 1, 0)),
                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void TagTree::keyPressEvent(QKeyEvent* event) {
    const bool isAlt = event->modifiers().testFlag(Qt::AltModifier);
    if (event->modifiers() == Qt::ControlModifier && event->key() == Qt::Key_D) {
        Q_EMIT duplicateAsked();
        return;
    }
    switch (event->key()) {
    case Qt::Key_Delete: Q_EMIT deleteAsked(); return;
    case Qt::Key_Insert: Q_EMIT insertAsked(); return;
    case Qt::Key_Return:
    case Qt::Key_Enter: Q_EMIT editAsked(); return;
    case Qt::Key_Up: isAlt ? Q_EMIT moveAsked(Step::up) : QTreeView::keyPressEvent(event); return;
    case Qt::Key_Down: isAlt ? Q_EMIT moveAsked(Step::down) : QTreeView::keyPressEvent(event); return;
    case Qt::Key_Left: isAlt ? Q_EMIT moveAsked(Step::out) : QTreeView::keyPressEvent(event); return;
    case Qt::Key_Right: isAlt ? Q_EMIT moveAsked(Step::in) : QTreeView::keyPressEvent(event); return;
    default: QTreeView::keyPressEvent(event);
    }
}

void TagTree::mouseDoubleClickEvent(QMouseEvent* event) {
    QTreeView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid())
        Q_EMIT editAsked();
}

void TagTree::dropEvent(QDropEvent* event) {
    const QModelIndex target = indexAt(event->position().toPoint());
    const DropIndicatorPosition where = dropIndicatorPosition();
    stopAutoScroll();
    setState(NoState);
    viewport()->update();
    // The rows are not the view's to remove.
    event->setDropAction(Qt::CopyAction);
    event->accept();
    Q_EMIT dropped(target, where == AboveItem ? Drop::above : where == OnItem ? Drop::on : Drop::below);
}

// What the program selects does not depend on the keys that are down, as those of a shortcut are.
QItemSelectionModel::SelectionFlags TagTree::selectionCommand(const QModelIndex& index, const QEvent* event) const {
    if (event == nullptr)
        return QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;
    return QTreeView::selectionCommand(index, event);
}

} // namespace zelk
