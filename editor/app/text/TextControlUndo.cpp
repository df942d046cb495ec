// Big changes of the text, and undo over them.

#include <algorithm>

#include "PaintLoop.h"
#include "TextControl.h"
#include "TextMarks.h"

namespace zelk {

namespace {

constexpr size_t manyChanges = 100'000;
constexpr size_t mostVersions = 5; // each takes twice the memory of the text

std::string changed(std::string_view text, std::span<const TextChange> changes) {
    size_t size = text.size();
    for (const TextChange& change : changes)
        size += change.text.size() - (change.end - change.start);
    std::string result;
    result.reserve(size);
    size_t last = 0;
    for (const TextChange& change : changes) {
        result.append(text.substr(last, change.start - last)).append(change.text);
        last = change.end;
    }
    result.append(text.substr(last));
    return result;
}

} // namespace

// A change of the first kind would make the control copy all of its memory, one of the second kind is long to undo.
bool TextControl::isBig(std::span<const TextChange> changes) const {
    if (static_cast<size_t>(send(SCI_GETLENGTH)) <= bigSize || _shown + 1 == mostVersions)
        return false;
    size_t added = 0;
    for (const TextChange& change : changes)
        added += change.text.size();
    return added > documentRoom || changes.size() > manyChanges;
}

void TextControl::replaceAll(std::span<const TextChange> changes) {
    if (isBig(changes))
        return addVersion(changes);
    size_t size = 0, left = changes.size();
    for (const TextChange& change : changes)
        size += change.end - change.start + change.text.size();
    const auto replaceLast = [&] { // so that places before it stay
        --left;
        replaceBytes(changes[left].start, changes[left].end, changes[left].text);
        return left == 0;
    };
    send(SCI_BEGINUNDOACTION);
    if (size > bigSize && left > 1) {
        _isEditedQueued = true;
        untilDone(replaceLast);
        queueEdited();
    } else {
        while (left > 0)
            replaceLast();
    }
    send(SCI_ENDUNDOACTION);
}

void TextControl::addVersion(std::span<const TextChange> changes) {
    Version next;
    std::vector<Moved> moved;
    const std::string_view text = bytes();
    std::string result;
    besideWindow([&] {
        moved.reserve(changes.size());
        for (const TextChange& change : changes)
            moved.push_back({static_cast<uint32_t>(change.start), static_cast<uint32_t>(change.end - change.start),
                             static_cast<uint32_t>(change.text.size())});
        result = changed(text, changes);
        next.quotes.at(result, result.size());
    });
    next.document = makeDocument(*this, std::move(result));
    forgetNext();
    _versions[_shown].toNext = std::move(moved);
    _versions[_shown].undone = 0;
    _versions.push_back(std::move(next));
    showVersion(_shown + 1);
}

// What the user changes leads to no version that there was.
void TextControl::forgetNext() {
    _versions.resize(_shown + 1);
    if (_saved > _shown)
        _saved = SIZE_MAX;
}

void TextControl::showVersion(size_t version) {
    const bool isBack = version < _shown;
    Version &old = _versions[_shown], &next = _versions[version];
    const std::vector<Moved>& moved = isBack ? next.toNext : old.toNext;
    const bool isNew = next.caret < 0;
    std::vector<size_t> marked; // The others know their bookmarks.
    if (isNew) {
        marked = movedPlaces(moved, markedPlaces());
        next.caret = static_cast<long>(movedPlaces(moved, {static_cast<size_t>(send(SCI_GETCURRENTPOS))})[0]);
    }
    tellMoved(moved, isBack);
    old.document = shownDocument(*this);
    old.quotes = std::move(_quotes);
    old.caret = send(SCI_GETCURRENTPOS);
    const long lineEnds = send(SCI_GETEOLMODE);
    showDocument(*this, next.document);
    _shown = version;
    _quotes = std::move(next.quotes);
    setUpDocument();
    send(SCI_SETEOLMODE, lineEnds);
    for (const size_t place : marked)
        send(SCI_MARKERADD, send(SCI_LINEFROMPOSITION, static_cast<long>(place)), bookmark);
    send(SCI_GOTOPOS, next.caret);
    ++_changeCount;
    queueEdited();
    Q_EMIT documentShown();
}

// From the last to the first, as changes are made one by one.
void TextControl::tellMoved(const std::vector<Moved>& moved, bool isBack) {
    constexpr size_t atOnce = 20'000; // some 10 ms
    size_t grown = 0;
    for (const Moved& move : moved)
        grown += size_t{move.added} - move.removed;
    size_t left = moved.size();
    untilDone([&] {
        for (size_t i = 0; i < atOnce && left > 0; ++i) {
            const Moved& move = moved[--left];
            grown -= size_t{move.added} - move.removed;
            const size_t start = move.start + (isBack ? grown : 0);
            const size_t removed = isBack ? move.added : move.removed, added = isBack ? move.removed : move.added;
            if (removed > 0)
                Q_EMIT willDelete(start, start + removed);
            if (added > 0)
                Q_EMIT willInsert(start, added);
        }
        return left == 0;
    });
}

// Ascending places, after the changes. What is inside of one comes to its start.
std::vector<size_t> TextControl::movedPlaces(const std::vector<Moved>& moved, std::vector<size_t> places) {
    size_t grown = 0;
    auto next = moved.begin();
    for (size_t& place : places) {
        for (; next != moved.end() && next->start + next->removed <= place; ++next)
            grown += size_t{next->added} - next->removed;
        place = (next == moved.end() ? place : std::min<size_t>(place, next->start)) + grown;
    }
    return places;
}

// The first character of each line with a bookmark, which stays in a line however it is indented.
std::vector<size_t> TextControl::markedPlaces() const {
    std::vector<size_t> places;
    for (long line = send(SCI_MARKERNEXT, 0, 1 << bookmark); line >= 0;
         line = send(SCI_MARKERNEXT, line + 1, 1 << bookmark))
        places.push_back(static_cast<size_t>(send(SCI_GETLINEINDENTPOSITION, line)));
    return places;
}

void TextControl::setSavePoint() {
    _saved = _shown;
    send(SCI_SETSAVEPOINT);
}

void TextControl::undo() {
    if (send(SCI_CANUNDO) == 0) {
        if (_shown > 0)
            showVersion(_shown - 1);
        return;
    }
    ++_versions[_shown].undone;
    send(SCI_UNDO);
}

void TextControl::redo() {
    if (hasNext() && _versions[_shown].undone == 0) {
        showVersion(_shown + 1);
    } else if (send(SCI_CANREDO) != 0) {
        --_versions[_shown].undone;
        send(SCI_REDO);
    }
}

} // namespace zelk
