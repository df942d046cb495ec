#include "DocumentViewTextCommands.h"

namespace zelk::guicommand::documentviewtext {

bool LoadFromDocCmd::Execute() {
    _view.setText(std::move(_document.text));
    _document.text = {};
    _document.isModified = false;
    return true;
}

} // namespace zelk::guicommand::documentviewtext
