#include "Exceptions.h"
#include "PayloadCommands.h"
#include "SingleTag.h"
#include "SwfException.h"
#include "SwfUtils.h"
#include "TagPayload.h"

namespace zelk::guicommand::documentviewtext {

namespace {

struct ImportTarget : ThreadParams {
    std::optional<PayloadElements> elements;
    std::optional<TagPayload> payload;
    std::vector<std::string> kinds; ///< of file that it takes

    // [worker thread]
    void find(std::string_view text, size_t offset) {
        elements = payloadElementsAt(text, offset);
        if (!elements)
            return;
        payload.emplace(*elements);
        kinds = importKinds(payload->tag());
    }
};

struct ImportParams : ThreadParams {
    ImportedPayload result;
    std::string element;

    // [worker thread]
    void read(const ImportTarget& target, const std::string& fileName) {
        try {
            result = importPayload(target.payload->tag(), target.payload->context(), libswf::readFile(fileName));
        } catch (const libswf::SwfFileException& error) {
            throw FileLoadException(fileName, error.problem());
        } catch (const libswf::SwfException& error) {
            throw FileLoadException(fileName, error.what());
        }
        if (result.tag != nullptr)
            element = tagElement(result.tag, target.elements->version);
    }
};

} // namespace

bool ImportPayloadCmd::Execute() {
    ImportTarget target;
    _session.user.runJob("Importing", target, [&target, text = _view.text(), this] { target.find(text, _offset); });
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
    _session.user.runJob("Importing", params, [&] { params.read(target, *fileName); });
    if (!params.result.note.empty())
        _session.user.inform(payloadNote(params.result.note));
    if (params.result.tag == nullptr)
        return false;
    const size_t start = target.elements->start();
    _view.replace(start, start + target.elements->element.size(), params.element);
    return true;
}

} // namespace zelk::guicommand::documentviewtext
