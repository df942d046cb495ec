#include "SwfClipActions.h"

#include "SwfWarnings.h"

namespace libswf {

namespace {

constexpr uint8_t firstWideVersion = 6; // flag words of 32 bits, key codes

uint32_t readFlags(SwfIStream& stream, const char* field) {
    return stream.context.version < firstWideVersion ? stream.readUI16(field) : stream.readUI32(field);
}

void writeFlags(SwfOStream& stream, uint32_t flags) {
    if (stream.context.version < firstWideVersion)
        stream.writeUI16(static_cast<uint16_t>(flags));
    else
        stream.writeUI32(flags);
}

uint32_t writtenFlags(const SwfClipAction& record, const SwfContext& context) {
    return record.eventFlags() & (context.version < firstWideVersion ? 0xFFFF : UINT32_MAX);
}

void warnOfHidden(const SwfContext& context) {
    addWarning(context, SwfWarning::Kind::cut,
               "a clip action has no event that this version knows: no player will find it");
}

} // namespace

const SwfClipAction::Event SwfClipAction::events[eventCount] = {
    {"EventLoad", 0x1, &SwfClipAction::load},
    {"EventEnterFrame", 0x2, &SwfClipAction::enterFrame},
    {"EventUnload", 0x4, &SwfClipAction::unload},
    {"EventMouseMove", 0x8, &SwfClipAction::mouseMove},
    {"EventMouseDown", 0x10, &SwfClipAction::mouseDown},
    {"EventMouseUp", 0x20, &SwfClipAction::mouseUp},
    {"EventKeyDown", 0x40, &SwfClipAction::keyDown},
    {"EventKeyUp", 0x80, &SwfClipAction::keyUp},
    {"EventData", 0x100, &SwfClipAction::data},
    {"EventInitialize", 0x200, &SwfClipAction::initialize},
    {"EventPress", 0x400, &SwfClipAction::press},
    {"EventRelease", 0x800, &SwfClipAction::release},
    {"EventReleaseOutside", 0x1000, &SwfClipAction::releaseOutside},
    {"EventRollOver", 0x2000, &SwfClipAction::rollOver},
    {"EventRollOut", 0x4000, &SwfClipAction::rollOut},
    {"EventDragOver", 0x8000, &SwfClipAction::dragOver},
    {"EventDragOut", 0x10000, &SwfClipAction::dragOut},
    {"EventKeyPress", 0x20000, &SwfClipAction::keyPress},
    {"EventConstruct", 0x40000, &SwfClipAction::construct},
};

uint32_t SwfClipAction::eventFlags() const {
    uint32_t flags = otherEvents;
    for (const Event& event : events)
        flags |= this->*event.field ? event.bit : 0;
    return flags;
}

void SwfClipAction::setEventFlags(uint32_t flags) {
    for (const Event& event : events)
        this->*event.field = (flags & event.bit) != 0;
}

bool SwfClipAction::writesKeyCode(const SwfContext& context) const {
    return keyPress && context.version >= firstWideVersion;
}

SwfClipAction::SwfClipAction(SwfIStream& stream) {
    const uint32_t flags = readFlags(stream, "EventFlags");
    setEventFlags(flags);
    if (stream.context.fullForm)
        otherEvents = flags & ~eventFlags();
    else if (eventFlags() != flags)
        stream.markInexact("a clip action has event bits without a name");
    recordSize = stream.readUI32("ActionRecordSize");
    const uint64_t end = stream.position() + recordSize;
    if (writesKeyCode(stream.context))
        keyCode = stream.readUI8("KeyCode");
    if (stream.position() > end || end > stream.limit())
        stream.markInexact("the size of a clip action is wrong");
    actions.readSized(stream, stream.position() < end ? end - stream.position() : 0);
}

uint32_t SwfClipAction::getSize(SwfContext& context) {
    const uint64_t wide = context.version < firstWideVersion ? 0 : 2;
    const uint64_t total = uint64_t(actions.getSize(context)) + 6 + wide + (writesKeyCode(context) ? 1 : 0);
    if (total > UINT32_MAX)
        throw SwfException(SwfError::doesNotFit, "a clip action of more than 4 GB");
    return size = static_cast<uint32_t>(total);
}

void SwfClipAction::write(SwfOStream& stream) const {
    const bool hasKeyCode = writesKeyCode(stream.context);
    writeFlags(stream, eventFlags());
    stream.writeUI32(actions.byteSize + (hasKeyCode ? 1 : 0));
    if (hasKeyCode)
        stream.writeUI8(keyCode);
    actions.write(stream);
}

void SwfClipActions::read(SwfIStream& stream) {
    const uint64_t start = stream.position();
    uint64_t readAgain = 0;
    stream.context.tagMayLackNul = false; // the texts from here on are those of actions
    const bool fullForm = stream.context.fullForm;
    reserved = stream.readUI16("Reserved");
    if (reserved != 0 && !fullForm)
        stream.markInexact("clip actions with reserved bits");
    const uint32_t all = readFlags(stream, "AllEventFlags");
    while (stream.bodyLeft() != 0) {
        const uint64_t recordStart = stream.position();
        if (readFlags(stream, "ClipActionEndFlag") == 0)
            return keepAllEvents(stream.context, all);
        stream.seek(recordStart);
        const uint64_t sizeEnd = recordStart + (stream.context.version < firstWideVersion ? 2 : 4) + 4;
        const SwfClipAction& record = records.emplace_back(stream);
        const uint64_t next = sizeEnd + record.recordSize;
        if (next > stream.limit())
            continue;
        // The size leads to the next record even where the actions passed it. Bounded, since each byte is then read by
        // more than one record.
        readAgain += stream.position() > next ? stream.position() - next : 0;
        if (readAgain > stream.limit() - start)
            stream.fail("ActionRecordSize", "the clip actions overlap");
        stream.seek(next);
    }
    if (!fullForm)
        stream.markInexact("clip actions without an end");
    lacksEnd = fullForm;
    keepAllEvents(stream.context, all);
}

void SwfClipActions::keepAllEvents(const SwfContext& context, uint32_t all) {
    if (context.fullForm && all != unionOfEvents())
        allEvents = all;
}

uint32_t SwfClipActions::unionOfEvents() const {
    uint32_t all = 0;
    for (const SwfClipAction& record : records)
        all |= record.eventFlags();
    return all;
}

uint32_t SwfClipActions::getSize(SwfContext& context) {
    uint64_t total = context.version < firstWideVersion ? 6 : 10;
    if (lacksEnd)
        total -= context.version < firstWideVersion ? 2 : 4;
    for (SwfClipAction& record : records)
        total += record.getSize(context);
    if (total > UINT32_MAX)
        throw SwfException(SwfError::doesNotFit, "clip actions of more than 4 GB");
    return size = static_cast<uint32_t>(total);
}

void SwfClipActions::write(SwfOStream& stream) const {
    stream.writeUI16(stream.context.fullForm ? reserved : 0);
    writeFlags(stream, allEvents.value_or(unionOfEvents()));
    for (const SwfClipAction& record : records) {
        if (writtenFlags(record, stream.context) != 0)
            record.write(stream);
    }
    for (const SwfClipAction& record : records) {
        if (writtenFlags(record, stream.context) != 0)
            continue;
        warnOfHidden(stream.context);
        record.write(stream);
    }
    if (!lacksEnd)
        writeFlags(stream, 0);
}

void SwfClipActions::measureOrWrite(SwfOStream& stream) {
    if (stream.isCounter())
        stream.count(getSize(stream.context));
    else
        write(stream);
}

} // namespace libswf
