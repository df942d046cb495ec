// The rows of the tag list: a document's tags, or those of them that a filter lets through; in tags with code of
// ActionScript 3 its classes and methods.
#pragma once

#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "CharacterIndex.h"
#include "CodeOutline.h"
#include "IVirtualListViewController.h"
#include "MovieLayout.h"
#include "TagText.h"
#include "TaggedText.h"

namespace zelk {

/// Keys are the numbers of the tags; those of classes and methods count from `codeKeys`, valid until `refresh`.
class ListViewController : public IVirtualListViewController {
public:
    static constexpr uint32_t codeKeys = 1u << 31;

    explicit ListViewController(TaggedText& text) : _text(text) {}

    /// Looks at the text again. Throws XmlException; there are no rows then. The filter hides no tags at these places
    /// until it, or the text, is another.
    void refresh(std::vector<TagPath> kept = {});
    /// False as soon as the text has changed: the rows are out of date then.
    bool isCurrent() const { return _text.isCurrent() && _index == _text.sharedTags(); }
    /// What ids are called beside their numbers; null for nothing.
    void setCharacters(std::shared_ptr<const CharacterIndex> characters) { _characters = std::move(characters); }
    /// Shows the tags in whose name or attributes, or in whose characters' names, this text stands, in any case, and
    /// the sprites around them. A sprite of which only these match shows all its tags. Empty: shows everything.
    void setFilter(const QString& text);
    const QString& filter() const { return _filter; }
    /// Sprites that are shown because of the tags in them.
    const std::vector<uint32_t>& openedByFilter() const { return _opened; }
    bool isShown(uint32_t tag) const;
    size_t shownCount() const { return _filter.isEmpty() ? tags().count() : _rows.size(); }

    const TagIndex& tags() const;

    static bool isCode(uint32_t key) { return key >= codeKeys && key != top; }
    /// The tag that a row stands for or in; `top` for that.
    uint32_t tagOf(uint32_t key) const { return isCode(key) ? blockOf(key).tag : key; }
    /// Where the element of a row starts in the text.
    size_t start(uint32_t key) const;
    /// Whether a tag shows classes and methods.
    bool hasCode(uint32_t tag) const;

    uint32_t rowCount(uint32_t parent) const override;
    uint32_t rowAt(uint32_t parent, uint32_t row) const override;
    bool hasRows(uint32_t parent) const override;
    uint32_t parentOf(uint32_t key) const override;
    uint32_t rowOf(uint32_t key) const override;
    int columnCount() const override { return 2; }
    QString title(int column) const override;
    QString text(uint32_t key, int column) const override;
    bool isLeftOut(uint32_t key) const override;
    bool isMovable(uint32_t key) const override { return !isCode(key); }
    QString toolTip(uint32_t key) const override;

private:
    struct Children { // in _rows
        uint32_t first = 0, count = 0;
    };

    struct Block { // of code, that was opened
        uint32_t tag, firstKey;
        CodeOutline outline;

        uint32_t keyOf(uint32_t entry) const { return entry == CodeOutline::top ? tag : firstKey + entry; }
        uint32_t entryOf(uint32_t key) const { return isCode(key) ? key - firstKey : CodeOutline::top; }
    };

    const Block& blockOf(uint32_t codeKey) const;
    const Block* blockIn(uint32_t parent) const;
    void applyFilter();
    void showMatches(std::vector<bool>& isShown);
    void collect(const std::vector<bool>& isShown);
    std::string_view startTag(uint32_t key) const;
    const Children& childrenOf(uint32_t parent) const;
    const QString& unknownWords(uint32_t key) const;
    static std::optional<uint16_t> idOf(std::string_view element, const TagAttribute& attribute);
    QString nameOf(std::string_view element, const TagAttribute& attribute) const;

    TaggedText& _text;
    std::shared_ptr<const TagIndex> _index; // null while there is none
    std::shared_ptr<const CharacterIndex> _characters;
    MovieLayout _layout;                                    // of the text
    mutable std::unordered_map<uint32_t, QString> _unknown; // what was found for rows on the screen
    mutable std::vector<std::unique_ptr<Block>> _blocks;    // by their keys
    mutable std::unordered_map<uint32_t, size_t> _blockOfTag;
    QString _filter;
    // With a filter only:
    std::vector<TagPath> _kept;
    std::vector<uint32_t> _rows;       // the children shown, those of each parent in a row
    std::vector<Children> _childrenOf; // by tag; the movie's come last
    std::vector<uint32_t> _rowOf;      // by tag
    std::vector<uint32_t> _opened;
};

} // namespace zelk
