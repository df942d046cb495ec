#include "SwfTagDefineText.h"

#include "SwfWarnings.h"

namespace libswf {

SwfTextRecord::SwfTextRecord(SwfIStream& stream) {
    flags = stream.readUI8("StyleFlags");
    if (flags & fontBit)
        fontId = stream.readUI16("FontId");
    if (flags & colorBit)
        color.read(stream);
    if (flags & xOffsetBit)
        xOffset = stream.readSI16("XOffset");
    if (flags & yOffsetBit)
        yOffset = stream.readSI16("YOffset");
    if (flags & fontBit)
        height = stream.readUI16("TextHeight");
    const uint8_t count = stream.readUI8("GlyphCount");
    glyphs.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        SwfGlyphEntry entry;
        entry.index = stream.readUB(stream.context.glyphBits, "GlyphIndex");
        entry.advance = stream.readSB(stream.context.advanceBits, "GlyphAdvance");
        glyphs.append(entry);
    }
    stream.alignBits();
}

void SwfTextRecord::write(SwfOStream& stream) const {
    if (glyphs.size() > UINT8_MAX)
        throw SwfException(SwfError::doesNotFit, "a text record of more than 255 glyphs");
    stream.writeUI8(stream.context.fullForm ? flags : flags | typeBit);
    if (flags & fontBit)
        stream.writeUI16(fontId);
    if (flags & colorBit)
        color.write(stream);
    if (flags & xOffsetBit)
        stream.writeSI16(xOffset);
    if (flags & yOffsetBit)
        stream.writeSI16(yOffset);
    if (flags & fontBit)
        stream.writeUI16(height);
    stream.writeUI8(static_cast<uint8_t>(glyphs.size()));
    for (const SwfGlyphEntry& entry : glyphs) {
        stream.writeUB(stream.context.glyphBits, entry.index);
        stream.writeSB(stream.context.advanceBits, entry.advance);
    }
    stream.flushBits();
}

void SwfTagDefineText::read(SwfIStream& stream) {
    // Entries may take no bits at all, and each is a line of XML. As they are written here they take 3 bits at least.
    constexpr uint64_t alwaysAllowed = 65536, perByte = 8;
    stream.context.alpha = hasAlpha();
    const uint64_t mostEntries = alwaysAllowed + perByte * stream.bodyLeft();
    characterId = stream.readUI16("CharacterId");
    bounds.read(stream);
    matrix.read(stream);
    stream.context.glyphBits = stream.readUI8("GlyphBits");
    stream.context.advanceBits = stream.readUI8("AdvanceBits");
    uint64_t entries = 0;
    bool oldRecords = false;
    for (;;) {
        if (stream.position() >= stream.limit())
            stream.fail("TextRecords", "the body ends before the end of the records");
        if (stream.readUI8("TextRecords") == 0)
            break;
        stream.seek(stream.position() - 1);
        const SwfTextRecord& record = records.append(SwfTextRecord(stream));
        entries += record.glyphs.size();
        if (entries > mostEntries)
            stream.fail("GlyphEntries", "there are far more glyphs than the body has bytes");
        oldRecords |= (record.flags & SwfTextRecord::typeBit) == 0;
        if ((record.flags & SwfTextRecord::reservedBits) != 0 && !stream.context.fullForm)
            stream.markInexact("a text record has reserved flags set");
    }
    if (stream.context.fullForm)
        keepWidths(stream.context);
    else if (oldRecords)
        addWarning(stream, SwfWarning::Kind::cut, "text records of type 0 are taken for, and saved as, type 1");
}

namespace {

// Bits that the entries of a text take.
struct GlyphWidths {
    uint8_t index = 0, advance = 0;           ///< as they are written
    uint8_t leastIndex = 0, leastAdvance = 0; ///< that hold the values
};

GlyphWidths widthsOf(const SwfTextRecords& records) {
    uint32_t indices = 0, advances = 0, magnitudes = 0; // or-ed together they are as wide as the largest of them
    for (const SwfTextRecord& record : records) {
        for (const SwfGlyphEntry& entry : record.glyphs) {
            indices |= entry.index;
            advances |=
                entry.advance < 0 ? 0u - static_cast<uint32_t>(entry.advance) : static_cast<uint32_t>(entry.advance);
            magnitudes |= bitsMagnitude(entry.advance);
        }
    }
    GlyphWidths widths;
    widths.index = static_cast<uint8_t>(bitsUnsigned(indices));
    widths.advance = static_cast<uint8_t>(bitsUnsigned(advances) + 1);
    widths.leastIndex = static_cast<uint8_t>(std::bit_width(indices));
    widths.leastAdvance = static_cast<uint8_t>(advances == 0 ? 0 : std::bit_width(magnitudes) + 1);
    return widths;
}

} // namespace

void SwfTagDefineText::keepWidths(const SwfContext& context) {
    const GlyphWidths widths = widthsOf(records);
    if (context.glyphBits != widths.index)
        glyphBits = context.glyphBits;
    if (context.advanceBits != widths.advance)
        advanceBits = context.advanceBits;
}

void SwfTagDefineText::writeBody(SwfOStream& stream) {
    stream.context.alpha = hasAlpha();
    const GlyphWidths widths = widthsOf(records);
    stream.context.glyphBits = glyphBits ? std::max(*glyphBits, widths.leastIndex) : widths.index;
    stream.context.advanceBits = advanceBits ? std::max(*advanceBits, widths.leastAdvance) : widths.advance;

    stream.writeUI16(characterId);
    bounds.write(stream);
    matrix.write(stream);
    stream.writeUI8(stream.context.glyphBits);
    stream.writeUI8(stream.context.advanceBits);
    for (const SwfTextRecord& record : records)
        record.write(stream);
    stream.writeUI8(0);
}

SwfTagCSMTextSettings::SwfTagCSMTextSettings(SwfIStream& stream) : SwfTagCSMTextSettings() {
    textId = stream.readUI16("TextId");
    flags = stream.readUI8("Flags");
    thickness = stream.readFloat("Thickness");
    sharpness = stream.readFloat("Sharpness");
    reserved = stream.readUI8("Reserved");
    if (((flags & reservedBits) != 0 || reserved != 0) && !stream.context.fullForm)
        stream.markInexact("reserved bits are set");
}

void SwfTagCSMTextSettings::writeBody(SwfOStream& stream) {
    stream.writeUI16(textId);
    stream.writeUI8(flags);
    stream.writeFloat(thickness);
    stream.writeFloat(sharpness);
    stream.writeUI8(reserved);
}

} // namespace libswf
