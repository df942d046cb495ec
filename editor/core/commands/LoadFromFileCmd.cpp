#include "DocumentFiles.h"
#include "DocumentViewCommands.h"

namespace zelk::guicommand::documentview {

bool LoadFromFileCmd::Execute() {
    LoadParams params;
    params.fileName = _fileName;
    _session.user.runJob("Opening " + _fileName, params, [&params] { loadDocument(params); });
    _document = std::move(params.document);
    return true;
}

} // namespace zelk::guicommand::documentview
