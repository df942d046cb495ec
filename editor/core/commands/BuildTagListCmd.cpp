#include "DocumentViewListCommands.h"

namespace zelk::guicommand::documentviewlist {

bool BuildTagListCmd::Execute() {
    if (_text.isCurrent())
        return true;
    const std::string_view text = _text.text(); // which the user cannot change meanwhile
    std::shared_ptr<const TagIndex> tags;
    ThreadParams params;
    _session.user.runJob("Listing tags", params, [&tags, text] { tags = std::make_shared<TagIndex>(text); });
    _text.setTags(std::move(tags));
    return true;
}

} // namespace zelk::guicommand::documentviewlist
