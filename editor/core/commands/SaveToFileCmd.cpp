#include "DocumentViewCommands.h"
#include "SaveText.h"

namespace zelk::guicommand::documentview {

bool SaveToFileCmd::Execute() {
    saveText(_session, _document, _document.fileName);
    return true;
}

} // namespace zelk::guicommand::documentview
