// CLIPACTIONS: the event handlers of a placed object (PlaceObject2 and PlaceObject3).
#pragma once

#include <optional>
#include <vector>

#include "SwfAction.h"

namespace libswf {

/// CLIPACTIONRECORD: the actions that run on some events. Event bits without a name are kept in the full form; the
/// classic one drops them, and under keepRaw they make the tag inexact.
class SwfClipAction final : public SwfStruct {
public:
    bool load = false, enterFrame = false, unload = false, mouseMove = false, mouseDown = false, mouseUp = false;
    bool keyDown = false, keyUp = false, data = false, initialize = false, press = false, release = false;
    bool releaseOutside = false, rollOver = false, rollOut = false, dragOver = false, dragOut = false;
    bool keyPress = false, construct = false;
    uint32_t otherEvents = 0; ///< full form: the bits without a name
    uint8_t keyCode = 0;      ///< of keyPress; in the file from version 6 on
    SwfActions actions;
    uint32_t recordSize = 0; ///< ActionRecordSize as read; worked out anew on write

    SwfClipAction() = default;
    explicit SwfClipAction(SwfIStream& stream);

    /// The flag word; in movies below version 6 only the low 16 bits are written.
    uint32_t eventFlags() const;
    void setEventFlags(uint32_t flags);

    uint32_t getSize(SwfContext& context);
    void write(SwfOStream& stream) const;

    /// One event: its name in XML, its bit and the field that holds it.
    struct Event {
        const char* name;
        uint32_t bit;
        bool SwfClipAction::*field;
    };
    static constexpr size_t eventCount = 19;
    static const Event events[eventCount]; ///< in the order of the bits

private:
    bool writesKeyCode(const SwfContext& context) const;
};

/// The records in order. In the classic form Reserved and AllEventFlags are not kept: they are written as 0 and as the
/// union of all records' flags. The list ends at a flag word of 0 or at the end of the tag's body.
/// A record whose flag word comes out as 0 would end the list: such records are written after all others, with a
/// warning.
class SwfClipActions : public SwfStruct {
public:
    std::vector<SwfClipAction> records;
    // Full form.
    uint16_t reserved = 0;
    std::optional<uint32_t> allEvents; ///< AllEventFlags, where it is not the union
    bool lacksEnd = false;             ///< no flag word of 0 stands behind the last record

    SwfClipActions() = default;
    explicit SwfClipActions(SwfIStream& stream) { read(stream); }

    void read(SwfIStream& stream);
    /// The union of the records' events.
    uint32_t unionOfEvents() const;
    uint32_t getSize(SwfContext& context);
    /// With the sizes that getSize found.
    void write(SwfOStream& stream) const;
    /// For the writeBody of a tag: on a counter adds the measured size, else writes.
    void measureOrWrite(SwfOStream& stream);

private:
    void keepAllEvents(const SwfContext& context, uint32_t all);
};

} // namespace libswf
