// Places of a text that follow its edits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelk {

/// Each place is that of an element's "<". It goes with the element when that is deleted, and comes back with it: by
/// undo, by redo, or at another place when it was moved. An edit costs as much as places lie between it and the edit
/// before it, whatever the size of the text.
class TextAnchors {
public:
    /// Gives bytes of the text as it is now.
    using Reader = std::function<std::string(size_t start, size_t end)>;

    TextAnchors() = default;
    /// In any order; a place's number is its position here.
    explicit TextAnchors(const std::vector<size_t>& places);

    /// Before each change of the text. `text` is used only when a place is among what goes.
    void willInsert(size_t at, size_t length);
    void willDelete(size_t start, size_t end, const Reader& text);

    /// Looks for deleted elements in the bytes that were inserted since the last call. To be called before places are
    /// asked for. True when an element was deleted or came back since the last call.
    bool settle(const Reader& text);

    /// None while the element is not in the text. As of the last settle.
    std::optional<size_t> at(size_t number) const;
    size_t count() const { return _places.size(); }

private:
    struct Place {
        size_t offset; ///< behind `_step` without `_shift`
        uint32_t number;
        bool isThere = true;
        // Of one that went:
        size_t inDeleted = 0; ///< its offset in what was deleted
        std::string head;     ///< the start of its element, as far as it was deleted
    };

    /// One that went, and where its element is back.
    struct Found {
        size_t index, offset;
    };

    size_t offsetOf(size_t index) const { return _places[index].offset + (index < _step ? 0 : _shift); }
    size_t firstFrom(size_t offset, bool onlyThere) const;
    bool isTaken(size_t offset) const;
    void moveStep(size_t index);
    void order();
    std::vector<Found> findWhereTheyWere(const Reader& text) const;
    void findElsewhere(const Reader& text, std::vector<Found>& found) const;
    void bringBack(const std::vector<Found>& found);

    std::vector<Place> _places; // ascending; of several at one offset, those that are not there first
    std::vector<size_t> _order; // the index of each number in `_places`
    size_t _step = 0;           // places from here on are off by
    size_t _shift = 0;          // so much, modulo 2^64
    size_t _goneCount = 0;
    size_t _newStart = 0, _newEnd = 0; // of what was put in since the last settle, and all between
    bool _isChanged = false;
};

} // namespace zelk
