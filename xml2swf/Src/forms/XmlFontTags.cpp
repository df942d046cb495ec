// Fonts with outlines as XML.
#include "XmlFontParts.h"
#include "XmlShapes.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

namespace {

// One Glyphs element per glyph.
void writeGlyphs(XmlNode& parent, std::string_view name, const SwfShapes& glyphs) {
    XmlNode table(parent, name);
    for (const SwfShapeRecords* glyph : glyphs.items) {
        XmlNode node(table, "Glyphs");
        writeShapeRecords(node, *glyph);
    }
}

void readGlyphs(XmlElement& table, SwfShapes& glyphs) {
    readEach(table, "Glyphs", [&](XmlElement& child) { readShapeRecords(child, glyphs.add()); });
}

struct FontFlag {
    const char* name;
    bool SwfTagDefineFont2::*flag;
};
constexpr FontFlag fontFlags[] = {
    {"Bold", &SwfTagDefineFont2::bold},           {"Italic", &SwfTagDefineFont2::italic},
    {"WideCodes", &SwfTagDefineFont2::wideCodes}, {"WideOffsets", &SwfTagDefineFont2::wideOffsets},
    {"ANSI", &SwfTagDefineFont2::ansi},           {"SmallText", &SwfTagDefineFont2::smallText},
    {"ShiftJIS", &SwfTagDefineFont2::shiftJis}};

void writeLayout(XmlNode& node, const SwfTagDefineFont2& tag) {
    writeCodeTable(node, "AdvanceTable", tag.advances);
    {
        XmlNode table(node, "BoundsTable");
        for (const SwfRect& rect : tag.bounds)
            writeChild(table, "Bound", rect);
    }
    if (tag.kerning.empty())
        return;
    XmlNode table(node, "KerningTable");
    for (const SwfKerningRecord& record : tag.kerning) {
        XmlNode child(table, "KerningRecord");
        child.attribute("KerningCode1", record.kerningCode1);
        child.attribute("KerningCode2", record.kerningCode2);
        child.attribute("Adjustment", record.adjustment);
    }
}

void readBounds(XmlElement& table, SwfRects& bounds) {
    for (XmlElement child : table.anyChildren("Bound"))
        readXml(child, bounds.append({}));
}

void readKerning(XmlElement& table, SwfKerningRecords& kerning) {
    readEach(table, "KerningRecord", [&](XmlElement& child) {
        SwfKerningRecord record;
        record.kerningCode1 = child.ui16("KerningCode1");
        record.kerningCode2 = child.ui16("KerningCode2");
        record.adjustment = child.si16("Adjustment");
        kerning.append(record);
    });
}

} // namespace

void writeXml(XmlNode& node, const SwfTagDefineFont& tag) {
    node.attribute("FontId", tag.characterId);
    writeGlyphs(node, "GlyphShapeTable", tag.glyphs);
}

// The first child is the glyph table, whatever its name.
void readXml(XmlElement& element, SwfTagDefineFont& tag) {
    tag.characterId = element.ui16("FontId");
    if (auto table = element.childAt(0, "GlyphShapeTable"))
        readGlyphs(*table, tag.glyphs);
}

void writeXml(XmlNode& node, const SwfTagDefineFont2& tag) {
    node.attribute("FontId", tag.characterId);
    node.attribute("LanguageCode", tag.languageCode);
    writeFontName(node, tag.fontName, tag.nameNuls);
    if (tag.hasLayout) {
        node.attribute("Ascent", tag.ascent);
        node.attribute("Descent", tag.descent);
        node.attribute("Leading", tag.leading);
    }
    if (tag.hasNoCodeTable)
        node.attribute("MissingCodeTableOffset", true);
    if (tag.lacksKerning)
        node.attribute("MissingKerningCount", true);
    {
        XmlNode bits(node, "BitsField");
        for (const FontFlag& entry : fontFlags)
            bits.attribute(entry.name, tag.*entry.flag);
    }
    writeGlyphs(node, "Glyphs", tag.glyphs);
    writeCodeTable(node, "CodesTable", tag.codes);
    if (tag.hasLayout)
        writeLayout(node, tag);
}

// In the classic form a font has a layout when some of its values are not 0.
static void readFullFlags(XmlElement& element, SwfTagDefineFont2& tag) {
    tag.keepsFlags = true;
    tag.nameNuls = element.ui8("FontNameNuls");
    tag.hasLayout = element.has("Ascent") || element.has("Descent") || element.has("Leading");
    tag.hasNoCodeTable = element.boolean("MissingCodeTableOffset");
    tag.lacksKerning = element.boolean("MissingKerningCount");
}

void readXml(XmlElement& element, SwfTagDefineFont2& tag) {
    tag.characterId = element.ui16("FontId");
    tag.languageCode = element.ui8("LanguageCode");
    tag.fontName = element.string("FontName");
    if (element.fullForm())
        readFullFlags(element, tag);
    tag.ascent = element.ui16("Ascent");
    tag.descent = element.ui16("Descent");
    tag.leading = element.si16("Leading");
    for (XmlElement child : element.children()) {
        if (child.is("BitsField")) {
            for (const FontFlag& entry : fontFlags)
                tag.*entry.flag = child.boolean(entry.name);
        } else if (child.is("Glyphs")) {
            readGlyphs(child, tag.glyphs);
        } else if (child.is("CodesTable")) {
            readCodeTable(child, tag.codes);
        } else if (child.is("AdvanceTable")) {
            tag.hasLayout = true;
            readCodeTable(child, tag.advances);
        } else if (child.is("BoundsTable")) {
            tag.hasLayout = true;
            readBounds(child, tag.bounds);
        } else if (child.is("KerningTable")) {
            tag.hasLayout = true;
            readKerning(child, tag.kerning);
        } else {
            child.skip();
        }
    }
    if (tag.keepsFlags)
        tag.hasLayout |= !tag.advances.empty() || !tag.bounds.empty() || !tag.kerning.empty();
}

void writeXml(XmlNode& node, const SwfTagDefineFont3& tag) {
    writeXml(node, static_cast<const SwfTagDefineFont2&>(tag));
}

void readXml(XmlElement& element, SwfTagDefineFont3& tag) { readXml(element, static_cast<SwfTagDefineFont2&>(tag)); }

} // namespace xml2swf
