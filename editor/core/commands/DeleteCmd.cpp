#include "DocumentViewListCommands.h"
#include "TagEdits.h"

namespace zelk::guicommand::documentviewlist {

TagListCmd::Edit DeleteCmd::prepare() {
    const TagIndex& index = text().tags();
    const std::vector<uint32_t> tags = tagsAt(index, _selection);
    Edit edit;
    if (tags.empty())
        return edit;
    for (uint32_t tag : tags) {
        _removed.push_back(loneElement(text(), tag));
        edit.back.push_back(index.path(tag));
    }
    edit.place = edit.back.front();
    edit.changes = removal(text(), tags);
    return edit;
}

} // namespace zelk::guicommand::documentviewlist
