#include "ListViewController.h"

#include <QObject>
#include <QStringList>

#include <algorithm>

#include "ByteSearch.h"
#include "Exceptions.h"
#include "IdAttributes.h"
#include "TagText.h"
#include "UnknownTag.h"
#include "XmlNumbers.h"
#include "XmlTags.h"

namespace zelk {

namespace {

constexpr uint32_t notShown = UINT32_MAX;
constexpr qsizetype longestText = 400, longestTip = 2000; // in characters; nobody reads more of one row

// One line of at most so many characters.
QString shortened(QString text, qsizetype most) {
    for (QChar& c : text) {
        if (c < u' ' && c != u'\n')
            c = u' ';
    }
    if (text.size() > most)
        text = text.left(most) + QChar(0x2026);
    return text;
}

QString fromBytes(std::string_view bytes, qsizetype most) {
    return QString::fromUtf8(bytes.substr(0, static_cast<size_t>(most) * 4).data(),
                             static_cast<qsizetype>(std::min(bytes.size(), static_cast<size_t>(most) * 4)));
}

} // namespace

void ListViewController::refresh(std::vector<TagPath> kept) {
    _kept = std::move(kept);
    _index = nullptr;
    _index = _text.sharedTags();
    _layout = layoutAtStart(_text.text());
    _unknown.clear();
    _blocks.clear();
    _blockOfTag.clear();
    applyFilter();
}

const TagIndex& ListViewController::tags() const {
    static const TagIndex none;
    return _index == nullptr ? none : *_index;
}

// --- the filter ------------------------------------------------------------------------------------------------------

void ListViewController::setFilter(const QString& text) {
    _filter = text;
    _kept.clear();
    applyFilter();
}

void ListViewController::applyFilter() {
    _rows.clear();
    _childrenOf.clear();
    _rowOf.clear();
    _opened.clear();
    if (_filter.isEmpty())
        return;
    std::vector<bool> isShown(tags().count());
    showMatches(isShown);
    collect(isShown);
}

void ListViewController::showMatches(std::vector<bool>& isShown) {
    const TagIndex& index = tags();
    const ByteSearch search(_filter);
    std::vector<uint16_t> named;
    if (_characters != nullptr)
        named = _characters->named([&](std::string_view name) { return search.isIn(name); });
    std::ranges::sort(named);
    const auto isNamed = [&](std::string_view tag) {
        return !named.empty() && std::ranges::any_of(attributesOf(tag), [&](const TagAttribute& attribute) {
            const auto id = idOf(elementName(tag), attribute);
            return id && std::ranges::binary_search(named, *id);
        });
    };
    std::vector<bool> isMatch(index.count()), hasMatch(index.count());
    for (const TagPath& path : _kept) {
        if (const uint32_t tag = index.find(path); tag != TagIndex::movie)
            isMatch[tag] = true;
    }
    for (uint32_t tag = index.count(); tag-- > 0;) { // What is inside comes before what is around it.
        isMatch[tag] = isMatch[tag] || search.isIn(startTag(tag)) || isNamed(startTag(tag));
        const uint32_t parent = index.parent(tag);
        if ((isMatch[tag] || hasMatch[tag]) && parent != TagIndex::movie)
            hasMatch[parent] = true;
    }
    std::vector<bool> isWhole(index.count());
    for (uint32_t tag = 0; tag < index.count(); ++tag) {
        const uint32_t parent = index.parent(tag);
        const bool isInWhole = parent != TagIndex::movie && isWhole[parent];
        isWhole[tag] = isInWhole || (isMatch[tag] && !hasMatch[tag]);
        isShown[tag] = isInWhole || isMatch[tag] || hasMatch[tag];
        if (hasMatch[tag] && !isInWhole)
            _opened.push_back(tag);
    }
}

void ListViewController::collect(const std::vector<bool>& isShown) {
    const TagIndex& index = tags();
    _childrenOf.resize(index.count() + 1);
    _rowOf.assign(index.count(), notShown);
    const auto childrenIn = [this](uint32_t parent) -> Children& {
        return parent == TagIndex::movie ? _childrenOf.back() : _childrenOf[parent];
    };
    for (uint32_t tag = 0; tag < index.count(); ++tag) {
        if (isShown[tag])
            _rowOf[tag] = childrenIn(index.parent(tag)).count++;
    }
    uint32_t next = 0;
    for (Children& children : _childrenOf) {
        children.first = next;
        next += children.count;
    }
    _rows.resize(next);
    for (uint32_t tag = 0; tag < index.count(); ++tag) {
        if (isShown[tag])
            _rows[childrenIn(index.parent(tag)).first + _rowOf[tag]] = tag;
    }
}

bool ListViewController::isShown(uint32_t tag) const {
    return tag < tags().count() && (_filter.isEmpty() || _rowOf[tag] != notShown);
}

// --- rows ------------------------------------------------------------------------------------------------------------

const ListViewController::Children& ListViewController::childrenOf(uint32_t parent) const {
    return parent == TagIndex::movie ? _childrenOf.back() : _childrenOf[parent];
}

uint32_t ListViewController::rowCount(uint32_t parent) const {
    if (const Block* block = blockIn(parent))
        return block->outline.childCount(block->entryOf(parent));
    if (_filter.isEmpty() || _childrenOf.empty())
        return tags().childCount(parent);
    return childrenOf(parent).count;
}

uint32_t ListViewController::rowAt(uint32_t parent, uint32_t row) const {
    if (const Block* block = blockIn(parent))
        return block->keyOf(block->outline.child(block->entryOf(parent), row));
    return _filter.isEmpty() ? tags().child(parent, row) : _rows[childrenOf(parent).first + row];
}

uint32_t ListViewController::rowOf(uint32_t key) const {
    if (isCode(key))
        return blockOf(key).outline.row(blockOf(key).entryOf(key));
    return _filter.isEmpty() ? tags().row(key) : _rowOf[key];
}

uint32_t ListViewController::parentOf(uint32_t key) const {
    if (!isCode(key))
        return tags().parent(key);
    const Block& block = blockOf(key);
    return block.keyOf(block.outline.parent(block.entryOf(key)));
}

bool ListViewController::hasRows(uint32_t parent) const {
    const bool isOpened = isCode(parent) || _blockOfTag.contains(parent);
    return (!isOpened && parent != top && hasCode(parent)) || rowCount(parent) != 0;
}

size_t ListViewController::start(uint32_t key) const {
    return isCode(key) ? blockOf(key).outline.start(blockOf(key).entryOf(key)) : tags().start(key);
}

std::string_view ListViewController::startTag(uint32_t key) const {
    return isCurrent() ? startTagOf(_text.text().substr(start(key))) : std::string_view();
}

// --- code ------------------------------------------------------------------------------------------------------------

bool ListViewController::hasCode(uint32_t tag) const {
    return isCurrent() && showsCode(_text.text(), tags().start(tag), tags().end(tag));
}

const ListViewController::Block& ListViewController::blockOf(uint32_t codeKey) const {
    const auto behind = std::ranges::upper_bound(_blocks, codeKey, {}, [](const auto& b) { return b->firstKey; });
    return **(behind - 1);
}

// The block whose rows stand in this one; it is looked over when it is first asked for. Null when there is no code.
const ListViewController::Block* ListViewController::blockIn(uint32_t parent) const {
    if (parent == top)
        return nullptr;
    if (isCode(parent))
        return &blockOf(parent);
    if (const auto known = _blockOfTag.find(parent); known != _blockOfTag.end())
        return _blocks[known->second].get();
    if (tags().childCount(parent) != 0 || !hasCode(parent))
        return nullptr;
    const uint32_t firstKey = _blocks.empty() ? codeKeys : _blocks.back()->firstKey + _blocks.back()->outline.count();
    _blockOfTag.emplace(parent, _blocks.size());
    _blocks.push_back(std::make_unique<Block>(
        Block{parent, firstKey, CodeOutline(_text.text(), tags().start(parent), tags().end(parent))}));
    return _blocks.back().get();
}

QString ListViewController::title(int column) const {
    return column == 0 ? QObject::tr("Tags") : QObject::tr("Attributes");
}

QString ListViewController::text(uint32_t key, int column) const {
    const std::string_view tag = startTag(key);
    if (column == 0)
        return fromBytes(elementName(tag), longestText);
    QString text = unknownWords(key);
    if (!text.isEmpty())
        text += QStringLiteral(" · ");
    for (const TagAttribute& attribute : attributesOf(tag)) {
        const std::string value = decoded(attribute.value.substr(0, longestText * 4));
        text += QStringLiteral("%1=\"%2\" ").arg(fromBytes(attribute.name, longestText), fromBytes(value, longestText));
        text += nameOf(elementName(tag), attribute);
        if (text.size() > longestText)
            break;
    }
    return shortened(text.trimmed().replace(u'\n', u' '), longestText);
}

// That of a character, if the attribute holds one.
std::optional<uint16_t> ListViewController::idOf(std::string_view element, const TagAttribute& attribute) {
    const auto rows = idAttributes(element, element);
    const auto row = std::ranges::find(rows, attribute.name, &IdAttribute::attribute);
    const auto id = row == rows.end() ? std::nullopt : xml2swf::parseInteger(attribute.value);
    return id && *id >= 0 && *id <= UINT16_MAX ? std::optional(static_cast<uint16_t>(*id)) : std::nullopt;
}

// " (ball) " behind an id.
QString ListViewController::nameOf(std::string_view element, const TagAttribute& attribute) const {
    const auto id = _characters == nullptr ? std::nullopt : idOf(element, attribute);
    if (!id)
        return {};
    const std::string_view name = _characters->name(*id);
    return name.empty() ? QString() : QStringLiteral("(%1) ").arg(fromBytes(name, longestText));
}

// Asked for the rows on the screen, again and again.
const QString& ListViewController::unknownWords(uint32_t key) const {
    constexpr size_t most = 64 * 1024; // bytes of an element that are read for a row
    static const QString none;
    if (isCode(key))
        return none;
    const auto [found, isNew] = _unknown.try_emplace(key);
    if (isNew && isCurrent())
        found->second = QString::fromStdString(unknownTagWords(_text.element(key), _layout, most));
    return found->second;
}

bool ListViewController::isLeftOut(uint32_t key) const {
    const std::string_view tag = startTag(key);
    return !isCode(key) && !tag.empty() && !xml2swf::isTagElement(elementName(tag), _layout.fullForm);
}

QString ListViewController::toolTip(uint32_t key) const {
    QStringList lines;
    if (isLeftOut(key))
        lines.append(QString::fromStdString(NotMovieException::noTag(elementName(startTag(key)), 1, 1).description()));
    else
        lines.append(text(key, 0));
    if (const QString& words = unknownWords(key); !words.isEmpty())
        lines.append(words);
    for (const TagAttribute& attribute : attributesOf(startTag(key)))
        lines.append(
            QStringLiteral("%1=\"%2\"")
                .arg(fromBytes(attribute.name, longestText), fromBytes(decoded(attribute.value), longestText)));
    return shortened(lines.join(u'\n'), longestTip);
}

} // namespace zelk
