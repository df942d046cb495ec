#include "DocumentViewTextCommands.h"

namespace zelk::guicommand::documentviewtext {

bool SaveAsDocCmd::Execute() {
    _document.text = _view.text();
    return true;
}

} // namespace zelk::guicommand::documentviewtext
