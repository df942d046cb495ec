#include "Exceptions.h"
#include "PayloadCommands.h"
#include "SingleTag.h"
#include "SwfException.h"
#include "SwfUtils.h"
#include "TagPayload.h"

namespace zelk::guicommand::documentviewtext {

namespace {

struct TargetParams : ThreadParams {
    std::string_view text;                   ///< in; the user cannot change it while the job runs
    size_t offset = 0;                       ///< in
    std::optional<PayloadElements> elements; ///< out
    std::optional<TagPayload> payload;       ///< out
    std::vector<std::string> kinds;          ///< out, of file that it takes
};

void findTarget(TargetParams& params) {
    params.elements = payloadElementsAt(params.text, params.offset);
    if (!params.elements)
        return;
    params.payload.emplace(*params.elements);
    params.kinds = importKinds(params.payload->tag());
}

struct ImportParams : ThreadParams {
    const TargetParams* target = nullptr; ///< in
    std::string fileName;                 ///< in
    ImportedPayload result;               ///< out
    std::string element;                  ///< out
};

void readPayload(ImportParams& params) {
    const TagPayload& payload = *params.target->payload;
    try {
        params.result = importPayload(payload.tag(), payload.context(), libswf::readFile(params.fileName));
    } catch (const libswf::SwfFileException& error) {
        throw FileLoadException(params.fileName, error.problem());
    } catch (const libswf::SwfException& error) {
        throw FileLoadException(params.fileName, error.what());
    }
    if (params.result.tag != nullptr)
        params.element = tagElement(params.result.tag, params.target->elements->layout);
}

} // namespace

bool ImportPayloadCmd::Execute() {
    TargetParams target;
    target.text = _view.text();
    target.offset = _offset;
    runJob<findTarget>(_session.user, "Importing", target);
    if (target.kinds.empty()) {
        _session.user.inform(payloadNote(target.payload ? "the data of " + libswf::tagName(target.payload->tag().type) +
                                                              " cannot be replaced by a file"
                                                        : "there is no tag at this place"));
        return false;
    }
    const std::optional<std::string> fileName = _session.user.chooseFileToImport(target.kinds);
    if (!fileName)
        return false;
    ImportParams params;
    params.target = &target;
    params.fileName = *fileName;
    runJob<readPayload>(_session.user, "Importing", params);
    if (!params.result.note.empty())
        _session.user.inform(payloadNote(params.result.note));
    if (params.result.tag == nullptr)
        return false;
    const size_t start = target.elements->start();
    _view.replace(start, start + target.elements->element.size(), params.element);
    return true;
}

} // namespace zelk::guicommand::documentviewtext
