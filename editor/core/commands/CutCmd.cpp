#include "DocumentViewListCommands.h"
#include "TagClipboard.h"

namespace zelk::guicommand::documentviewlist {

void CutCmd::finish() { putOnClipboard(_clipboard, removed()); }

} // namespace zelk::guicommand::documentviewlist
