#include "DocumentViewCommands.h"

#include "DocumentFiles.h"
#include "Exceptions.h"
#include "PlayMovie.h"

namespace zelk::guicommand::documentview {

namespace {

void runSave(Session& session, SaveParams& params) {
    session.user.runJob("Saving " + params.fileName, params, [&params] { saveDocument(params); });
}

// What both save commands do. Gives the text away. Throws what saveDocument throws, and JobCancelled; the document
// keeps its state then.
void saveText(Session& session, Document& document, const std::string& fileName) {
    SaveParams params;
    params.fileName = fileName;
    params.text = std::move(document.text);
    document.text.clear();
    params.original = document.original;
    const bool isOwnFile = document.hasFile && fileName == document.fileName;
    if (isOwnFile)
        params.expected = document.fileStamp;
    if (const auto written = session.writtenFiles.find(fileName))
        params.known.push_back(*written);
    // A text is not converted: the version that it came from lives on in it.
    if (isOwnFile && document.textStamp && fileKind(fileName) != FileKind::swf)
        params.known.push_back(*document.textStamp);
    try {
        runSave(session, params);
    } catch (const FileChangedException&) {
        if (!session.user.askToReplaceChanged(document))
            throw JobCancelled();
        params.expected.reset();
        params.failure = nullptr;
        params.warnings.clear();
        runSave(session, params);
    }
    session.writtenFiles.add(fileName, params.written);
    document.fileStamp = document.textStamp = params.written;
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

bool RecoverCmd::Execute() {
    LoadParams params;
    _session.user.runJob("Recovering " + _kept.fileName, params, [this, &params] { _copies.load(_kept.id, params); });
    _document = std::move(params.document);
    if (!_document.hasFile)
        _document.fileName = _session.names.next(); // Its own name may be that of a new document.
    return true;
}

bool SaveToFileCmd::Execute() {
    saveText(_session, _document, _document.fileName);
    return true;
}

bool SaveAsFileCmd::Execute() {
    const std::optional<std::string> fileName = _session.user.chooseFileToSave(proposedName(_document));
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
