#include "DocumentViewListCommands.h"
#include "TagClipboard.h"

namespace zelk::guicommand::documentviewlist {

TagListCmd::Edit PasteCmd::prepare() {
    _elements = tagsOnClipboard(_clipboard);
    return InsertCmd::prepare();
}

} // namespace zelk::guicommand::documentviewlist
