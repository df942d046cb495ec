#include "SwfTagDefineFont.h"

#include <unordered_map>

#include "SwfFontParts.h"
#include "SwfTagCodes.h"
#include "SwfWarnings.h"

namespace libswf {

namespace {

constexpr uint64_t maxOverlap = 16; // times the body's length that glyphs may take together
constexpr uint8_t firstKerningVersion = 7;
constexpr uint8_t firstWideVersion = 6;

enum Font2Flag : uint8_t {
    boldBit = 0x01,
    italicBit = 0x02,
    wideCodesBit = 0x04,
    wideOffsetsBit = 0x08,
    ansiBit = 0x10,
    smallTextBit = 0x20,
    shiftJisBit = 0x40,
    layoutBit = 0x80
};

// Glyph outlines have no styles of their own.
void setGlyphFlags(SwfContext& context) {
    context.alpha = context.extendedCounts = context.newStylesAllowed = context.lineStyle2Mode = false;
}

using Offsets = std::vector<uint32_t>;

Offsets readOffsets(SwfIStream& stream, uint32_t count, bool wide) {
    if (count > stream.bodyLeft() / (wide ? 4 : 2))
        stream.fail("OffsetTable", "the body ends before its last offset");
    Offsets offsets(count);
    for (uint32_t& offset : offsets)
        offset = wide ? stream.readUI32("OffsetTable") : stream.readUI16("OffsetTable");
    return offsets;
}

// Reads the glyph at each offset from `table`; leaves the stream at the end of the one that lies furthest.
void readGlyphsAt(SwfIStream& stream, uint64_t table, const Offsets& offsets, SwfShapes& glyphs) {
    const uint64_t most = maxOverlap * (stream.limit() - table);
    std::unordered_map<uint32_t, uint32_t> uses;
    uses.reserve(offsets.size());
    for (const uint32_t offset : offsets)
        ++uses[offset];
    uint64_t total = 0, furthest = stream.position();
    for (const uint32_t offset : offsets) {
        stream.seek(table + offset);
        if (stream.position() >= stream.limit())
            stream.fail("OffsetTable", "a glyph lies outside the body");
        stream.alignBits();
        glyphs.readGlyph(stream);
        // Counted for all of its uses at once, so that a glyph used thousands of times is refused after one reading.
        uint32_t& times = uses[offset];
        total += (stream.position() - table - offset) * times;
        times = 0;
        if (total > most)
            stream.fail("OffsetTable", "the glyphs overlap so often that they take far more than the body");
        furthest = std::max(furthest, stream.position());
    }
    stream.seek(furthest);
}

} // namespace

void SwfGlyphFont::prepare() {
    SwfContext context;
    glyphs.getSize(context);
}

SwfTagDefineFont::SwfTagDefineFont(SwfIStream& stream) : SwfTagDefineFont() {
    setGlyphFlags(stream.context);
    characterId = stream.readUI16("FontId");
    if (stream.bodyLeft() < 2)
        return;
    const uint64_t table = stream.position();
    const uint32_t count = stream.readUI16("OffsetTable") / 2u;
    stream.seek(table);
    readGlyphsAt(stream, table, readOffsets(stream, count, false), glyphs);
}

void SwfTagDefineFont::writeBody(SwfOStream& stream) {
    setGlyphFlags(stream.context);
    stream.writeUI16(characterId);
    uint64_t offset = uint64_t(glyphs.count()) * 2;
    bool wraps = false;
    for (const SwfShapeRecords* glyph : glyphs.items) {
        stream.writeUI16(static_cast<uint16_t>(offset));
        wraps |= offset > UINT16_MAX;
        offset += glyph->size;
    }
    if (stream.isCounter()) {
        stream.count(glyphs.size);
        return;
    }
    if (wraps)
        addWarning(stream.context, SwfWarning::Kind::cut,
                   "the glyphs take more than 65,535 bytes: their offsets are cut and the font cannot be read");
    glyphs.write(stream);
}

SwfTagDefineFont2::SwfTagDefineFont2(SwfIStream& stream) : SwfTagDefineFont2() { read(stream); }

void SwfTagDefineFont2::read(SwfIStream& stream) {
    setGlyphFlags(stream.context);
    characterId = stream.readUI16("FontId");
    const uint8_t flags = stream.readUI8("Flags");
    hasLayout = flags & layoutBit;
    shiftJis = flags & shiftJisBit;
    smallText = flags & smallTextBit;
    ansi = flags & ansiBit;
    wideOffsets = flags & wideOffsetsBit;
    wideCodes = flags & wideCodesBit;
    italic = flags & italicBit;
    bold = flags & boldBit;
    keepsFlags = stream.context.fullForm;
    if (keepsFlags)
        stream.context.wideKerningCodes = wideCodes || type == SwfTagCode::DefineFont3;
    else if (type == SwfTagCode::DefineFont2)
        stream.context.wideKerningCodes = wideCodes || stream.context.version >= firstWideVersion;
    languageCode = stream.readUI8("LanguageCode");
    nameNuls = readFontName(stream, fontName);
    const uint32_t count = stream.readUI16("NumGlyphs");
    const uint64_t table = stream.position();
    const Offsets offsets = readGlyphOffsets(stream, count);
    readCodes(stream, count, wideCodes, codes);
    if (hasLayout && count == 0 && stream.bodyLeft() == 0 && !keepsFlags)
        hasLayout = false;
    if (hasLayout)
        readLayout(stream);
    if (!keepsFlags && type == SwfTagCode::DefineFont3 && !kerning.empty() &&
        stream.context.wideKerningCodes != hasWideCode(codes))
        stream.markInexact("its kerning codes would be written in another width");
    // Outlines take many times their bytes: they come last, and a font that is kept as bytes has no use for them.
    if (stream.context.keepRaw && stream.inexact() != nullptr)
        return;
    const uint64_t end = stream.position();
    readGlyphsAt(stream, table, offsets, glyphs);
    stream.seek(end);
}

// Offsets of the glyphs; leaves the stream at the code table.
std::vector<uint32_t> SwfTagDefineFont2::readGlyphOffsets(SwfIStream& stream, uint32_t count) {
    const uint32_t width = wideOffsets ? 4 : 2;
    const uint64_t table = stream.position();
    if (count == 0) {
        // The offset of the code table, if there is one, points behind itself.
        if (stream.bodyLeft() >= width && readOffsets(stream, 1, wideOffsets)[0] != width)
            stream.seek(table);
        hasNoCodeTable = keepsFlags && stream.position() == table;
        return {};
    }
    Offsets offsets = readOffsets(stream, count + 1, wideOffsets);
    const uint64_t codeTable = table + offsets.back();
    offsets.pop_back();
    if (codeTable > stream.limit())
        stream.fail("CodeTableOffset", "the code table lies outside the body");
    stream.seek(codeTable);
    return offsets;
}

void SwfTagDefineFont2::readLayout(SwfIStream& stream) {
    const uint32_t count = codes.size();
    ascent = stream.readUI16("FontAscent");
    descent = stream.readUI16("FontDescent");
    leading = stream.readSI16("FontLeading");
    if (count > stream.bodyLeft() / 2)
        stream.fail("FontAdvanceTable", "the body ends before the last advance");
    advances.reserve(count);
    for (uint32_t i = 0; i < count; ++i)
        advances.append(stream.readSI16("FontAdvanceTable"));
    for (uint32_t i = 0; i < count; ++i) {
        if (stream.position() >= stream.limit())
            stream.fail("FontBoundsTable", "the body ends before the last bounds");
        bounds.append(SwfRect(stream));
    }
    lacksKerning = keepsFlags && stream.bodyLeft() == 0;
    if (stream.bodyLeft() != 0)
        readKerning(stream);
}

void SwfTagDefineFont2::readKerning(SwfIStream& stream) {
    const uint32_t count = stream.readUI16("KerningCount");
    if (stream.context.version < firstKerningVersion && !keepsFlags) {
        if (count != 0)
            addWarning(stream, SwfWarning::Kind::cut,
                       std::to_string(count) + " kerning pairs are dropped: movies below version 7 have none here");
        stream.seek(stream.limit());
        return;
    }
    const bool wide = stream.context.wideKerningCodes;
    if (count > stream.bodyLeft() / (wide ? 6 : 4))
        stream.fail("FontKerningTable", "the body ends before the last kerning record");
    kerning.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        SwfKerningRecord record;
        record.kerningCode1 = wide ? stream.readUI16("KerningCode1") : stream.readUI8("KerningCode1");
        record.kerningCode2 = wide ? stream.readUI16("KerningCode2") : stream.readUI8("KerningCode2");
        record.adjustment = stream.readSI16("Adjustment");
        kerning.append(record);
    }
}

void SwfTagDefineFont2::prepare() {
    SwfGlyphFont::prepare();
    const bool needsWide = uint64_t(glyphs.size) + 2 * uint64_t(glyphs.count()) + 2 > UINT16_MAX;
    wideOffsets = needsWide || (keepsFlags && wideOffsets);
    if (!keepsFlags)
        hasLayout =
            ascent != 0 || descent != 0 || leading != 0 || !advances.empty() || !bounds.empty() || !kerning.empty();
}

void SwfTagDefineFont2::writeBody(SwfOStream& stream) {
    setGlyphFlags(stream.context);
    const bool fullForm = stream.context.fullForm;
    const bool keptWide = fullForm ? wideCodes : stream.context.version >= firstWideVersion;
    const bool wide = hasWideCode(codes) || keptWide || (fullForm && needsWideKerning());
    if (fullForm)
        stream.context.wideKerningCodes = wide || type == SwfTagCode::DefineFont3;
    else if (type == SwfTagCode::DefineFont2)
        stream.context.wideKerningCodes = wide;
    stream.writeUI16(characterId);
    stream.writeUI8(bitIf(hasLayout, layoutBit) | bitIf(shiftJis, shiftJisBit) | bitIf(smallText, smallTextBit) |
                    bitIf(ansi, ansiBit) | bitIf(wideOffsets, wideOffsetsBit) | bitIf(wide, wideCodesBit) |
                    bitIf(italic, italicBit) | bitIf(bold, boldBit));
    stream.writeUI8(languageCode);
    writeFontName(stream, fontName, nameNuls);
    writeGlyphs(stream);
    writeCodes(stream, codes, wide);
    if (hasLayout)
        writeLayout(stream);
}

// Codes of kerning pairs are as wide as those of glyphs.
bool SwfTagDefineFont2::needsWideKerning() const {
    return type == SwfTagCode::DefineFont2 &&
           std::any_of(kerning.begin(), kerning.end(), [](const SwfKerningRecord& record) {
               return (record.kerningCode1 | record.kerningCode2) > UINT8_MAX;
           });
}

void SwfTagDefineFont2::writeGlyphs(SwfOStream& stream) {
    const uint32_t count = glyphs.count();
    if (count > UINT16_MAX)
        throw SwfException(SwfError::doesNotFit, "a font of more than 65,535 glyphs");
    stream.writeUI16(static_cast<uint16_t>(count));
    auto writeOffset = [&](uint64_t offset) {
        if (wideOffsets)
            stream.writeUI32(static_cast<uint32_t>(offset));
        else
            stream.writeUI16(static_cast<uint16_t>(offset));
    };
    uint64_t offset = (uint64_t(count) + 1) * (wideOffsets ? 4 : 2);
    for (const SwfShapeRecords* glyph : glyphs.items) {
        writeOffset(offset);
        offset += glyph->size;
    }
    if (!hasNoCodeTable || count != 0)
        writeOffset(offset); // of the code table
    if (stream.isCounter())
        stream.count(glyphs.size);
    else
        glyphs.write(stream);
}

void SwfTagDefineFont2::writeLayout(SwfOStream& stream) {
    stream.writeUI16(ascent);
    stream.writeUI16(descent);
    stream.writeSI16(leading);
    for (const int16_t advance : advances)
        stream.writeSI16(advance);
    for (const SwfRect& rect : bounds)
        rect.write(stream);
    if (lacksKerning && kerning.empty())
        return;
    const bool hasKerning = stream.context.fullForm || stream.context.version >= firstKerningVersion;
    const uint32_t count = hasKerning ? kerning.size() : 0;
    if (count > UINT16_MAX)
        throw SwfException(SwfError::doesNotFit, "a font of more than 65,535 kerning pairs");
    if (!hasKerning && !kerning.empty() && !stream.isCounter())
        addWarning(stream.context, SwfWarning::Kind::cut,
                   "its kerning pairs are dropped: movies below version 7 have none here");
    stream.writeUI16(static_cast<uint16_t>(count));
    const bool wide = stream.context.wideKerningCodes;
    bool cutCodes = false;
    for (uint32_t i = 0; i < count; ++i) {
        const SwfKerningRecord& record = kerning[i];
        cutCodes |= !wide && (record.kerningCode1 | record.kerningCode2) > UINT8_MAX;
        for (const uint16_t code : {record.kerningCode1, record.kerningCode2}) {
            if (wide)
                stream.writeUI16(code);
            else
                stream.writeUI8(static_cast<uint8_t>(code));
        }
        stream.writeSI16(record.adjustment);
    }
    if (cutCodes && !stream.isCounter())
        addWarning(stream.context, SwfWarning::Kind::cut, "kerning codes above 255 are cut to bytes");
}

SwfTagDefineFont3::SwfTagDefineFont3(SwfIStream& stream) : SwfTagDefineFont3() { read(stream); }

void SwfTagDefineFont3::writeBody(SwfOStream& stream) {
    stream.context.wideKerningCodes = hasWideCode(codes); // of the classic form
    SwfTagDefineFont2::writeBody(stream);
}

} // namespace libswf
