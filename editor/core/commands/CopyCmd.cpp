#include "DocumentViewListCommands.h"
#include "TagClipboard.h"
#include "TagEdits.h"

namespace zelk::guicommand::documentviewlist {

bool CopyCmd::Execute() {
    std::vector<std::string> elements;
    for (uint32_t tag : tagsAt(_text.tags(), _selection))
        elements.push_back(loneElement(_text, tag));
    return !elements.empty() && putOnClipboard(_clipboard, elements);
}

} // namespace zelk::guicommand::documentviewlist
