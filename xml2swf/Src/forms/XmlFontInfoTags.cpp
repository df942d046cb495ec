// The tags that say more about a font, and DefineFont4, as XML.
#include "SwfException.h"
#include "XmlFontParts.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

void writeFontName(XmlNode& node, const SwfString& name, uint8_t nuls) {
    if (name.view().find('\0') != std::string_view::npos)
        throw SwfException(SwfError::badData, "FontName: a NUL inside a name cannot be written as XML");
    node.attribute("FontName", name);
    if (nuls != 0)
        node.attribute("FontNameNuls", nuls);
}

uint32_t smallInteger(XmlElement& element, std::string_view name, uint32_t bits) {
    return static_cast<uint32_t>(element.ranged(name, 0, (int64_t(1) << bits) - 1));
}

// Bits without a name, which the full form shows where they are set.
static void writeReserved(XmlNode& node, uint32_t bits) {
    if (node.fullForm() && bits != 0)
        node.attribute("Reserved", bits);
}

static uint8_t readReserved(XmlElement& element, uint32_t bits) {
    return static_cast<uint8_t>(element.fullForm() ? smallInteger(element, "Reserved", bits) : 0);
}

void writeXml(XmlNode& node, const SwfTagDefineFontInfo& tag) {
    node.attribute("FontId", tag.fontId);
    writeFontName(node, tag.fontName, tag.nameNuls);
    {
        XmlNode bits(node, "BitsField");
        bits.attribute("SmallText", tag.smallText);
        bits.attribute("ShiftJIS", tag.shiftJis);
        bits.attribute("ANSI", tag.ansi);
        bits.attribute("Italic", tag.italic);
        bits.attribute("Bold", tag.bold);
        bits.attribute("WideCodes", tag.wideCodes);
        writeReserved(bits, tag.reserved);
    }
    writeCodeTable(node, "CodesTable", tag.codes);
}

void readXml(XmlElement& element, SwfTagDefineFontInfo& tag) {
    tag.fontId = element.ui16("FontId");
    tag.fontName = element.string("FontName");
    if (element.fullForm())
        tag.nameNuls = element.ui8("FontNameNuls");
    if (auto bits = element.child("BitsField")) {
        tag.smallText = bits->boolean("SmallText");
        tag.shiftJis = bits->boolean("ShiftJIS");
        tag.ansi = bits->boolean("ANSI");
        tag.italic = bits->boolean("Italic");
        tag.bold = bits->boolean("Bold");
        tag.wideCodes = bits->boolean("WideCodes"); // recomputed before writing
        tag.keepsWidth = bits->fullForm();
        tag.reserved = readReserved(*bits, 2);
    }
    if (auto codes = element.child("CodesTable"))
        readCodeTable(*codes, tag.codes);
}

void writeXml(XmlNode& node, const SwfTagDefineFontInfo2& tag) {
    node.attribute("FontId", tag.fontId);
    writeFontName(node, tag.fontName, tag.nameNuls);
    node.attribute("LanguageCode", tag.languageCode);
    {
        XmlNode bits(node, "BitsField");
        bits.attribute("SmallText", tag.smallText);
        if (node.fullForm()) {
            bits.attribute("ShiftJIS", tag.shiftJis);
            bits.attribute("ANSI", tag.ansi);
        }
        bits.attribute("Italic", tag.italic);
        bits.attribute("Bold", tag.bold);
        writeReserved(bits, tag.reserved);
    }
    writeCodeTable(node, "CodesTable", tag.codes);
}

void readXml(XmlElement& element, SwfTagDefineFontInfo2& tag) {
    tag.fontId = element.ui16("FontId");
    tag.fontName = element.string("FontName");
    if (element.fullForm())
        tag.nameNuls = element.ui8("FontNameNuls");
    tag.languageCode = element.ui8("LanguageCode");
    if (auto bits = element.child("BitsField")) {
        tag.smallText = bits->boolean("SmallText");
        if (bits->fullForm()) {
            tag.shiftJis = bits->boolean("ShiftJIS");
            tag.ansi = bits->boolean("ANSI");
        }
        tag.italic = bits->boolean("Italic");
        tag.bold = bits->boolean("Bold");
        tag.reserved = readReserved(*bits, 2);
    }
    if (auto codes = element.child("CodesTable"))
        readCodeTable(*codes, tag.codes);
}

void writeXml(XmlNode& node, const SwfTagDefineFontName& tag) {
    node.attribute("FontId", tag.fontId);
    node.attribute("Name", tag.name);
    node.attribute("Copyright", tag.copyright);
}

void readXml(XmlElement& element, SwfTagDefineFontName& tag) {
    tag.fontId = element.ui16("FontId");
    tag.name = element.string("Name");
    tag.copyright = element.string("Copyright");
}

static void writeXml(XmlNode& node, const SwfZoneRecord& record) {
    const SwfZoneRecord::Layout& layout = node.fullForm() ? SwfZoneRecord::full : SwfZoneRecord::classic;
    node.attribute("ZoneMaskX", (record.mask & layout.maskX) != 0);
    node.attribute("ZoneMaskY", (record.mask & layout.maskY) != 0);
    if (!node.fullForm()) {
        const auto mask = [&](const SwfZoneRecord::Layout& of) {
            return std::pair((record.mask & of.maskX) != 0, (record.mask & of.maskY) != 0);
        };
        const auto shown = mask(layout), read = mask(SwfZoneRecord::full);
        node.differs(uint64_t(shown.first != read.first) + (shown.second != read.second));
    }
    if (const uint32_t reserved = record.mask >> layout.reservedShift & 0x3F; reserved != 0)
        node.attribute("Reserved", reserved);
    for (const SwfZoneData& zone : record.zones) {
        XmlNode child(node, "ZoneData");
        child.attribute("AlignmentCoordinate", zone.alignmentCoordinate);
        child.attribute("Range", zone.range);
    }
}

static void readXml(XmlElement& element, SwfZoneRecord& record) {
    const SwfZoneRecord::Layout& layout = element.fullForm() ? SwfZoneRecord::full : SwfZoneRecord::classic;
    uint32_t mask = element.boolean("ZoneMaskX") ? layout.maskX : 0;
    mask |= element.boolean("ZoneMaskY") ? layout.maskY : 0;
    mask |= smallInteger(element, "Reserved", 6) << layout.reservedShift;
    record.mask = static_cast<uint8_t>(mask);
    readEach(element, "ZoneData", [&](XmlElement& child) {
        SwfZoneData zone;
        zone.alignmentCoordinate = child.ui16("AlignmentCoordinate");
        zone.range = child.ui16("Range");
        record.zones.append(zone);
    });
}

void writeXml(XmlNode& node, const SwfTagDefineFontAlignZones& tag) {
    node.attribute("FontId", tag.fontId);
    node.attribute("CSMTableHint", tag.csmTableHint());
    writeReserved(node, tag.flags & SwfTagDefineFontAlignZones::reservedBits);
    XmlNode records(node, "ZoneRecords");
    for (const SwfZoneRecord& record : tag.records)
        writeChild(records, "ZoneRecord", record);
}

void readXml(XmlElement& element, SwfTagDefineFontAlignZones& tag) {
    tag.fontId = element.ui16("FontId");
    tag.flags = static_cast<uint8_t>(smallInteger(element, "CSMTableHint", 2) << 6 | readReserved(element, 6));
    auto records = element.child("ZoneRecords");
    if (!records)
        return;
    readEach(*records, "ZoneRecord", [&](XmlElement& child) { readXml(child, tag.records.append({})); });
}

void writeXml(XmlNode& node, const SwfTagDefineFont4& tag) {
    node.attribute("FontId", tag.characterId);
    node.attribute("FontName", tag.fontName);
    {
        XmlNode bits(node, "BitsField");
        bits.attribute("Bold", tag.bold);
        bits.attribute("Italic", tag.italic);
        writeReserved(bits, tag.reserved);
    }
    if (tag.hasFontData)
        writePayload(node, "FontData", tag.fontData.span());
}

void readXml(XmlElement& element, SwfTagDefineFont4& tag) {
    tag.characterId = element.ui16("FontId");
    tag.fontName = element.string("FontName");
    if (auto bits = element.child("BitsField")) {
        tag.bold = bits->boolean("Bold");
        tag.italic = bits->boolean("Italic");
        tag.reserved = readReserved(*bits, 5);
    }
    if (auto data = element.child("FontData")) {
        tag.hasFontData = true;
        tag.fontData = data->base64();
    }
}

} // namespace xml2swf
