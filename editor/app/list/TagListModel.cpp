#include "TagListModel.h"

#include <QFont>
#include <QMimeData>

namespace zelk {

namespace {

constexpr uint32_t top = IVirtualListViewController::top;

} // namespace

uint32_t TagListModel::keyOf(const QModelIndex& index) {
    return index.isValid() ? static_cast<uint32_t>(index.internalId()) : top;
}

QModelIndex TagListModel::indexOf(uint32_t key) const {
    return key == top ? QModelIndex() : createIndex(static_cast<int>(_rows.rowOf(key)), 0, quintptr(key));
}

QModelIndex TagListModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, quintptr(_rows.rowAt(keyOf(parent), static_cast<uint32_t>(row))));
}

QModelIndex TagListModel::parent(const QModelIndex& child) const {
    return child.isValid() ? indexOf(_rows.parentOf(keyOf(child))) : QModelIndex();
}

int TagListModel::rowCount(const QModelIndex& parent) const {
    return parent.column() > 0 ? 0 : static_cast<int>(_rows.rowCount(keyOf(parent)));
}

int TagListModel::columnCount(const QModelIndex&) const { return _rows.columnCount(); }

bool TagListModel::hasChildren(const QModelIndex& parent) const {
    return parent.column() <= 0 && _rows.hasRows(keyOf(parent));
}

QVariant TagListModel::data(const QModelIndex& index, int role) const {
    switch (role) {
    case Qt::DisplayRole: return _rows.text(keyOf(index), index.column());
    case Qt::ToolTipRole: return _rows.toolTip(keyOf(index));
    case Qt::FontRole: {
        if (!_rows.isLeftOut(keyOf(index)))
            return {};
        QFont font;
        font.setItalic(true);
        font.setStrikeOut(true);
        return font;
    }
    default: return {};
    }
}

QVariant TagListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return _rows.title(section);
}

Qt::ItemFlags TagListModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags droppable = Qt::ItemIsDropEnabled;
    if (!index.isValid())
        return droppable;
    const Qt::ItemFlags shown = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return _rows.isMovable(keyOf(index)) ? shown | Qt::ItemIsDragEnabled | droppable : shown;
}

QStringList TagListModel::mimeTypes() const { return {QString::fromLatin1(dragFormat)}; }

bool TagListModel::canDropMimeData(const QMimeData* data, Qt::DropAction, int, int, const QModelIndex&) const {
    return data->data(QString::fromLatin1(dragFormat)) == QByteArray::number(quintptr(this));
}

QMimeData* TagListModel::mimeData(const QModelIndexList&) const {
    auto* data = new QMimeData;
    data->setData(QString::fromLatin1(dragFormat), QByteArray::number(quintptr(this)));
    return data;
}

} // namespace zelk
