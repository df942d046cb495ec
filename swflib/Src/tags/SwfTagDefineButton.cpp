#include "SwfTagDefineButton.h"

#include "SwfTagCodes.h"
#include "SwfWarnings.h"

namespace libswf {

namespace {

constexpr uint32_t sizeField = 2; // bytes of an offset or a size, which count themselves

bool isButton2(const SwfContext& context) { return context.tagType == SwfTagCode::DefineButton2; }

// An offset or a size as the file has it: of what follows its field, cut to 16 bits, and of the field itself.
uint16_t withSizeField(uint64_t bytes) { return static_cast<uint16_t>((bytes & 0xFFFF) + sizeField); }

uint16_t withSizeField(uint64_t bytes, const SwfOStream& stream, const char* field) {
    if (bytes + sizeField > 0xFFFF && !stream.isCounter())
        addWarning(stream.context, SwfWarning::Kind::cut,
                   std::string(field) + " is over 65,535 and loses its high bits");
    return withSizeField(bytes);
}

// Lets the tag's body end earlier for as long as it lives.
class EarlierEnd {
public:
    EarlierEnd(SwfIStream& stream, uint64_t end) : _stream(stream), _outer(stream.bodyEnd()) { stream.setBodyEnd(end); }
    ~EarlierEnd() { _stream.setBodyEnd(_outer); }
    EarlierEnd(const EarlierEnd&) = delete;
    EarlierEnd& operator=(const EarlierEnd&) = delete;

private:
    SwfIStream& _stream;
    uint64_t _outer;
};

} // namespace

SwfButtonRecord::SwfButtonRecord(SwfIStream& stream, uint8_t flags) {
    stateUp = (flags & 0x01) != 0;
    stateOver = (flags & 0x02) != 0;
    stateDown = (flags & 0x04) != 0;
    hitTest = (flags & 0x08) != 0;
    hasFilterList = (flags & 0x10) != 0;
    hasBlendMode = (flags & 0x20) != 0;
    if (stream.context.fullForm)
        reserved = flags >> 6;
    else if ((flags & 0xC0) != 0)
        stream.markInexact("a button record has reserved flags");
    characterId = stream.readUI16("CharacterId");
    depth = stream.readUI16("PlaceDepth");
    matrix.read(stream);
    if (!isButton2(stream.context))
        return;
    colorTransform.read(stream);
    if (hasFilterList)
        filters.read(stream);
    if (hasBlendMode)
        blendMode = stream.readUI8("BlendMode");
}

uint8_t SwfButtonRecord::flags() const {
    return static_cast<uint8_t>((stateUp ? 0x01 : 0) | (stateOver ? 0x02 : 0) | (stateDown ? 0x04 : 0) |
                                (hitTest ? 0x08 : 0) | (hasFilterList ? 0x10 : 0) | (hasBlendMode ? 0x20 : 0) |
                                reserved << 6);
}

void SwfButtonRecord::write(SwfOStream& stream) const {
    if (flags() == 0)
        throw SwfException(SwfError::doesNotFit, "a button record without any state, which would end the list");
    stream.writeUI8(flags());
    stream.writeUI16(characterId);
    stream.writeUI16(depth);
    matrix.write(stream);
    if (!isButton2(stream.context))
        return;
    colorTransform.write(stream);
    if (hasFilterList)
        filters.write(stream);
    if (hasBlendMode)
        stream.writeUI8(blendMode);
}

void SwfButtonRecords::read(SwfIStream& stream) {
    for (;;) {
        if (stream.bodyLeft() == 0)
            stream.fail("ButtonRecord", "the tag ends inside its list of records");
        const uint8_t flags = stream.readUI8("ButtonRecord flags");
        if (flags == 0)
            return;
        records.emplace_back(stream, flags);
    }
}

uint32_t SwfButtonRecords::getSize(SwfContext& context) {
    return size = measure(context, [&](SwfOStream& stream) { write(stream); });
}

void SwfButtonRecords::write(SwfOStream& stream) const {
    for (const SwfButtonRecord& record : records)
        record.write(stream);
    stream.writeUI8(0);
}

SwfTagDefineButton::SwfTagDefineButton(SwfIStream& stream) : SwfTagDefineButton() {
    stream.context.alpha = false;
    buttonId = stream.readUI16("ButtonId");
    records.read(stream);
    actions.readUntilEnd(stream);
}

void SwfTagDefineButton::writeBody(SwfOStream& stream) {
    stream.context.alpha = false;
    stream.writeUI16(buttonId);
    records.write(stream);
    actions.measureOrWrite(stream);
}

SwfTagDefineButton2::SwfTagDefineButton2(SwfIStream& stream) : SwfTagDefineButton2() {
    stream.context.alpha = true;
    buttonId = stream.readUI16("ButtonId");
    const uint8_t flags = stream.readUI8("TrackAsMenu");
    trackAsMenu = (flags & 1) != 0;
    if (stream.context.fullForm)
        reserved = flags >> 1;
    else if ((flags & 0xFE) != 0)
        stream.markInexact("reserved bits are set beside TrackAsMenu");
    const uint64_t offsetStart = stream.position();
    const uint16_t actionOffset = stream.readUI16("ActionOffset");
    records.read(stream);
    uint16_t writtenOffset = 0;
    if (actionOffset != 0) {
        const uint64_t actionsStart = offsetStart + actionOffset;
        const uint16_t nextOffset = withSizeField(stream.position() - offsetStart - sizeField);
        if (actionsStart > stream.position() && actionsStart <= stream.limit())
            stream.seek(actionsStart);
        readConditionActions(stream);
        if (!conditionActions.empty())
            writtenOffset = nextOffset;
    }
    if (actionOffset != writtenOffset)
        stream.markInexact("ActionOffset does not point behind the records");
}

void SwfTagDefineButton2::readConditionActions(SwfIStream& stream) {
    constexpr uint32_t fixedFields = 4;
    bool last = false;
    while (!last && stream.bodyLeft() != 0) {
        const uint64_t start = stream.position();
        const uint16_t actionSize = stream.readUI16("CondActionSize");
        last = actionSize == 0;
        const uint64_t end = last ? stream.limit() : start + actionSize;
        if (!last && (actionSize < fixedFields || end > stream.limit()))
            stream.fail("CondActionSize", "the next condition action does not start inside the tag");
        SwfButtonAction& action = conditionActions.emplace_back();
        action.conditions = stream.readUI16("Conditions");
        const EarlierEnd bounds(stream, end);
        action.actions.readUntilEnd(stream);
        if (last)
            return;
        if (stream.position() != end)
            stream.markInexact("bytes are left over in a condition action");
        stream.seek(end);
    }
    if (!last)
        stream.markInexact("the last CondActionSize is not 0");
}

void SwfTagDefineButton2::writeBody(SwfOStream& stream) {
    stream.context.alpha = true;
    stream.writeUI16(buttonId);
    stream.writeUI8(static_cast<uint8_t>((trackAsMenu ? 1 : 0) | reserved << 1));
    const uint64_t offsetStart = stream.written();
    stream.writeUI16(0);
    records.write(stream);
    if (conditionActions.empty())
        return;
    const uint64_t recordBytes = stream.written() - offsetStart - sizeField;
    const uint16_t actionOffset = withSizeField(recordBytes, stream, "ActionOffset");
    if (!stream.isCounter()) {
        stream[offsetStart] = static_cast<uint8_t>(actionOffset);
        stream[offsetStart + 1] = static_cast<uint8_t>(actionOffset >> 8);
    }
    writeConditionActions(stream);
}

void SwfTagDefineButton2::writeConditionActions(SwfOStream& stream) {
    constexpr uint32_t conditionsField = 2;
    for (SwfButtonAction& action : conditionActions) {
        const bool last = &action == &conditionActions.back();
        const uint64_t recordBytes = uint64_t(conditionsField) + action.actions.byteSize;
        stream.writeUI16(last ? uint16_t(0) : withSizeField(recordBytes, stream, "CondActionSize"));
        stream.writeUI16(action.conditions);
        action.actions.measureOrWrite(stream);
    }
}

} // namespace libswf
