#include "WarningsModel.h"

namespace zelk {

using libswf::SwfWarning;

namespace {

// A group is 0; what stands in one is the group's number behind that.
constexpr quintptr outermost = 0;

QString fromBytes(const std::string& text) { return QString::fromUtf8(text); }

// `row` is where its element is now: what it leads into has moved with it.
QString reasonOf(const SwfWarning& warning, uint32_t row) {
    const QString reason = fromBytes(warning.reason);
    if (warning.targetRow == 0)
        return reason;
    return WarningsModel::tr("%1 of row %2").arg(reason).arg(int64_t(row) + warning.targetRow - warning.row);
}

} // namespace

void WarningsModel::show(DocumentView* view, const QString& filter) {
    beginResetModel();
    _view = view;
    std::vector<WarningList::Entry> entries;
    if (view != nullptr)
        entries = view->warnings().entries();
    if (!filter.isEmpty())
        std::erase_if(entries, [&](WarningList::Entry entry) {
            for (int column = 0; column < columns; ++column) {
                if (textOf(entry, column).contains(filter, Qt::CaseInsensitive))
                    return false;
            }
            return true;
        });
    _shownCount = entries.size();
    _groups = view == nullptr ? std::vector<WarningGroup>() : grouped(view->warnings(), entries);
    endResetModel();
}

std::optional<WarningList::Entry> WarningsModel::entryOf(const QModelIndex& index) const {
    if (!index.isValid())
        return std::nullopt;
    const auto row = static_cast<size_t>(index.row());
    if (index.internalId() != outermost)
        return _groups[index.internalId() - 1].entries[row];
    return isSingle(row) ? std::optional(_groups[row].entries.front()) : std::nullopt;
}

QModelIndex WarningsModel::indexOf(WarningList::Entry entry) const {
    for (size_t group = 0; group < _groups.size(); ++group) {
        const auto& entries = _groups[group].entries;
        const auto found = std::ranges::find(entries, entry);
        if (found == entries.end())
            continue;
        const QModelIndex outer = index(static_cast<int>(group), 0);
        return isSingle(group) ? outer : index(static_cast<int>(found - entries.begin()), 0, outer);
    }
    return {};
}

QModelIndex WarningsModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : outermost);
}

QModelIndex WarningsModel::parent(const QModelIndex& child) const {
    if (!child.isValid() || child.internalId() == outermost)
        return {};
    return createIndex(static_cast<int>(child.internalId() - 1), 0, outermost);
}

int WarningsModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid())
        return static_cast<int>(_groups.size());
    const auto group = static_cast<size_t>(parent.row());
    if (parent.column() > 0 || parent.internalId() != outermost || isSingle(group))
        return 0;
    return static_cast<int>(_groups[group].entries.size());
}

QString WarningsModel::textOf(WarningList::Entry entry, int column) const {
    if (!_view->warnings().has(entry)) // The list is another, and a dialog is open before it is shown.
        return {};
    const DocumentWarning& warning = _view->warnings().at(entry);
    const size_t offset = _view->warnings().offset(entry);
    switch (column) {
    case row: return offset == DocumentWarning::nowhere ? QString() : QString::number(_view->rowOf(offset));
    case tag: return fromBytes(warning.warning.tagName);
    case text: return reasonOf(warning.warning, offset == DocumentWarning::nowhere ? 0 : _view->rowOf(offset));
    case effect:
        return warning.effect.empty() ? fromBytes(libswf::kindText(warning.warning.kind)) : fromBytes(warning.effect);
    default:
        return entry.from == WarningList::From::load   ? tr("load")
               : entry.from == WarningList::From::save ? tr("save")
                                                       : tr("check");
    }
}

// What all of them have in common; their first row.
QString WarningsModel::groupText(const WarningGroup& group, int column) const {
    if (column == text)
        return fromBytes(group.title);
    const QString first = textOf(group.entries.front(), column);
    if (column != tag)
        return first;
    const bool areEqual =
        std::ranges::all_of(group.entries, [&](WarningList::Entry entry) { return textOf(entry, column) == first; });
    return areEqual ? first : QString();
}

QVariant WarningsModel::data(const QModelIndex& index, int role) const {
    if (_view == nullptr || !index.isValid())
        return {};
    const std::optional<WarningList::Entry> entry = entryOf(index);
    switch (role) {
    case Qt::DisplayRole:
        return entry ? textOf(*entry, index.column())
                     : groupText(_groups[static_cast<size_t>(index.row())], index.column());
    case Qt::ToolTipRole: return lineOf(index);
    default: return {};
    }
}

QString WarningsModel::lineOf(const QModelIndex& index) const {
    const std::optional<WarningList::Entry> entry = entryOf(index);
    if (!entry)
        return fromBytes(_groups[static_cast<size_t>(index.row())].title);
    const QString place = textOf(*entry, row), name = textOf(*entry, tag);
    return (place.isEmpty() ? QString() : tr("row %1: ").arg(place)) +
           (name.isEmpty() ? name : name + QStringLiteral(": ")) + textOf(*entry, text) + QStringLiteral(" (") +
           textOf(*entry, effect) + u')';
}

QVariant WarningsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case row: return tr("Row");
    case tag: return tr("Tag");
    case text: return tr("Warning");
    case effect: return tr("What became of it");
    default: return tr("On");
    }
}

} // namespace zelk
