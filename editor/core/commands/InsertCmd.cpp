#include "DocumentViewListCommands.h"
#include "TagEdits.h"

namespace zelk::guicommand::documentviewlist {

TagListCmd::Edit InsertCmd::prepare() {
    if (_elements.empty() || _position.empty())
        return {};
    const TagIndex& index = text().tags();
    TagPath position(_position.begin(), _position.end() - 1);
    const uint32_t first = std::min(_position.back(), index.childCount(index.find(position)));
    Edit edit;
    edit.changes = {insertionAt(text(), _position, _elements)};
    position.push_back(first);
    edit.place = position;
    for (; position.back() < first + _elements.size(); ++position.back())
        edit.shown.push_back(position);
    _elements = {}; // The text's history has them from now on.
    return edit;
}

} // namespace zelk::guicommand::documentviewlist
