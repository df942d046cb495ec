// Tags that say more about a font, and the font of the newer text engine.
#pragma once

#include "SwfTag.h"

namespace libswf {

/// DefineFontInfo (13): name and character codes of a DefineFont. The width of the codes follows the codes, so that
/// wide codes below 256 are written as bytes. The codes read are all that the body holds.
class SwfTagDefineFontInfo : public SwfTag {
public:
    uint16_t fontId = 0;
    SwfString fontName; ///< at most 255 bytes (code 2 on write); NULs at its end are dropped on reading
    bool smallText = false, shiftJis = false, ansi = false, italic = false, bold = false;
    bool wideCodes = false; ///< as read; recomputed by prepare()
    SwfVector<uint16_t> codes;

    SwfTagDefineFontInfo() : SwfTag(13) {}
    explicit SwfTagDefineFontInfo(SwfIStream& stream);

    void prepare() override;

protected:
    void writeBody(SwfOStream& stream) override;
};

/// DefineFontInfo2 (62). Codes are always wide; the ANSI and Shift-JIS flags are written as 0, their loss is warned of.
class SwfTagDefineFontInfo2 : public SwfTag {
public:
    uint16_t fontId = 0;
    SwfString fontName; ///< as in DefineFontInfo
    bool smallText = false, italic = false, bold = false;
    uint8_t languageCode = 0;
    SwfVector<uint16_t> codes;

    SwfTagDefineFontInfo2() : SwfTag(62) {}
    explicit SwfTagDefineFontInfo2(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// DefineFontName (88): name and copyright of a font.
class SwfTagDefineFontName : public SwfTag {
public:
    uint16_t fontId = 0;
    SwfString name;
    SwfString copyright;

    SwfTagDefineFontName() : SwfTag(88) {}
    explicit SwfTagDefineFontName(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// Two half-precision floats as raw bits.
struct SwfZoneData {
    uint16_t alignmentCoordinate = 0;
    uint16_t range = 0;
};

/// The alignment zones of one glyph. ZoneMaskX is bit 6 and ZoneMaskY bit 7 of the mask here, where the published
/// format has bits 0 and 1: masks from authoring tools are found in the reserved bits.
class SwfZoneRecord {
public:
    SwfVector<SwfZoneData> zones; ///< at most 255 (code 2 on write)
    uint8_t mask = 0;

    static constexpr uint8_t maskX = 0x40, maskY = 0x80, reservedBits = 0x3F;
};

/// DefineFontAlignZones (73). Reading takes one record per glyph of the font, which must stand earlier in the movie as
/// DefineFont, DefineFont2 or DefineFont3 (code 3 otherwise). Bits 0-5 of the flags are written back but have no place
/// in XML; with keepRaw a tag that has them set is kept as bytes.
class SwfTagDefineFontAlignZones : public SwfTag {
public:
    uint16_t fontId = 0;
    uint8_t flags = 0; ///< bits 6-7 CSMTableHint
    SwfVector<SwfZoneRecord> records;

    static constexpr uint8_t reservedBits = 0x3F;
    uint8_t csmTableHint() const { return flags >> 6; }

    SwfTagDefineFontAlignZones() : SwfTag(73) {}
    explicit SwfTagDefineFontAlignZones(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// DefineFont4 (91): an OpenType font with CFF outlines.
class SwfTagDefineFont4 : public SwfDefinitionTag {
public:
    bool bold = false, italic = false;
    bool hasFontData = false;
    SwfString fontName;
    SwfBytes fontData; ///< in the file with hasFontData

    SwfTagDefineFont4() : SwfDefinitionTag(91) {}
    explicit SwfTagDefineFont4(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
