// Static text: glyphs of a font placed one by one.
#pragma once

#include <optional>

#include "SwfTag.h"

namespace libswf {

/// One glyph of a text record: its place in the font and the way to the next glyph in twips.
struct SwfGlyphEntry {
    uint32_t index = 0;
    int32_t advance = 0;
};

using SwfGlyphEntries = SwfVector<SwfGlyphEntry>;

/// Glyphs that share font, colour and position. Bit 7 of the flags is the record's type: records of type 0, found in
/// very old movies only, are read as records of type 1. The classic form writes a 1 whatever it is here.
class SwfTextRecord : public SwfStruct {
public:
    static constexpr uint8_t typeBit = 0x80, fontBit = 0x08, colorBit = 0x04, yOffsetBit = 0x02, xOffsetBit = 0x01;
    static constexpr uint8_t reservedBits = 0x70, reservedShift = 4;

    uint8_t flags = 0;
    uint16_t fontId = 0;              ///< in the file with fontBit
    SwfColor color;                   ///< with colorBit
    int16_t xOffset = 0, yOffset = 0; ///< twips, with their bits
    uint16_t height = 0;              ///< twips, with fontBit
    SwfGlyphEntries glyphs;           ///< at most 255: more throw SwfException code 2 on write

    SwfTextRecord() = default;
    explicit SwfTextRecord(SwfIStream& stream);
    void write(SwfOStream& stream) const;
};

using SwfTextRecords = SwfVector<SwfTextRecord>;

/// DefineText (11). The widths of glyph indices and advances are recomputed on every write, but where the full form
/// says more; an advance takes the bits of its absolute value and one for the sign. There may be 65,536 entries and 8
/// more for each byte of the body (code 3 on reading), so that entries of no width cannot grow without bound; no text
/// that is written comes near.
class SwfTagDefineText : public SwfDefinitionTag {
public:
    SwfRect bounds;
    SwfMatrix matrix;
    SwfTextRecords records;
    /// Full form: the widths, where they are other than those worked out; they are written at least as wide.
    std::optional<uint8_t> glyphBits, advanceBits;

    SwfTagDefineText() : SwfTagDefineText(11) {}
    explicit SwfTagDefineText(SwfIStream& stream) : SwfTagDefineText() { read(stream); }

    /// Whether its colours are RGBA.
    bool hasAlpha() const { return type == SwfTagCode::DefineText2; }

protected:
    explicit SwfTagDefineText(uint16_t code) : SwfDefinitionTag(code) {}
    void read(SwfIStream& stream);
    void writeBody(SwfOStream& stream) override;

private:
    void keepWidths(const SwfContext& context);
};

/// DefineText2 (33): the same with RGBA colours.
class SwfTagDefineText2 : public SwfTagDefineText {
public:
    SwfTagDefineText2() : SwfTagDefineText(33) {}
    explicit SwfTagDefineText2(SwfIStream& stream) : SwfTagDefineText2() { read(stream); }
};

/// CSMTextSettings (74): how a text is smoothed. Reserved bits are written back but have a place in XML only in the
/// full form; in the classic one with keepRaw a tag that has them set is kept as bytes.
class SwfTagCSMTextSettings : public SwfTag {
public:
    uint16_t textId = 0;
    uint8_t flags = 0; ///< bits 6-7 UseFlashType, bits 3-5 GridFit, bits 0-2 reserved
    float thickness = 0, sharpness = 0;
    uint8_t reserved = 0;

    static constexpr uint8_t reservedBits = 0x07;
    uint8_t useFlashType() const { return flags >> 6; }
    uint8_t gridFit() const { return flags >> 3 & 7; }

    SwfTagCSMTextSettings() : SwfTag(74) {}
    explicit SwfTagCSMTextSettings(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
