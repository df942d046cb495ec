#include "DocumentViewListCommands.h"
#include "TagCheck.h"
#include "TagEdits.h"
#include "TagText.h"

namespace zelk::guicommand::documentviewlist {

TagListCmd::Edit EditSingleTagCmd::prepare() {
    const uint32_t tag = text().tags().find(_position);
    if (tag == TagIndex::movie)
        return {};
    const std::string before = loneElement(text(), tag);
    const std::optional<std::string> after = _editor.editTag(before, movieVersion(text()));
    if (!after || *after == before)
        return {};
    return {{replacement(text(), tag, trimmed(*after))}, {_position}, {_position}, _position};
}

} // namespace zelk::guicommand::documentviewlist
