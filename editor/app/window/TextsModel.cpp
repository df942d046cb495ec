#include "TextsModel.h"

#include "TextFiles.h"

namespace zelk {

void TextsModel::setTexts(std::vector<DocumentText> texts) {
    beginResetModel();
    _texts = std::move(texts);
    applyFilter();
    endResetModel();
}

void TextsModel::setFilter(const QString& filter) {
    beginResetModel();
    _filter = filter;
    applyFilter();
    endResetModel();
}

void TextsModel::applyFilter() {
    _rows.clear();
    for (size_t i = 0; i < _texts.size(); ++i) {
        for (int column = 0; column < columns; ++column) {
            if (!shown(_texts[i], column).contains(_filter, Qt::CaseInsensitive))
                continue;
            _rows.push_back(i);
            break;
        }
    }
}

const DocumentText* TextsModel::textOf(const QModelIndex& index) const {
    const auto row = static_cast<size_t>(index.row());
    return index.isValid() && row < _rows.size() ? &_texts[_rows[row]] : nullptr;
}

QModelIndex TextsModel::indexOf(const std::string& textKey) const {
    for (size_t row = 0; row < _rows.size(); ++row) {
        if (_texts[_rows[row]].text.key == textKey)
            return index(static_cast<int>(row), text);
    }
    return {};
}

QString TextsModel::lineOf(const QModelIndex& index) const {
    const DocumentText* row = textOf(index);
    return row == nullptr ? QString() : shown(*row, key) + u'\t' + shown(*row, tag) + u'\t' + shown(*row, text);
}

QString TextsModel::shown(const DocumentText& row, int column) const {
    const auto from = [](std::string_view text) {
        return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    };
    switch (column) {
    case text: return from(row.text.text);
    case kind: return from(kindText(row.text.kind));
    case tag: return from(tagContext(row.text));
    case limit: return from(limitText(row.text));
    case key: return from(row.text.key);
    default: return {};
    }
}

int TextsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(_rows.size());
}

QVariant TextsModel::data(const QModelIndex& index, int role) const {
    const DocumentText* row = textOf(index);
    if (row == nullptr)
        return {};
    if (role == Qt::EditRole || role == Qt::ToolTipRole)
        return shown(*row, index.column());
    if (role == Qt::DisplayRole) // a row has one line
        return shown(*row, index.column()).left(500).replace(u'\n', QChar(0x21B5));
    return {};
}

QVariant TextsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case text: return tr("Text");
    case kind: return tr("Kind");
    case tag: return tr("Tag");
    case limit: return tr("Limit");
    default: return tr("Key");
    }
}

Qt::ItemFlags TextsModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.column() == text ? flags | Qt::ItemIsEditable : flags;
}

bool TextsModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    const DocumentText* row = textOf(index);
    if (row == nullptr || role != Qt::EditRole || shown(*row, text) == value.toString())
        return false;
    Q_EMIT changeAsked(index, value.toString());
    return false;
}

} // namespace zelk
