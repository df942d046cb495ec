// Tags that are too large for a case file: fonts, texts, tables.
#include "Tests.h"

namespace {

using namespace libswf;

Bytes bodyOf(SwfTag& tag, SwfWarnings* warnings = nullptr) {
    SwfContext context;
    context.version = 8;
    context.warnings = warnings;
    return ::bodyOf(tag, context);
}

template <class Tag>
Tag readBody(const std::vector<uint8_t>& body, uint8_t version) {
    SwfIStream stream(body.data(), body.size());
    stream.context.version = version;
    stream.setBodyEnd(body.size());
    return Tag(stream);
}

// A glyph of `lines` vertical lines of 10 bits each.
void addGlyph(SwfShapes& glyphs, uint32_t lines) {
    SwfShapeRecords& glyph = glyphs.add();
    for (uint32_t i = 0; i < lines; ++i)
        glyph.addLine(0, 1);
}

// A DefineFont2 whose glyphs all lie in the same bytes: 4 × fours vertical lines.
std::vector<uint8_t> overlappingFont(uint16_t glyphs, uint32_t fours) {
    const uint32_t tables = (glyphs + 1u) * 4, glyphSize = 2 + 5 * fours;
    std::vector<uint8_t> body = {1, 0, 0x08, 0, 0};
    auto append = [&](uint32_t value, uint32_t bytes) {
        for (; bytes != 0; --bytes, value >>= 8)
            body.push_back(static_cast<uint8_t>(value));
    };
    append(glyphs, 2);
    for (uint32_t i = 0; i < glyphs; ++i)
        append(tables, 4);
    append(tables + glyphSize, 4);
    body.push_back(0x10);
    for (uint32_t i = 0; i < fours; ++i)
        body.insert(body.end(), {0xC1, 0x70, 0x5C, 0x17, 0x05});
    body.resize(body.size() + 1 + glyphs); // the end record, the codes
    return body;
}

TEST(Fonts, OffsetsGrowWithTheGlyphs) {
    // Offset table and glyphs take 65,535 bytes with 52,419 lines: 6 and 65,526 and 3.
    for (const auto& [lines, wide] : {std::pair(52419u, false), std::pair(52420u, true)}) {
        SwfTagDefineFont2 font;
        addGlyph(font.glyphs, lines);
        addGlyph(font.glyphs, 1);
        for (uint16_t code : {65, 66})
            font.codes.append(code);
        const std::vector<uint8_t> body = bodyOf(font);
        const auto read = readBody<SwfTagDefineFont2>(body, 8);
        EXPECT_EQ(read.wideOffsets, wide);
        ASSERT_EQ(read.glyphs.count(), 2u);
        EXPECT_EQ(read.glyphs.items[0]->count(), lines);
        EXPECT_EQ(read.codes[1], 66);
    }
}

TEST(Fonts, WrappedOffsetsAreWarnedOf) {
    for (const auto& [lines, warned] : {std::pair(52000u, 0u), std::pair(53000u, 1u)}) {
        SwfTagDefineFont font;
        addGlyph(font.glyphs, lines);
        addGlyph(font.glyphs, 1);
        SwfWarnings warnings;
        const std::vector<uint8_t> body = bodyOf(font, &warnings);
        EXPECT_EQ(warnings.total(), warned);
        const uint64_t offset = 4 + font.glyphs.items[0]->size;
        EXPECT_EQ(body[4] | body[5] << 8, static_cast<int>(offset & 0xFFFF));
    }
}

TEST(Fonts, GlyphsMayShareBytesUpToALimit) {
    // 92 and 97 bytes of glyph in 596 and 601 bytes from the offset table on.
    EXPECT_EQ(readBody<SwfTagDefineFont2>(overlappingFont(100, 18), 5).glyphs.count(), 100u);
    EXPECT_THROW(readBody<SwfTagDefineFont2>(overlappingFont(100, 19), 5), SwfException);
    EXPECT_THROW(readBody<SwfTagDefineFont2>(overlappingFont(65535, 200000), 5), SwfException);
}

// Glyphs of no bits: 255 in each record of two bytes.
std::vector<uint8_t> textOfNoBits(size_t records) {
    std::vector<uint8_t> body = {1, 0, 0, 0, 0, 0}; // id, bounds, matrix, widths
    for (size_t i = 0; i < records; ++i)
        body.insert(body.end(), {0x80, 255});
    body.push_back(0);
    return body;
}

TEST(Fonts, TextsMayHaveManyGlyphsUpToALimit) {
    // 255 r entries in 2 r + 7 bytes: 65,536 and 8 per byte are passed by r = 275.
    EXPECT_EQ(readBody<SwfTagDefineText2>(textOfNoBits(274), 8).records.size(), 274u);
    EXPECT_THROW(readBody<SwfTagDefineText2>(textOfNoBits(275), 8), SwfException);

    SwfTagDefineText text; // of the smallest glyphs that are written
    for (int i = 0; i < 2000; ++i)
        text.records.append({}).glyphs.resize(255);
    EXPECT_EQ(readBody<SwfTagDefineText>(bodyOf(text), 8).records.size(), 2000u);
}

TEST(Fonts, CountsAboveTheirFieldsAreRefused) {
    SwfTagDefineFont2 glyphs;
    for (uint32_t i = 0; i <= UINT16_MAX; ++i)
        glyphs.glyphs.add();
    EXPECT_EQ(codeOf([&] { bodyOf(glyphs); }), SwfError::doesNotFit);

    SwfTagDefineFont3 kerning;
    kerning.kerning.resize(UINT16_MAX + 1);
    EXPECT_EQ(codeOf([&] { bodyOf(kerning); }), SwfError::doesNotFit);

    SwfTagDefineFontInfo name;
    name.fontName = SwfString(std::string(255, 'n'));
    EXPECT_EQ(codeOf([&] { bodyOf(name); }), 0u);
    name.fontName = SwfString(std::string(256, 'n'));
    EXPECT_EQ(codeOf([&] { bodyOf(name); }), SwfError::doesNotFit);

    SwfTagDefineFontAlignZones zones;
    zones.records.append({}).zones.resize(256);
    EXPECT_EQ(codeOf([&] { bodyOf(zones); }), SwfError::doesNotFit);

    SwfTagSymbolClass symbols;
    symbols.symbols.resize(UINT16_MAX);
    EXPECT_EQ(bodyOf(symbols).size(), 2u + UINT16_MAX * 3u);
    symbols.symbols.append({});
    EXPECT_EQ(codeOf([&] { bodyOf(symbols); }), SwfError::doesNotFit);

    SwfTagDefineText text;
    text.records.append({}).glyphs.resize(255);
    EXPECT_EQ(codeOf([&] { bodyOf(text); }), 0u);
    text.records[0].glyphs.resize(256);
    EXPECT_EQ(codeOf([&] { bodyOf(text); }), SwfError::doesNotFit);
}

} // namespace
