#include "Exceptions.h"
#include "PayloadCommands.h"
#include "SwfException.h"
#include "SwfUtils.h"
#include "TagPayload.h"

namespace zelk::guicommand::documentviewtext {

namespace {

struct ExportParams : ThreadParams {
    std::string_view text; ///< in; the user cannot change it while the job runs
    size_t offset = 0;     ///< in
    Payload payload;       ///< out
    std::string proposal;  ///< out; empty when there is nothing to export
    std::string refusal;   ///< out
};

void readPayload(ExportParams& params) {
    const std::optional<PayloadElements> elements = payloadElementsAt(params.text, params.offset);
    if (!elements) {
        params.refusal = "there is no tag at this place";
        return;
    }
    const TagPayload source(*elements);
    if (!hasPayload(source.tag(), source.context())) {
        params.refusal = libswf::tagName(source.tag().type) + " has no data that could be a file";
        return;
    }
    params.payload = exportPayload(source.tag(), source.context());
    params.proposal = payloadFileName(source.tag(), "tag", params.payload.extension);
}

} // namespace

bool ExportPayloadCmd::Execute() {
    ExportParams params;
    params.text = _view.text();
    params.offset = _offset;
    runJob<readPayload>(_session.user, "Exporting", params);
    if (params.proposal.empty()) {
        _session.user.inform(payloadNote(params.refusal));
        return false;
    }
    const std::optional<std::string> fileName = _session.user.chooseFileToExport(params.proposal);
    if (!fileName)
        return false;
    try {
        libswf::writeFile(*fileName, params.payload.bytes);
    } catch (const libswf::SwfFileException& error) {
        throw FileSaveException(*fileName, error.problem());
    }
    _fileName = *fileName;
    if (!params.payload.note.empty())
        _session.user.inform(payloadNote(params.payload.note));
    return true;
}

} // namespace zelk::guicommand::documentviewtext
