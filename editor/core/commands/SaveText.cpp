#include "SaveText.h"

#include "DocumentFiles.h"

namespace zelk::guicommand::documentview {

void saveText(Session& session, Document& document, const std::string& fileName) {
    SaveParams params;
    params.fileName = fileName;
    params.text = std::move(document.text);
    document.text.clear();
    params.original = document.original;
    params.keepsBackup = !session.writtenFiles.contains(fileName);
    session.user.runJob("Saving " + fileName, params, [&params] { saveDocument(params); });
    session.writtenFiles.insert(fileName);
    document.warnings = std::move(params.warnings);
    document.isModified = false;
}

} // namespace zelk::guicommand::documentview
