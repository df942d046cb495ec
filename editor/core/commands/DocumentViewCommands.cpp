#include "DocumentViewCommands.h"

#include <utility>

#include "DocumentFiles.h"
#include "Exceptions.h"
#include "PlayMovie.h"

namespace zelk::guicommand::documentview {

namespace {

void runSave(Session& session, SaveParams& params) {
    runJob<saveDocument>(session.user, "Saving " + params.fileName, params);
}

// What both save commands do. Throws what saveDocument throws, and JobCancelled; the document keeps its state then.
void saveText(Session& session, Document& document, std::string text, const std::string& fileName) {
    SaveParams params;
    params.fileName = fileName;
    params.text = std::move(text);
    params.original = document.original;
    params.keepsBackup = session.keepsBackups;
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
        if (!session.user.askToReplaceChanged(document, session.keepsBackups))
            throw JobCancelled();
        params.expected.reset();
        params.failure = nullptr;
        params.warnings = {};
        runSave(session, params);
    }
    session.writtenFiles.add(fileName, params.written);
    document.fileStamp = document.textStamp = params.written;
    if (fileKind(fileName) == FileKind::swf) { // Nothing else converts.
        document.warnings.compiled(std::move(params.warnings));
        document.warnings.savedAsMovie(params.text, params.keepsOriginal);
    }
    document.isModified = false;
    // The file is written, and the text goes on holding what is not in it.
    if (params.leftOut)
        reportFailure(session, params.leftOut);
}

struct RecoverParams : LoadParams {
    const RecoverySession* copies = nullptr; ///< in
    uint32_t id = 0;                         ///< in, of one of them
};

void recover(RecoverParams& params) { params.copies->load(params.id, params); }

struct PlayParams : CompileParams {
    libswf::SwfVector<uint8_t> movie; ///< out
};

void compile(PlayParams& params) { params.movie = compileDocument(params); }

} // namespace

bool LoadFromFileCmd::Execute() {
    LoadParams params;
    params.fileName = _fileName;
    params.fullForm = _fullForm;
    runJob<loadDocument>(_session.user, "Opening " + _fileName, params);
    _document = std::move(params.document);
    return true;
}

bool RecoverCmd::Execute() {
    RecoverParams params;
    params.copies = &_copies;
    params.id = _kept.id;
    runJob<recover>(_session.user, "Recovering " + _kept.fileName, params);
    _document = std::move(params.document);
    if (!_document.hasFile)
        _document.fileName = _session.names.next(); // Its own name may be that of a new document.
    return true;
}

bool SaveToFileCmd::Execute() {
    saveText(_session, _document, std::exchange(_document.text, {}), _document.fileName);
    return true;
}

bool SaveAsFileCmd::Execute() {
    const std::optional<std::string> fileName = _session.user.chooseFileToSave(proposedName(_document));
    if (!fileName)
        return false;
    if (_session.isOpenElsewhere && _session.isOpenElsewhere(_document, *fileName))
        throw FileSaveException(*fileName, "It is open in another tab.");
    saveText(_session, _document, std::exchange(_document.text, {}), *fileName);
    return SetDocAttributesCmd(_document, *fileName, fileKind(*fileName).value()).Execute();
}

bool SetDocAttributesCmd::Execute() {
    _document.fileName = std::move(_fileName);
    _document.kind = _kind;
    _document.hasFile = true;
    return true;
}

bool SwfPlayCmd::Execute() {
    PlayParams params;
    params.text = std::exchange(_document.text, {});
    params.original = _document.original;
    runJob<compile>(_session.user, "Compiling " + _document.fileName, params);
    _document.warnings.compiled(std::move(params.warnings));
    const size_t folder = _document.fileName.find_last_of("/\\");
    playMovie(_session, params.movie, {"", _document.fileName.substr(folder + 1), 0, 0, _isApart});
    return true;
}

} // namespace zelk::guicommand::documentview
