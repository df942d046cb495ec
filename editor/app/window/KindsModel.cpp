#include "KindsModel.h"

#include <QElapsedTimer>

#include "ElementText.h"

namespace zelk {

namespace {

constexpr int slice = 15; // milliseconds
constexpr size_t mostLooks = 5000;

QString fromBytes(std::string_view bytes) {
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

QString titleOf(TagKind kind) {
    switch (kind) {
    case TagKind::shape: return KindsModel::tr("Shapes");
    case TagKind::sprite: return KindsModel::tr("Sprites");
    case TagKind::font: return KindsModel::tr("Fonts");
    case TagKind::text: return KindsModel::tr("Texts");
    case TagKind::picture: return KindsModel::tr("Pictures");
    case TagKind::sound: return KindsModel::tr("Sounds");
    case TagKind::button: return KindsModel::tr("Buttons");
    case TagKind::script: return KindsModel::tr("Scripts");
    case TagKind::other: break;
    }
    return KindsModel::tr("Others");
}

// Ids of rows: 0 for a kind, that of the kind + 1 for a tag, with its row + 1 above that for a part.
constexpr int rowShift = 8;

} // namespace

void KindsModel::show(TextEditorView* editor) {
    beginResetModel();
    _editor = editor;
    _map = editor == nullptr ? nullptr : DocumentTags::of(*editor).map();
    begin();
    endResetModel();
}

void KindsModel::setFilter(const QString& text, bool looksInside) {
    beginResetModel();
    _filter = text;
    _looksInside = looksInside;
    begin();
    endResetModel();
}

// Without a filter all at once.
void KindsModel::begin() {
    _kinds.clear();
    _nextKind = tagKinds;
    _nextTag = 0;
    if (_map == nullptr)
        return;
    for (size_t kind = 0; kind < tagKinds; ++kind) {
        const auto& all = _map->outline().ofKind(static_cast<TagKind>(kind));
        if (!all.empty())
            _kinds.push_back({static_cast<TagKind>(kind), _filter.isEmpty() ? all : std::vector<uint32_t>()});
    }
    if (!_filter.isEmpty())
        _nextKind = 0;
}

bool KindsModel::filterMore() {
    if (!isCurrent())
        return false;
    const ByteSearch search(_filter);
    QElapsedTimer time;
    time.start();
    for (; _nextKind < _kinds.size(); ++_nextKind, _nextTag = 0) {
        Kind& kind = _kinds[_nextKind];
        const auto& all = _map->outline().ofKind(kind.kind);
        std::vector<uint32_t> found;
        for (; _nextTag < all.size() && time.elapsed() < slice; ++_nextTag) {
            if (matches(all[_nextTag], search))
                found.push_back(all[_nextTag]);
        }
        if (!found.empty()) {
            const auto first = static_cast<int>(kind.tags.size()), count = static_cast<int>(found.size());
            beginInsertRows(index(static_cast<int>(_nextKind), 0), first, first + count - 1);
            kind.tags.insert(kind.tags.end(), found.begin(), found.end());
            endInsertRows();
        }
        if (_nextTag < all.size())
            return true;
    }
    return false;
}

bool KindsModel::matches(uint32_t tag, const ByteSearch& search) const {
    const std::string_view element = elementOf(tag);
    if (search.isIn(_looksInside ? element : startTagOf(element)))
        return true;
    const CharacterId* id = _map->characters().ofTagAt(_map->outline().tags()[tag].start);
    if (id == nullptr)
        return false;
    const auto& names = _map->characters().names(id->id);
    return std::ranges::any_of(names, [&](const CharacterName& name) { return search.isIn(name.text); });
}

bool KindsModel::isCurrent() const {
    return _editor != nullptr && _map != nullptr && DocumentTags::of(*_editor).map() == _map;
}

size_t KindsModel::shownCount() const {
    size_t count = 0;
    for (const Kind& kind : _kinds)
        count += kind.tags.size();
    return count;
}

std::string_view KindsModel::elementOf(uint32_t tag) const {
    if (!isCurrent())
        return {};
    const MovieOutline::Tag& place = _map->outline().tags()[tag];
    return _editor->text().substr(place.start, place.end - place.start);
}

// --- rows ------------------------------------------------------------------------------------------------------------

KindsModel::Row KindsModel::rowOf(const QModelIndex& index) const {
    const quintptr id = index.internalId();
    const auto row = static_cast<size_t>(index.row());
    if (id == 0)
        return {row, {}, {}};
    const size_t kind = (id & ((1 << rowShift) - 1)) - 1;
    const size_t around = id >> rowShift;
    if (around == 0)
        return {kind, _kinds[kind].tags[row], {}};
    return {kind, _kinds[kind].tags[around - 1], row};
}

std::optional<TagRange> KindsModel::tagOf(const QModelIndex& index) const {
    const std::optional<uint32_t> tag = index.isValid() && isCurrent() ? rowOf(index).tag : std::nullopt;
    if (!tag)
        return std::nullopt;
    const MovieOutline::Tag& place = _map->outline().tags()[*tag];
    return TagRange{place.start, place.end};
}

std::optional<size_t> KindsModel::placeOf(const QModelIndex& index) const {
    const std::optional<TagRange> tag = tagOf(index);
    if (!tag)
        return std::nullopt;
    const Row row = rowOf(index);
    return row.part ? _map->outline().parts(*row.tag)[*row.part].offset : tag->start;
}

QModelIndex KindsModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent))
        return {};
    if (!parent.isValid())
        return createIndex(row, column, quintptr(0));
    if (parent.internalId() == 0)
        return createIndex(row, column, static_cast<quintptr>(parent.row() + 1));
    return createIndex(row, column, parent.internalId() | static_cast<quintptr>(parent.row() + 1) << rowShift);
}

QModelIndex KindsModel::parent(const QModelIndex& child) const {
    if (!child.isValid() || child.internalId() == 0)
        return {};
    const quintptr kind = child.internalId() & ((1 << rowShift) - 1), around = child.internalId() >> rowShift;
    return around == 0 ? createIndex(static_cast<int>(kind - 1), 0, quintptr(0))
                       : createIndex(static_cast<int>(around - 1), 0, kind);
}

int KindsModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid())
        return static_cast<int>(_kinds.size());
    if (parent.column() > 0)
        return 0;
    const Row row = rowOf(parent);
    if (!row.tag)
        return static_cast<int>(_kinds[row.kind].tags.size());
    return row.part ? 0 : static_cast<int>(_map->outline().parts(*row.tag).size());
}

QString KindsModel::nameOf(const Row& row) const {
    if (!row.tag)
        return tr("%1 (%2)").arg(titleOf(_kinds[row.kind].kind)).arg(_kinds[row.kind].tags.size());
    if (row.part)
        return QString::fromStdString(_map->outline().parts(*row.tag)[*row.part].name);
    // Between an edit and the moment in which tags are known again only ids tell what a row is.
    const CharacterId* id = _map->characters().ofTagAt(_map->outline().tags()[*row.tag].start);
    const std::string_view text = elementOf(*row.tag);
    if (id != nullptr)
        return fromBytes(text.empty() ? id->element : elementName(text)) + u' ' +
               QString::fromStdString(_map->characters().shown(id->id));
    if (text.empty())
        return QStringLiteral("…");
    const auto called = attributeOf(startTagOf(text), "Name");
    const QString element = fromBytes(elementName(text));
    return called ? element + u' ' + QString::fromStdString(decoded(called->value)) : element;
}

const KindsModel::Look* KindsModel::lookOf(uint32_t tag) const {
    constexpr uint32_t most = 256 * 1024; // bytes of an element that is looked at for a row
    if (!isCurrent())
        return nullptr;
    const MovieOutline::Tag& place = _map->outline().tags()[tag];
    if (place.end - place.start > most)
        return nullptr;
    const auto found = _looks.find(hashOf(elementOf(tag)));
    if (found != _looks.end())
        return &found->second;
    Q_EMIT const_cast<KindsModel*>(this)->lookWanted({place.start, place.end});
    return nullptr;
}

size_t KindsModel::hashOf(std::string_view element) { return std::hash<std::string_view>()(element); }

void KindsModel::setLook(size_t hash, Look look) {
    if (_looks.size() >= mostLooks)
        _looks.clear();
    _looks[hash] = std::move(look);
}

QVariant KindsModel::data(const QModelIndex& index, int role) const {
    if (_map == nullptr || !index.isValid())
        return {};
    const Row row = rowOf(index);
    const bool isTag = row.tag && !row.part;
    if (role == Qt::DisplayRole && index.column() == name)
        return nameOf(row);
    if (role == Qt::DisplayRole && isTag) {
        const Look* look = lookOf(*row.tag);
        return look == nullptr || look->bytes < 0 ? QVariant()
                                                  : QLocale().toString(static_cast<qlonglong>(look->bytes));
    }
    if (role == Qt::SizeHintRole) // All rows are as high as the first one.
        return QSize(rowHeight, rowHeight);
    if (role == Qt::TextAlignmentRole && index.column() == bytes)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::DecorationRole && index.column() == name && isTag) {
        const Look* look = lookOf(*row.tag);
        if (look != nullptr && !look->picture.isNull())
            return look->picture;
        QImage none(pictureSize, pictureSize, QImage::Format_ARGB32_Premultiplied); // Names stay in one column.
        none.fill(Qt::transparent);
        return none;
    }
    return {};
}

QVariant KindsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == name ? tr("Tag") : tr("Bytes");
}

} // namespace zelk
