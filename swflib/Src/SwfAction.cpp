#include "SwfAction.h"

#include "SwfWarnings.h"

namespace libswf {

uint32_t SwfAction::getSize(SwfContext&) { return size = 0; }

void SwfAction::write(SwfOStream& stream) { writeHeader(stream, 0); }

static void warnOfCut(const SwfContext& context, uint32_t code, uint32_t length) {
    addWarning(context, SwfWarning::Kind::cut,
               actionName(code) + ": " + std::to_string(length) + " bytes do not fit the 16 bits of its length");
}

void SwfAction::writeHeader(SwfOStream& stream, uint32_t length) const {
    if (type == SwfActionCode::compiled)
        return;
    stream.writeUI8(static_cast<uint8_t>(type));
    if (type <= 0x80)
        return;
    stream.writeUI16(static_cast<uint16_t>(length));
    if (length > UINT16_MAX)
        warnOfCut(stream.context, type, length);
}

uint32_t SwfActions::getSize(SwfContext& context) {
    uint64_t total = 0;
    for (SwfAction* action : *this) {
        total += action->headerSize();
        total += action->getSize(context);
    }
    if (total > UINT32_MAX)
        throw SwfException(SwfError::doesNotFit, "a list of actions of more than 4 GB");
    return byteSize = static_cast<uint32_t>(total);
}

void SwfActions::write(SwfOStream& stream) const {
    for (SwfAction* action : *this)
        action->write(stream);
}

void SwfActions::measureOrWrite(SwfOStream& stream) {
    if (stream.isCounter())
        stream.count(getSize(stream.context));
    else
        write(stream);
}

SwfActionUnknown::SwfActionUnknown(SwfIStream& stream)
    : SwfAction(stream.context.actionCode), data(stream.readPayload(stream.context.actionLength, "data")) {}

uint32_t SwfActionUnknown::getSize(SwfContext&) {
    if (data.size() > UINT32_MAX)
        throw SwfException(SwfError::doesNotFit, "an action of more than 4 GB");
    return size = static_cast<uint32_t>(data.size());
}

void SwfActionUnknown::write(SwfOStream& stream) {
    if (type < 0x80 && !data.empty())
        throw SwfException(SwfError::doesNotFit, actionName(type) + ": an action of a code below 128 holds no data");
    writeHeader(stream, size);
    stream.writeBytes(data.span());
}

// clang-format off
std::string actionName(uint32_t code) {
    switch (code) {
#define SWF_ACTION(code, name) case code: return #name;
#define SWF_PAYLOAD_ACTION(code, name, type) case code: return #name;
#include "SwfActions.def"
    default: return "Action " + std::to_string(code);
    }
}
// clang-format on

} // namespace libswf
