#include "DocumentViewCommands.h"

#include "DocumentFiles.h"
#include "Exceptions.h"
#include "PlayMovie.h"

namespace zelk::guicommand::documentview {

namespace {

// What both save commands do. Gives the text away. Throws what saveDocument throws, and JobCancelled; the document
// keeps its state then.
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
    // The file is written, and the text goes on holding what is not in it.
    if (params.leftOut)
        reportFailure(session, params.leftOut);
}

} // namespace

bool LoadFromFileCmd::Execute() {
    LoadParams params;
    params.fileName = _fileName;
    _session.user.runJob("Opening " + _fileName, params, [&params] { loadDocument(params); });
    _document = std::move(params.document);
    return true;
}

bool SaveToFileCmd::Execute() {
    saveText(_session, _document, _document.fileName);
    return true;
}

bool SaveAsFileCmd::Execute() {
    const std::optional<std::string> fileName = _session.user.chooseFileToSave(_document.fileName);
    if (!fileName)
        return false;
    saveText(_session, _document, *fileName);
    return SetDocAttributesCmd(_document, *fileName, fileKind(*fileName).value()).Execute();
}

bool SetDocAttributesCmd::Execute() {
    _document.fileName = std::move(_fileName);
    _document.kind = _kind;
    _document.hasFile = true;
    return true;
}

bool SwfPlayCmd::Execute() {
    CompileParams params;
    params.text = std::move(_document.text);
    _document.text.clear();
    params.original = _document.original;
    libswf::SwfVector<uint8_t> movie;
    _session.user.runJob("Compiling " + _document.fileName, params,
                         [&] { movie = compileDocument(params); });
    _document.warnings = std::move(params.warnings);
    playMovie(_session, movie, 0, 0);
    return true;
}

} // namespace zelk::guicommand::documentview
