#include "SwfTagDefineFontInfo.h"

#include "SwfFontParts.h"
#include "SwfTagDefineFont.h"
#include "SwfTags.h"
#include "SwfWarnings.h"

namespace libswf {

namespace {

// Flags of DefineFontInfo and DefineFontInfo2.
enum InfoFlag : uint8_t {
    wideBit = 0x01,
    boldBit = 0x02,
    italicBit = 0x04,
    ansiBit = 0x08,
    shiftJisBit = 0x10,
    smallBit = 0x20
};
constexpr uint8_t infoReserved = 0xC0, infoReservedShift = 6;

// Flags of DefineFont4.
constexpr uint8_t font4Bold = 0x01, font4Italic = 0x02, font4Data = 0x04, font4ReservedShift = 3;

uint32_t glyphCountOf(SwfIStream& stream, uint16_t fontId) {
    const SwfTags* tags = stream.context.tags;
    const auto* font = tags == nullptr ? nullptr : dynamic_cast<const SwfGlyphFont*>(tags->definition(fontId));
    if (font == nullptr)
        stream.fail("FontId", "no font of this id with glyphs of its own stands before the tag");
    return font->glyphs.count();
}

void readZoneRecord(SwfIStream& stream, SwfZoneRecord& record) {
    const uint8_t count = stream.readUI8("NumZoneData");
    record.zones.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        SwfZoneData zone;
        zone.alignmentCoordinate = stream.readUI16("AlignmentCoordinate");
        zone.range = stream.readUI16("Range");
        record.zones.append(zone);
    }
    record.mask = stream.readUI8("ZoneMask");
}

} // namespace

SwfTagDefineFontInfo::SwfTagDefineFontInfo(SwfIStream& stream) : SwfTagDefineFontInfo() {
    fontId = stream.readUI16("FontId");
    nameNuls = readFontName(stream, fontName);
    const uint8_t flags = stream.readUI8("Flags");
    smallText = flags & smallBit;
    shiftJis = flags & shiftJisBit;
    ansi = flags & ansiBit;
    italic = flags & italicBit;
    bold = flags & boldBit;
    wideCodes = flags & wideBit;
    if (stream.context.fullForm) {
        keepsWidth = true;
        reserved = flags >> infoReservedShift;
    } else if (flags & infoReserved) {
        stream.markInexact("reserved flags are set");
    }
    readCodes(stream, stream.bodyLeft() / (wideCodes ? 2 : 1), wideCodes, codes);
}

void SwfTagDefineFontInfo::prepare() { wideCodes = hasWideCode(codes) || (keepsWidth && wideCodes); }

void SwfTagDefineFontInfo::writeBody(SwfOStream& stream) {
    stream.writeUI16(fontId);
    writeFontName(stream, fontName, nameNuls);
    stream.writeUI8(bitIf(smallText, smallBit) | bitIf(shiftJis, shiftJisBit) | bitIf(ansi, ansiBit) |
                    bitIf(italic, italicBit) | bitIf(bold, boldBit) | bitIf(wideCodes, wideBit) |
                    static_cast<uint8_t>(reserved << infoReservedShift));
    writeCodes(stream, codes, wideCodes);
}

SwfTagDefineFontInfo2::SwfTagDefineFontInfo2(SwfIStream& stream) : SwfTagDefineFontInfo2() {
    fontId = stream.readUI16("FontId");
    nameNuls = readFontName(stream, fontName);
    const uint8_t flags = stream.readUI8("Flags");
    smallText = flags & smallBit;
    italic = flags & italicBit;
    bold = flags & boldBit;
    ansi = flags & ansiBit;
    shiftJis = flags & shiftJisBit;
    reserved = flags >> infoReservedShift;
    if ((reserved != 0 && !stream.context.fullForm) || (flags & wideBit) == 0)
        stream.markInexact("its flags are not those of wide codes alone");
    if ((ansi || shiftJis) && !stream.context.fullForm)
        addWarning(stream, SwfWarning::Kind::cut, "its ANSI and Shift-JIS flags are saved as 0");
    languageCode = stream.readUI8("LanguageCode");
    readCodes(stream, stream.bodyLeft() / 2, true, codes);
}

void SwfTagDefineFontInfo2::writeBody(SwfOStream& stream) {
    stream.writeUI16(fontId);
    writeFontName(stream, fontName, nameNuls);
    uint8_t kept = 0;
    if (stream.context.fullForm)
        kept =
            bitIf(ansi, ansiBit) | bitIf(shiftJis, shiftJisBit) | static_cast<uint8_t>(reserved << infoReservedShift);
    stream.writeUI8(bitIf(smallText, smallBit) | bitIf(italic, italicBit) | bitIf(bold, boldBit) | wideBit | kept);
    stream.writeUI8(languageCode);
    writeCodes(stream, codes, true);
}

SwfTagDefineFontName::SwfTagDefineFontName(SwfIStream& stream) : SwfTagDefineFontName() {
    fontId = stream.readUI16("FontId");
    stream.readString(name, "FontName");
    stream.readString(copyright, "FontCopyright");
}

void SwfTagDefineFontName::writeBody(SwfOStream& stream) {
    stream.writeUI16(fontId);
    name.write(stream, true);
    copyright.write(stream, true);
}

SwfTagDefineFontAlignZones::SwfTagDefineFontAlignZones(SwfIStream& stream) : SwfTagDefineFontAlignZones() {
    fontId = stream.readUI16("FontId");
    const bool fullForm = stream.context.fullForm;
    const uint32_t count = fullForm ? 0 : glyphCountOf(stream, fontId);
    flags = stream.readUI8("Flags");
    while (fullForm && stream.bodyLeft() != 0)
        readZoneRecord(stream, records.append({}));
    if ((flags & reservedBits) != 0 && !fullForm)
        stream.markInexact("reserved flags are set");
    for (uint32_t i = 0; i < count; ++i) {
        if (stream.position() >= stream.limit())
            stream.fail("ZoneTable", "the body ends before the zones of the font's last glyph");
        readZoneRecord(stream, records.append({}));
    }
}

void SwfTagDefineFontAlignZones::writeBody(SwfOStream& stream) {
    stream.writeUI16(fontId);
    stream.writeUI8(flags);
    for (const SwfZoneRecord& record : records) {
        if (record.zones.size() > UINT8_MAX)
            throw SwfException(SwfError::doesNotFit, "more than 255 alignment zones for one glyph");
        stream.writeUI8(static_cast<uint8_t>(record.zones.size()));
        for (const SwfZoneData& zone : record.zones) {
            stream.writeUI16(zone.alignmentCoordinate);
            stream.writeUI16(zone.range);
        }
        stream.writeUI8(record.mask);
    }
}

SwfTagDefineFont4::SwfTagDefineFont4(SwfIStream& stream) : SwfTagDefineFont4() {
    characterId = stream.readUI16("FontId");
    const uint8_t flags = stream.readUI8("Flags");
    hasFontData = flags & font4Data;
    italic = flags & font4Italic;
    bold = flags & font4Bold;
    reserved = flags >> font4ReservedShift;
    if (reserved != 0 && !stream.context.fullForm)
        stream.markInexact("reserved flags are set");
    stream.readString(fontName, "FontName");
    if (hasFontData)
        fontData = stream.readRest("FontData");
}

void SwfTagDefineFont4::writeBody(SwfOStream& stream) {
    stream.writeUI16(characterId);
    const auto kept = static_cast<uint8_t>(stream.context.fullForm ? reserved << font4ReservedShift : 0);
    stream.writeUI8(bitIf(hasFontData, font4Data) | bitIf(italic, font4Italic) | bitIf(bold, font4Bold) | kept);
    fontName.write(stream, true);
    if (hasFontData)
        stream.writeBytes(fontData.span());
}

} // namespace libswf
