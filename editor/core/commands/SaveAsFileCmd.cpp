#include "DocumentViewCommands.h"
#include "Exceptions.h"
#include "SaveText.h"

namespace zelk::guicommand::documentview {

bool SaveAsFileCmd::Execute() {
    const std::optional<std::string> fileName = _session.user.chooseFileToSave(_document.fileName);
    if (!fileName)
        return false;
    saveText(_session, _document, *fileName);
    return SetDocAttributesCmd(_document, *fileName, fileKind(*fileName).value()).Execute();
}

} // namespace zelk::guicommand::documentview
