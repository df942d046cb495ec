#include "DocumentViewCommands.h"

namespace zelk::guicommand::documentview {

void SetDocAttributesCmd::swap() {
    std::swap(_document.fileName, _fileName);
    std::swap(_document.kind, _kind);
    std::swap(_document.hasFile, _hasFile);
}

bool SetDocAttributesCmd::Execute() {
    swap();
    return true;
}

bool SetDocAttributesCmd::Unexecute() {
    swap();
    return true;
}

} // namespace zelk::guicommand::documentview
