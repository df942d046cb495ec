// Tags that say more about a font, and the font of the newer text engine.
#pragma once

#include "SwfTag.h"

namespace libswf {

/// DefineFontInfo (13): name and character codes of a DefineFont. The width of the codes follows the codes, so that
/// wide codes below 256 are written as bytes; in the full form they stay wide. The codes read are all that the body
/// holds.
class SwfTagDefineFontInfo : public SwfTag {
public:
    uint16_t fontId = 0;
    SwfString fontName;   ///< at most 255 bytes (code 2 on write)
    uint8_t nameNuls = 0; ///< full form: NULs at its end, which the classic form drops
    bool smallText = false, shiftJis = false, ansi = false, italic = false, bold = false;
    bool wideCodes = false;  ///< as read; recomputed by prepare()
    bool keepsWidth = false; ///< full form: wideCodes stays as it is, as long as the codes fit
    uint8_t reserved = 0;    ///< full form: 0 to 3
    SwfVector<uint16_t> codes;

    SwfTagDefineFontInfo() : SwfTag(13) {}
    explicit SwfTagDefineFontInfo(SwfIStream& stream);

    void prepare() override;

protected:
    void writeBody(SwfOStream& stream) override;
};

/// DefineFontInfo2 (62). Codes are always wide. The full form keeps the ANSI and Shift-JIS flags; the classic one
/// writes them as 0 and warns of the loss.
class SwfTagDefineFontInfo2 : public SwfTag {
public:
    uint16_t fontId = 0;
    SwfString fontName;   ///< as in DefineFontInfo
    uint8_t nameNuls = 0; ///< the same
    bool smallText = false, italic = false, bold = false;
    bool ansi = false, shiftJis = false; ///< full form
    uint8_t reserved = 0;                ///< full form: 0 to 3
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

/// The alignment zones of one glyph. In the full form ZoneMaskX is bit 0 of the mask and ZoneMaskY bit 1. In the
/// classic form they are the bits 6 and 7, on purpose: masks from authoring tools are found in the reserved bits there.
class SwfZoneRecord {
public:
    SwfVector<SwfZoneData> zones; ///< at most 255 (code 2 on write)
    uint8_t mask = 0;

    struct Layout {
        uint8_t maskX, maskY, reservedShift; ///< the other six bits follow each other
    };
    static constexpr Layout classic{0x40, 0x80, 0}, full{0x01, 0x02, 2};
};

/// DefineFontAlignZones (73): a record per glyph of the font. In the full form reading takes all records that the body
/// holds. In the classic form it takes as many as the font has glyphs, which must stand earlier in the movie as
/// DefineFont, DefineFont2 or DefineFont3 (code 3 otherwise); bits 0-5 of the flags are written back but have no place
/// in XML, and with keepRaw a tag that has them set is kept as bytes.
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
    uint8_t reserved = 0; ///< full form: 0 to 31
    bool hasFontData = false;
    SwfString fontName;
    SwfBytes fontData; ///< in the file with hasFontData

    SwfTagDefineFont4() : SwfDefinitionTag(91) {}
    explicit SwfTagDefineFont4(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
