#include "DocumentFiles.h"
#include "DocumentViewCommands.h"
#include "PlayMovie.h"

namespace zelk::guicommand::documentview {

bool SwfPlayCmd::Execute() {
    CompileParams params;
    params.text = std::move(_document.text);
    _document.text.clear();
    params.original = _document.original;
    libswf::SwfVector<uint8_t> movie;
    _session.user.runJob("Compiling " + _document.fileName, params,
                         [&] { movie = compileDocument(params, _document.fileName); });
    _document.warnings = std::move(params.warnings);
    playMovie(_session, movie, 0, 0);
    return true;
}

} // namespace zelk::guicommand::documentview
