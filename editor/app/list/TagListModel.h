// The tag list's rows as Qt's views ask for them.
#pragma once

#include <QAbstractItemModel>

#include "IVirtualListViewController.h"

namespace zelk {

class TagListModel : public QAbstractItemModel {
    Q_OBJECT
public:
    /// Of what is dragged out of a list: a name for the list that it comes from.
    static constexpr const char* dragFormat = "application/x-zelk-tag-rows";

    TagListModel(const IVirtualListViewController& rows, QObject* parent) : QAbstractItemModel(parent), _rows(rows) {}

    /// Around a change of the rows.
    void beginChange() { beginResetModel(); }
    void endChange() { endResetModel(); }

    static uint32_t keyOf(const QModelIndex& index);
    /// Of the row with this key; not valid for the parent of the outermost rows.
    QModelIndex indexOf(uint32_t key) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    using QObject::parent;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    QStringList mimeTypes() const override;
    /// Only rows of this list.
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;

private:
    const IVirtualListViewController& _rows;
};

} // namespace zelk
