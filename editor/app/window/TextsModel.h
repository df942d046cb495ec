// The texts of a document as rows.
#pragma once

#include <QAbstractTableModel>

#include "DocumentTexts.h"

namespace zelk {

class TextsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { text, kind, tag, limit, key, columns };

    using QAbstractTableModel::QAbstractTableModel;

    void setTexts(std::vector<DocumentText> texts);
    /// Leaves the texts that have this in one of the columns.
    void setFilter(const QString& filter);
    size_t count() const { return _texts.size(); }
    /// Null for an index without a row.
    const DocumentText* textOf(const QModelIndex& index) const;
    /// An invalid one when the text is not shown.
    QModelIndex indexOf(const std::string& textKey) const;
    /// All that a row says, in one line.
    QString lineOf(const QModelIndex& index) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& = {}) const override { return columns; }
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Only asks for the change: the row follows when the document has it.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

Q_SIGNALS:
    void changeAsked(const QModelIndex& index, const QString& value);

private:
    QString shown(const DocumentText& row, int column) const;
    void applyFilter();

    std::vector<DocumentText> _texts;
    std::vector<size_t> _rows; // those shown
    QString _filter;
};

} // namespace zelk
