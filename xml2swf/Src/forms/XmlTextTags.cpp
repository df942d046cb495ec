// Static texts, their smoothing and text fields as XML.
#include "XmlCharacters.h"
#include "XmlFontParts.h"
#include "XmlGlyphs.h"
#include "XmlNames.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

// `font` is the one that the glyphs are of, as far as it is known what they stand for.
static void writeRecord(XmlNode& node, const SwfTextRecord& record, const FontCharacters* font) {
    if (record.flags & SwfTextRecord::xOffsetBit)
        node.attribute("XOffset", record.xOffset);
    if (record.flags & SwfTextRecord::yOffsetBit)
        node.attribute("YOffset", record.yOffset);
    if (record.flags & SwfTextRecord::colorBit)
        node.attribute("Color", record.color);
    if (record.flags & SwfTextRecord::fontBit) {
        node.attribute("FontId", record.fontId);
        node.attribute("Height", record.height);
    }
    node.attribute("Type", (record.flags & SwfTextRecord::typeBit) != 0);
    if (const uint32_t reserved = record.flags & SwfTextRecord::reservedBits; node.fullForm() && reserved != 0)
        node.attribute("Reserved", reserved >> SwfTextRecord::reservedShift);
    XmlNode entries(node, "GlyphEntries");
    for (const SwfGlyphEntry& entry : record.glyphs) {
        XmlNode child(entries, "GlyphEntry");
        if (const auto character = font == nullptr ? std::nullopt : font->spelledGlyph(entry.index))
            child.attribute("Character", toUtf8({&*character, 1}));
        else
            child.attribute("Index", entry.index);
        child.attribute("Advance", entry.advance);
    }
}

static constexpr XmlTextForm characterForm{"character", "A", "."};

// A Character counts more than an Index beside it.
static void readGlyph(XmlElement& element, SwfGlyphEntry& entry, SpelledGlyph place,
                      std::vector<SpelledGlyph>& spelled) {
    if (element.fullForm() && element.has("Character")) {
        const std::string_view text = element.attribute("Character", XmlValueForm::text(characterForm)).value_or("");
        const std::optional<std::u32string> characters = fromUtf8(text);
        if (!characters || characters->size() != 1)
            element.refuse("Character", "it is not one character");
        place.character = characters->front();
        place.offset = element.offset();
        spelled.push_back(place);
    }
    entry.index = element.ui32("Index");
    entry.advance = element.si32("Advance");
}

// The presence of an attribute sets its flag.
static void readRecord(XmlElement& element, SwfTextRecord& record, SpelledGlyph& place,
                       std::vector<SpelledGlyph>& spelled) {
    auto present = [&](const char* name, uint8_t bit) {
        if (element.has(name))
            record.flags |= bit;
    };
    present("XOffset", SwfTextRecord::xOffsetBit);
    present("YOffset", SwfTextRecord::yOffsetBit);
    present("Color", SwfTextRecord::colorBit);
    present("FontId", SwfTextRecord::fontBit);
    present("Height", SwfTextRecord::fontBit);
    record.xOffset = element.si16("XOffset");
    record.yOffset = element.si16("YOffset");
    record.color = element.color("Color");
    record.fontId = element.ui16("FontId");
    record.height = element.ui16("Height");
    if (element.boolean("Type"))
        record.flags |= SwfTextRecord::typeBit;
    if (element.fullForm())
        record.flags |= static_cast<uint8_t>(smallInteger(element, "Reserved", 3) << SwfTextRecord::reservedShift);
    if (record.flags & SwfTextRecord::fontBit)
        place.fontId = record.fontId;
    auto entries = element.child("GlyphEntries");
    if (!entries)
        return;
    for (XmlElement child : entries->children()) {
        if (!child.is("GlyphEntry")) {
            child.skip();
            continue;
        }
        place.glyph = static_cast<uint32_t>(record.glyphs.size());
        readGlyph(child, record.glyphs.append({}), place, spelled);
    }
}

void writeXml(XmlNode& node, const SwfTagDefineText& tag) {
    node.attribute("Id", tag.characterId);
    if (tag.glyphBits)
        node.attribute("GlyphBits", *tag.glyphBits);
    if (tag.advanceBits)
        node.attribute("AdvanceBits", *tag.advanceBits);
    writeChild(node, "Bounds", tag.bounds);
    writeChild(node, "Matrix", tag.matrix);
    XmlNode records(node, "TextRecords");
    const MovieFonts* fonts = node.fullForm() ? node.context().fonts : nullptr;
    const FontCharacters* font = nullptr;
    for (const SwfTextRecord& record : tag.records) {
        if (fonts != nullptr && (record.flags & SwfTextRecord::fontBit))
            font = fonts->find(record.fontId);
        XmlNode child(records, "TextRecord");
        writeRecord(child, record, font);
    }
}

void readXml(XmlElement& element, SwfTagDefineText& tag) {
    tag.characterId = element.ui16("Id");
    if (element.fullForm() && element.has("GlyphBits"))
        tag.glyphBits = element.ui8("GlyphBits");
    if (element.fullForm() && element.has("AdvanceBits"))
        tag.advanceBits = element.ui8("AdvanceBits");
    readChild(element, "Bounds", tag.bounds);
    readChild(element, "Matrix", tag.matrix);
    auto records = element.child("TextRecords");
    if (!records)
        return;
    SpelledGlyph place{}; // of the glyph that comes next
    std::vector<SpelledGlyph> spelled;
    for (XmlElement child : records->children()) {
        if (!child.is("TextRecord")) {
            child.skip();
            continue;
        }
        place.record = static_cast<uint32_t>(tag.records.size());
        readRecord(child, tag.records.append({}), place, spelled);
    }
    if (SpelledTexts* texts = element.context().spelled; texts != nullptr && !spelled.empty())
        texts->add(tag, std::move(spelled));
}

void writeXml(XmlNode& node, const SwfTagDefineText2& tag) {
    writeXml(node, static_cast<const SwfTagDefineText&>(tag));
}

void readXml(XmlElement& element, SwfTagDefineText2& tag) { readXml(element, static_cast<SwfTagDefineText&>(tag)); }

void writeXml(XmlNode& node, const SwfTagCSMTextSettings& tag) {
    node.attribute("TextId", tag.textId);
    node.attribute("Thickness", tag.thickness);
    node.attribute("Sharpness", tag.sharpness);
    if (node.fullForm() && tag.reserved != 0)
        node.attribute("Reserved", tag.reserved);
    XmlNode bits(node, "BitsField");
    bits.attribute("GridFit", tag.gridFit());
    bits.attribute("UseFlashType", tag.useFlashType());
    if (!node.fullForm())
        return;
    if (const uint32_t reserved = tag.flags & SwfTagCSMTextSettings::reservedBits; reserved != 0)
        bits.attribute("Reserved", reserved);
}

void readXml(XmlElement& element, SwfTagCSMTextSettings& tag) {
    tag.textId = element.ui16("TextId");
    tag.thickness = element.real("Thickness");
    tag.sharpness = element.real("Sharpness");
    if (element.fullForm())
        tag.reserved = element.ui8("Reserved");
    if (auto bits = element.child("BitsField")) {
        const uint32_t gridFit = smallInteger(*bits, "GridFit", 3);
        const uint32_t reserved = bits->fullForm() ? smallInteger(*bits, "Reserved", 3) : 0;
        tag.flags = static_cast<uint8_t>(gridFit << 3 | smallInteger(*bits, "UseFlashType", 2) << 6 | reserved);
    }
}

static constexpr XmlName alignNames[] = {{"Left", 0}, {"Right", 1}, {"Center", 2}, {"Justify", 3}};

// The flags that BitsField shows, in its order.
struct EditTextFlag {
    const char* name;
    bool SwfTagDefineEditText::*flag;
};
static constexpr EditTextFlag editTextFlags[] = {
    {"AutoSize", &SwfTagDefineEditText::autoSize}, {"ReadOnly", &SwfTagDefineEditText::readOnly},
    {"Password", &SwfTagDefineEditText::password}, {"Multiline", &SwfTagDefineEditText::multiline},
    {"WordWrap", &SwfTagDefineEditText::wordWrap}, {"UseOutlines", &SwfTagDefineEditText::useOutlines},
    {"HTML", &SwfTagDefineEditText::html},         {"WasStatic", &SwfTagDefineEditText::wasStatic},
    {"Border", &SwfTagDefineEditText::border},     {"NoSelect", &SwfTagDefineEditText::noSelect}};

void writeXml(XmlNode& node, const SwfTagDefineEditText& tag) {
    node.attribute("Id", tag.characterId);
    if (tag.hasFont) {
        node.attribute("FontId", tag.fontId);
        node.attribute("FontHeight", tag.fontHeight);
    }
    if (tag.hasFontClass)
        node.attribute("FontClass", tag.fontClass);
    if (tag.hasMaxLength)
        node.attribute("MaxLength", tag.maxLength);
    if (tag.hasTextColor)
        node.attribute("Color", tag.color);
    if (tag.hasLayout) {
        if (node.fullForm())
            writeNameOrNumber(node, "Align", alignNames, tag.align);
        else if (const std::string_view align = findName(alignNames, tag.align); !align.empty())
            node.attribute("Align", align);
        node.attribute("LeftMargin", tag.leftMargin);
        node.attribute("RightMargin", tag.rightMargin);
        node.attribute("Indent", tag.indent);
        node.attribute("Leading", tag.leading);
    }
    node.attribute("VarName", tag.varName);
    writeChild(node, "Bounds", tag.bounds);
    {
        XmlNode bits(node, "BitsField");
        for (const EditTextFlag& entry : editTextFlags)
            bits.attribute(entry.name, tag.*entry.flag);
    }
    if (tag.hasText)
        XmlNode(node, "InitialText").text(tag.initialText.view());
}

// Several attributes share a flag, and the last one asked for decides it: hasFont follows FontHeight, hasLayout follows
// Leading, on purpose.
static void readEditTextAttributes(XmlElement& element, SwfTagDefineEditText& tag) {
    auto optional = [&](const char* name, bool& flag) {
        flag = element.has(name);
        return element.ui16(name);
    };
    tag.fontId = optional("FontId", tag.hasFont);
    tag.fontHeight = optional("FontHeight", tag.hasFont);
    tag.maxLength = optional("MaxLength", tag.hasMaxLength);
    tag.leftMargin = optional("LeftMargin", tag.hasLayout);
    tag.rightMargin = optional("RightMargin", tag.hasLayout);
    tag.indent = optional("Indent", tag.hasLayout);
    tag.hasLayout = element.has("Leading");
    tag.leading = element.si16("Leading");
    tag.hasFontClass = element.has("FontClass");
    tag.fontClass = element.string("FontClass");
    auto needs = [&](const char* name, const char* decider) {
        if (element.has(name) && !element.has(decider))
            element.context().warn(SwfWarning::Kind::skipped, element.name(), element.offset(),
                                   std::string("the attribute ") + name + " counts only together with " + decider);
    };
    needs("FontId", "FontHeight");
    for (const char* name : {"Align", "LeftMargin", "RightMargin", "Indent"})
        needs(name, "Leading");
}

void readXml(XmlElement& element, SwfTagDefineEditText& tag) {
    tag.characterId = element.ui16("Id");
    readEditTextAttributes(element, tag);
    tag.hasTextColor = element.has("Color");
    tag.color = element.color("Color");
    tag.align = static_cast<uint8_t>(element.fullForm() ? element.nameOrNumber("Align", alignNames, UINT8_MAX)
                                                        : element.named("Align", alignNames));
    tag.varName = element.string("VarName");
    readChild(element, "Bounds", tag.bounds);
    if (auto bits = element.child("BitsField")) {
        for (const EditTextFlag& entry : editTextFlags)
            tag.*entry.flag = bits->boolean(entry.name);
    }
    if (auto text = element.child("InitialText")) {
        tag.hasText = true;
        tag.initialText = SwfString(text->content());
    }
}

} // namespace xml2swf
