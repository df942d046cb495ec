// The tags that say more about a font, and DefineFont4, as XML.
#include "SwfException.h"
#include "XmlFontParts.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

void writeFontName(XmlNode& node, const SwfString& name) {
    if (name.view().find('\0') != std::string_view::npos)
        throw SwfException(SwfError::badData, "FontName: a NUL inside a name cannot be written as XML");
    node.attribute("FontName", name);
}

uint32_t smallInteger(XmlElement& element, std::string_view name, uint32_t bits) {
    return static_cast<uint32_t>(element.ranged(name, 0, (int64_t(1) << bits) - 1));
}

void writeXml(XmlNode& node, const SwfTagDefineFontInfo& tag) {
    node.attribute("FontId", tag.fontId);
    writeFontName(node, tag.fontName);
    {
        XmlNode bits(node, "BitsField");
        bits.attribute("SmallText", tag.smallText);
        bits.attribute("ShiftJIS", tag.shiftJis);
        bits.attribute("ANSI", tag.ansi);
        bits.attribute("Italic", tag.italic);
        bits.attribute("Bold", tag.bold);
        bits.attribute("WideCodes", tag.wideCodes);
    }
    writeCodeTable(node, "CodesTable", tag.codes);
}

void readXml(XmlElement& element, SwfTagDefineFontInfo& tag) {
    tag.fontId = element.ui16("FontId");
    tag.fontName = element.string("FontName");
    if (auto bits = element.child("BitsField")) {
        tag.smallText = bits->boolean("SmallText");
        tag.shiftJis = bits->boolean("ShiftJIS");
        tag.ansi = bits->boolean("ANSI");
        tag.italic = bits->boolean("Italic");
        tag.bold = bits->boolean("Bold");
        tag.wideCodes = bits->boolean("WideCodes"); // recomputed before writing
    }
    if (auto codes = element.child("CodesTable"))
        readCodeTable(*codes, tag.codes);
}

void writeXml(XmlNode& node, const SwfTagDefineFontInfo2& tag) {
    node.attribute("FontId", tag.fontId);
    writeFontName(node, tag.fontName);
    node.attribute("LanguageCode", tag.languageCode);
    {
        XmlNode bits(node, "BitsField");
        bits.attribute("SmallText", tag.smallText);
        bits.attribute("Italic", tag.italic);
        bits.attribute("Bold", tag.bold);
    }
    writeCodeTable(node, "CodesTable", tag.codes);
}

void readXml(XmlElement& element, SwfTagDefineFontInfo2& tag) {
    tag.fontId = element.ui16("FontId");
    tag.fontName = element.string("FontName");
    tag.languageCode = element.ui8("LanguageCode");
    if (auto bits = element.child("BitsField")) {
        tag.smallText = bits->boolean("SmallText");
        tag.italic = bits->boolean("Italic");
        tag.bold = bits->boolean("Bold");
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
    node.attribute("ZoneMaskX", (record.mask & SwfZoneRecord::maskX) != 0);
    node.attribute("ZoneMaskY", (record.mask & SwfZoneRecord::maskY) != 0);
    if (const uint32_t reserved = record.mask & SwfZoneRecord::reservedBits; reserved != 0)
        node.attribute("Reserved", reserved);
    for (const SwfZoneData& zone : record.zones) {
        XmlNode child(node, "ZoneData");
        child.attribute("AlignmentCoordinate", zone.alignmentCoordinate);
        child.attribute("Range", zone.range);
    }
}

static void readXml(XmlElement& element, SwfZoneRecord& record) {
    uint32_t mask = element.boolean("ZoneMaskX") ? SwfZoneRecord::maskX : 0;
    mask |= element.boolean("ZoneMaskY") ? SwfZoneRecord::maskY : 0;
    mask |= smallInteger(element, "Reserved", 6);
    record.mask = static_cast<uint8_t>(mask);
    for (XmlElement child : element.children()) {
        if (!child.is("ZoneData")) {
            child.skip();
            continue;
        }
        SwfZoneData zone;
        zone.alignmentCoordinate = child.ui16("AlignmentCoordinate");
        zone.range = child.ui16("Range");
        record.zones.append(zone);
    }
}

void writeXml(XmlNode& node, const SwfTagDefineFontAlignZones& tag) {
    node.attribute("FontId", tag.fontId);
    node.attribute("CSMTableHint", tag.csmTableHint());
    XmlNode records(node, "ZoneRecords");
    for (const SwfZoneRecord& record : tag.records)
        writeChild(records, "ZoneRecord", record);
}

void readXml(XmlElement& element, SwfTagDefineFontAlignZones& tag) {
    tag.fontId = element.ui16("FontId");
    tag.flags = static_cast<uint8_t>(smallInteger(element, "CSMTableHint", 2) << 6);
    auto records = element.child("ZoneRecords");
    if (!records)
        return;
    for (XmlElement child : records->children()) {
        if (child.is("ZoneRecord"))
            readXml(child, tag.records.append({}));
        else
            child.skip();
    }
}

void writeXml(XmlNode& node, const SwfTagDefineFont4& tag) {
    node.attribute("FontId", tag.characterId);
    node.attribute("FontName", tag.fontName);
    {
        XmlNode bits(node, "BitsField");
        bits.attribute("Bold", tag.bold);
        bits.attribute("Italic", tag.italic);
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
    }
    if (auto data = element.child("FontData")) {
        tag.hasFontData = true;
        tag.fontData = data->base64();
    }
}

} // namespace xml2swf
