// The warnings of a document as rows: groups of like ones, and the single ones in them.
#pragma once

#include <QAbstractItemModel>
#include <QPointer>

#include "DocumentView.h"

namespace zelk {

class WarningsModel : public QAbstractItemModel {
    Q_OBJECT
public:
    enum Column { row, tag, text, effect, from, columns };

    using QAbstractItemModel::QAbstractItemModel;

    /// Shows what is true of a document now; null for none. A filter leaves the warnings with this text in a column.
    void show(DocumentView* view, const QString& filter);
    size_t shownCount() const { return _shownCount; }
    /// None for a group of several.
    std::optional<WarningList::Entry> entryOf(const QModelIndex& index) const;
    QModelIndex indexOf(WarningList::Entry entry) const;
    /// All that a row says, in one line.
    QString lineOf(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& = {}) const override { return columns; }
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    bool isSingle(size_t group) const { return _groups[group].entries.size() == 1; }
    QString textOf(WarningList::Entry entry, int column) const;
    QString groupText(const WarningGroup& group, int column) const;

    QPointer<DocumentView> _view;
    std::vector<WarningGroup> _groups;
    size_t _shownCount = 0;
};

} // namespace zelk
