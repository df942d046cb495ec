#include <algorithm>

#include "DocumentViewListCommands.h"
#include "TagEdits.h"

namespace zelk::guicommand::documentviewlist {

namespace {

bool startsWith(const TagPath& path, const TagPath& start) {
    return path.size() >= start.size() && std::equal(start.begin(), start.end(), path.begin());
}

// Where a position is once tags before it have gone.
TagPath afterRemoval(const TagPath& position, const TagSelection& removed) {
    TagPath result = position;
    for (const TagPath& path : removed) {
        const size_t level = path.size() - 1;
        const bool isBefore = level < position.size() && path[level] < position[level] &&
                              std::equal(path.begin(), path.end() - 1, position.begin());
        if (isBefore)
            --result[level];
    }
    return result;
}

// The last one before a row that stays; TagIndex::movie when there is none.
uint32_t stayingBefore(const TagIndex& index, uint32_t parent, uint32_t row, const std::vector<uint32_t>& moved) {
    while (row-- > 0) {
        const uint32_t tag = index.child(parent, row);
        if (!std::ranges::binary_search(moved, tag))
            return tag;
    }
    return TagIndex::movie;
}

} // namespace

TagListCmd::Edit MoveCmd::prepare() {
    const TagIndex& index = text().tags();
    const std::vector<uint32_t> tags = tagsAt(index, _selection);
    if (tags.empty() || _position.empty())
        return {};
    Edit edit;
    std::vector<std::string> elements;
    const TagPath parentPath(_position.begin(), _position.end() - 1);
    for (uint32_t tag : tags) {
        edit.back.push_back(index.path(tag));
        if (startsWith(parentPath, edit.back.back()))
            return {};
        elements.push_back(loneElement(text(), tag));
    }
    const uint32_t parent = index.find(parentPath);
    TagPath position = parentPath;
    position.push_back(std::min(_position.back(), index.childCount(parent)));
    const uint32_t before = stayingBefore(index, parent, position.back(), tags);
    position = afterRemoval(position, edit.back);
    for (size_t i = 0; i < tags.size(); ++i, ++position.back())
        edit.shown.push_back(position);
    if (edit.shown == edit.back)
        return {};
    edit.changes = removal(text(), tags);
    const TextChange added = insertion(text(), parent, before, elements);
    const auto place =
        std::ranges::find_if(edit.changes, [&](const TextChange& removed) { return removed.start >= added.start; });
    edit.changes.insert(place, added);
    return edit;
}

} // namespace zelk::guicommand::documentviewlist
