#include "SwfAction.h"

#include "SwfWarnings.h"

namespace libswf {

uint32_t SwfAction::getSize(SwfContext& context) {
    SwfOStream counter = SwfOStream::counter(context);
    measure(counter);
    return size;
}

void SwfAction::measure(SwfOStream&) { size = 0; }

void SwfAction::write(SwfOStream& stream) { writeHeader(stream, 0); }

void SwfAction::warnOfCut(const SwfContext& context, uint32_t value, const char* what, const char* field) const {
    addWarning(context, SwfWarning::Kind::cut,
               actionName(type) + ": " + std::to_string(value) + " " + what + " do not fit the 16 bits of " + field);
}

void SwfActions::measure(SwfOStream& counter) {
    const uint64_t start = counter.written();
    for (SwfAction* action : *this) {
        counter.count(action->headerSize(counter.context));
        action->measure(counter);
    }
    const uint64_t total = counter.written() - start;
    if (total > UINT32_MAX)
        throw SwfException(SwfError::doesNotFit, "a list of actions of more than 4 GB");
    byteSize = static_cast<uint32_t>(total);
}

uint32_t SwfActions::getSize(SwfContext& context) {
    SwfOStream counter = SwfOStream::counter(context);
    measure(counter);
    return byteSize;
}

void SwfActions::write(SwfOStream& stream) const {
    for (SwfAction* action : *this)
        action->write(stream);
}

void SwfActions::measureOrWrite(SwfOStream& stream) {
    if (stream.isCounter())
        measure(stream);
    else
        write(stream);
}

SwfActionUnknown::SwfActionUnknown(SwfIStream& stream)
    : SwfAction(stream.context.actionCode), data(stream.readPayload(stream.context.actionLength, "data")) {}

// A payload of bytes.
static uint32_t counted(SwfOStream& counter, const SwfBytes& bytes) {
    if (bytes.size() > UINT32_MAX)
        throw SwfException(SwfError::doesNotFit, "an action of more than 4 GB");
    counter.count(bytes.size());
    return static_cast<uint32_t>(bytes.size());
}

void SwfActionUnknown::measure(SwfOStream& counter) { size = counted(counter, data); }

void SwfActionCompiled::measure(SwfOStream& counter) { size = counted(counter, records); }

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
