// Buttons: what they show, and what they run.
#pragma once

#include <vector>

#include "SwfAction.h"
#include "SwfFilters.h"
#include "SwfTag.h"

namespace libswf {

/// BUTTONRECORD: a character that shows in some states of a button. Bits 6 and 7 of its flags byte are reserved; the
/// classic form does not keep them: where they are set, the tag is marked inexact. In DefineButton the two last flags
/// are kept although the fields that they announce are not there.
class SwfButtonRecord final : public SwfStruct {
public:
    bool stateUp = false, stateOver = false, stateDown = false;
    bool hitTest = false;       ///< part of the area that the mouse hits
    bool hasFilterList = false; ///< DefineButton2
    bool hasBlendMode = false;  ///< DefineButton2
    uint8_t reserved = 0;       ///< full form: 0 to 3
    uint16_t characterId = 0;
    uint16_t depth = 0;
    SwfMatrix matrix;
    SwfColorTransform colorTransform; ///< DefineButton2, with alpha
    SwfFilterList filters;
    uint8_t blendMode = 0;

    SwfButtonRecord() = default;
    /// After the flags byte, which also ends the list.
    SwfButtonRecord(SwfIStream& stream, uint8_t flags);

    uint8_t flags() const;
    /// Throws SwfException code 2 when no flag is set: such a record would read as the end of the list.
    void write(SwfOStream& stream) const;
};

/// The records of a button, closed by a byte of 0.
class SwfButtonRecords : public SwfStruct {
public:
    std::vector<SwfButtonRecord> records;

    void read(SwfIStream& stream);
    uint32_t getSize(SwfContext& context);
    void write(SwfOStream& stream) const;
};

/// BUTTONCONDACTION: actions and when they run.
class SwfButtonAction final : public SwfStruct {
public:
    enum Condition : uint16_t {
        rollOver = 0x0001,
        rollOut = 0x0002,
        press = 0x0004,
        release = 0x0008,
        pushDragOut = 0x0010,
        pushDragOver = 0x0020,
        pushReleaseOutside = 0x0040,
        menuDragOver = 0x0080,
        menuDragOut = 0x0100
    };
    static constexpr uint8_t maxKeyCode = 127;

    uint16_t conditions = 0;
    SwfActions actions;

    uint8_t keyCode() const { return static_cast<uint8_t>(conditions >> 9); }
    void setKeyCode(uint8_t code) { conditions = static_cast<uint16_t>((conditions & 0x1FF) | code << 9); }
};

/// DefineButton (7). Its actions run when the button is released; an empty list leaves no byte.
class SwfTagDefineButton : public SwfTag {
public:
    uint16_t buttonId = 0;
    SwfButtonRecords records;
    SwfActions actions;

    SwfTagDefineButton() : SwfTag(7) {}
    explicit SwfTagDefineButton(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// DefineButton2 (34). The offset to the condition actions and the sizes of these are worked out on write; both are cut
/// to 16 bits before 2 is added for their own field, with a warning. The last size is 0.
/// A convolution filter makes the measured size larger than what is written (see SwfConvolutionFilter); the offset
/// counts what is written.
class SwfTagDefineButton2 : public SwfTag {
public:
    uint16_t buttonId = 0;
    bool trackAsMenu = false;
    /// Full form: the other bits of the byte, 0 to 127. The classic form does not keep them: the tag is marked inexact.
    uint8_t reserved = 0;
    SwfButtonRecords records;
    std::vector<SwfButtonAction> conditionActions;

    SwfTagDefineButton2() : SwfTag(34) {}
    explicit SwfTagDefineButton2(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;

private:
    void readConditionActions(SwfIStream& stream);
    void writeConditionActions(SwfOStream& stream);
};

} // namespace libswf
