#include "TextAnchors.h"

#include <algorithm>
#include <bitset>
#include <unordered_map>
#include <utility>

namespace zelk {

namespace {

// Bytes of an element, its name and first attributes, by which it is found again.
constexpr size_t headSize = 96;

// Where an offset is after a deletion.
size_t without(size_t offset, size_t start, size_t end) {
    return offset <= start ? offset : offset < end ? start : offset - (end - start);
}

// To the end of the start tag or of the line.
std::string_view headOf(std::string_view element) {
    size_t end = 0; // find_first_of takes four times as long.
    while (end < element.size() && element[end] != '>' && element[end] != '\n' && element[end] != '\r')
        ++end;
    return element.substr(0, end < element.size() && element[end] == '>' ? end + 1 : end);
}

using Element = std::vector<size_t>; // the places of one element that went

// Tells most other elements from those that are looked for, by their first bytes: in a big text that is most of the
// work.
class HeadFilter {
public:
    explicit HeadFilter(const std::unordered_map<std::string_view, std::vector<Element>>& heads) {
        for (const auto& head : heads)
            _length = std::min(_length, head.first.size());
        for (const auto& head : heads)
            _begins.set(numberOf(head.first));
    }
    bool mayBegin(std::string_view element) const { return _begins[numberOf(element)]; }

private:
    size_t numberOf(std::string_view head) const {
        return std::hash<std::string_view>()(head.substr(0, _length)) % _begins.size();
    }

    size_t _length = 16; // or what the shortest has
    std::bitset<1 << 12> _begins;
};

// The start of an element that was deleted only in part is too short to look for.
bool isWhole(std::string_view head) {
    return head.starts_with('<') && (head.ends_with('>') || head.size() == headSize);
}

} // namespace

TextAnchors::TextAnchors(const std::vector<size_t>& places) {
    _places.reserve(places.size());
    for (size_t place : places)
        _places.push_back({place, static_cast<uint32_t>(_places.size()), true, 0, {}});
    order();
}

void TextAnchors::order() {
    std::ranges::stable_sort(_places, [](const Place& a, const Place& b) {
        return a.offset != b.offset ? a.offset < b.offset : a.isThere < b.isThere;
    });
    _order.resize(_places.size());
    for (size_t i = 0; i < _places.size(); ++i)
        _order[_places[i].number] = i;
}

// --- edits -----------------------------------------------------------------------------------------------------------

// The first place at or behind an offset; at it only those that are there when `onlyThere`.
size_t TextAnchors::firstFrom(size_t offset, bool onlyThere) const {
    size_t low = 0, high = _places.size();
    while (low < high) {
        const size_t middle = low + (high - low) / 2;
        const size_t found = offsetOf(middle);
        if (found < offset || (onlyThere && found == offset && !_places[middle].isThere))
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

void TextAnchors::moveStep(size_t index) {
    for (; _step < index; ++_step)
        _places[_step].offset += _shift;
    for (; _step > index; --_step)
        _places[_step - 1].offset -= _shift;
}

// Places whose elements are gone stay in front of the inserted bytes; the others move behind them.
void TextAnchors::willInsert(size_t at, size_t length) {
    moveStep(firstFrom(at, true));
    _shift += length;
    if (_newStart == _newEnd) {
        _newStart = at;
        _newEnd = at + length;
        return;
    }
    _newEnd = std::max(_newEnd < at ? _newEnd : _newEnd + length, at + length);
    _newStart = std::min(_newStart <= at ? _newStart : _newStart + length, at);
}

void TextAnchors::willDelete(size_t start, size_t end, const Reader& text) {
    _newStart = without(_newStart, start, end);
    _newEnd = without(_newEnd, start, end);
    const size_t first = firstFrom(start, true), last = firstFrom(end, false);
    moveStep(last);
    for (size_t i = first; i < last; ++i) {
        Place& place = _places[i];
        if (place.isThere) {
            place.isThere = false;
            place.inDeleted = place.offset - start;
            place.head = headOf(text(place.offset, std::min(end, place.offset + headSize)));
            ++_goneCount;
            _isChanged = true;
        }
        place.offset = start;
    }
    _shift -= end - start;
}

// --- what comes back -------------------------------------------------------------------------------------------------

bool TextAnchors::settle(const Reader& text) {
    if (_goneCount != 0 && _newStart != _newEnd) {
        std::vector<Found> found = findWhereTheyWere(text);
        findElsewhere(text, found);
        bringBack(found);
    }
    _newStart = _newEnd = 0;
    return std::exchange(_isChanged, false);
}

bool TextAnchors::isTaken(size_t offset) const {
    const size_t index = firstFrom(offset, true);
    return index < _places.size() && offsetOf(index) == offset;
}

// Undo puts an element back at the offset at which it was deleted.
std::vector<TextAnchors::Found> TextAnchors::findWhereTheyWere(const Reader& text) const {
    std::vector<Found> found;
    for (size_t i = 0; i < _places.size(); ++i) {
        const Place& place = _places[i];
        const size_t offset = offsetOf(i) + place.inDeleted;
        if (!place.isThere && offset >= _newStart && offset + place.head.size() <= _newEnd && !isTaken(offset) &&
            text(offset, offset + place.head.size()) == place.head)
            found.push_back({i, offset});
    }
    return found;
}

// Elements that were moved: by how they start, in their order.
void TextAnchors::findElsewhere(const Reader& text, std::vector<Found>& found) const {
    std::unordered_map<std::string_view, std::vector<Element>> missing;
    size_t before = _places.size(), next = 0;
    const size_t foundBefore = found.size();
    for (size_t i = 0; i < _places.size(); ++i) {
        const Place& place = _places[i];
        if (next < foundBefore && found[next].index == i) {
            ++next;
            continue;
        }
        if (place.isThere || !isWhole(place.head))
            continue;
        std::vector<Element>& elements = missing[place.head];
        const bool isSame = before < i && _places[before].offset == place.offset &&
                            _places[before].inDeleted == place.inDeleted && _places[before].head == place.head;
        if (!isSame)
            elements.emplace_back();
        elements.back().push_back(i);
        before = i;
    }
    if (missing.empty())
        return;
    for (auto& [head, elements] : missing)
        std::ranges::reverse(elements); // so that the first one is taken from the end
    const HeadFilter filter(missing);
    constexpr size_t pieceSize = 256 * 1024; // All of it may be as big as the text.
    for (size_t start = _newStart; start < _newEnd && !missing.empty(); start += pieceSize) {
        const std::string put = text(start, std::min(_newEnd, start + pieceSize + headSize));
        const std::string_view piece = put;
        for (size_t at = piece.find('<'); at < pieceSize && !missing.empty(); at = piece.find('<', at + 1)) {
            if (!filter.mayBegin(piece.substr(at)))
                continue;
            const auto match = missing.find(headOf(piece.substr(at, headSize)));
            const size_t offset = start + at;
            const auto isFoundHere = [offset](const Found& other) { return other.offset == offset; };
            if (match == missing.end() || isTaken(offset) ||
                std::any_of(found.begin(), found.begin() + static_cast<ptrdiff_t>(foundBefore), isFoundHere))
                continue;
            for (size_t index : match->second.back())
                found.push_back({index, offset});
            match->second.pop_back();
            if (match->second.empty())
                missing.erase(match);
        }
    }
}

void TextAnchors::bringBack(const std::vector<Found>& found) {
    if (found.empty())
        return;
    moveStep(_places.size());
    _shift = 0;
    for (const Found& back : found) {
        Place& place = _places[back.index];
        place = {back.offset, place.number, true, 0, {}};
        --_goneCount;
    }
    order();
    _isChanged = true;
}

std::optional<size_t> TextAnchors::at(size_t number) const {
    const size_t index = _order[number];
    return _places[index].isThere ? std::optional(offsetOf(index)) : std::nullopt;
}

} // namespace zelk
