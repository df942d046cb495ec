// What a case file cannot say about shapes: large counts, warnings of the writer, and lists longer than its blocks.
#include "Tests.h"

#include "SwfTagDefineMorphShape.h"
#include "SwfTagDefineShape.h"

using namespace libswf;

namespace {

Bytes bodyOf(SwfTag& tag, SwfWarnings* warnings = nullptr) {
    SwfContext context;
    context.version = 8;
    context.warnings = warnings;
    return ::bodyOf(tag, context);
}

// What the writer says about a tag that it refuses.
std::string refusalOf(SwfTag& tag) {
    try {
        bodyOf(tag);
    } catch (const SwfException& error) {
        EXPECT_EQ(error.code(), SwfError::doesNotFit);
        return error.what();
    }
    return "written";
}

template <class Tag>
void addFills(Tag& tag, uint32_t count) {
    for (uint32_t i = 0; i < count; ++i)
        tag.fillStyles.items.add(std::make_unique<SwfSolidFillStyle>());
}

TEST(Shapes, LongStyleCounts) {
    struct {
        uint32_t count;
        std::vector<uint8_t> bytes; // the count in the file; empty when it is refused
    } const rows[] = {
        {254, {0xFE}}, {255, {0xFF, 0xFF, 0x00}}, {300, {0xFF, 0x2C, 0x01}}, {32767, {0xFF, 0xFF, 0x7F}}, {32768, {}},
        {65536, {}}};
    constexpr size_t countAt = 4; // after the id and an empty rectangle
    for (const auto& row : rows) {
        SCOPED_TRACE(row.count);
        SwfTagDefineShape shape;
        SwfTagDefineShape3 shape3;
        SwfTagDefineMorphShape2 morph;
        shape.characterId = 77;
        addFills(shape, row.count);
        addFills(shape3, row.count);
        for (uint32_t i = 0; i < row.count; ++i)
            morph.fillStyles.items.add(std::make_unique<SwfMorphSolidFillStyle>());
        SwfContext context;
        EXPECT_EQ(shape.fillStyles.getSize(context), (row.count < 255 ? 1 : 3) + row.count * 4);
        if (row.count > 254)
            EXPECT_EQ(refusalOf(shape).find("ShapeId 77: "), 0u);
        else
            EXPECT_EQ(bodyOf(shape)[countAt], row.count);
        if (row.bytes.empty()) {
            EXPECT_NE(refusalOf(shape3), "written");
            EXPECT_NE(refusalOf(morph), "written");
            continue;
        }
        const std::vector<uint8_t> body = bodyOf(shape3);
        EXPECT_TRUE(std::equal(row.bytes.begin(), row.bytes.end(), body.begin() + countAt));
        EXPECT_EQ(bodyOf(morph).size(), 2 + 4 * 2 + 1 + 4 + row.bytes.size() + row.count * 9 + 1 + 2 * 2);
    }
}

TEST(Shapes, TheFirstVersionReads255StylesThatItCannotWrite) {
    std::vector<uint8_t> body = {1, 0, 0x08, 0, 0xFF};
    body.resize(body.size() + 255 * 4);
    for (uint8_t byte : {0, 0x81, 0})
        body.push_back(byte);
    SwfIStream stream(body.data(), body.size());
    SwfTagDefineShape shape(stream);
    EXPECT_EQ(shape.fillStyles.items.size(), 255u);
    EXPECT_NE(stream.inexact(), nullptr);
    EXPECT_NE(refusalOf(shape), "written");
}

TEST(Shapes, TheFourthVersionAloneHasTheSecondKindOfLines) {
    const std::vector<uint8_t> body(30);
    SwfIStream stream(body.data(), body.size());
    const SwfTagDefineShape4 shape(stream);
    EXPECT_FALSE(stream.context.lineStyle2Mode);
}

TEST(Shapes, EdgesTooWideAreCutWithAWarning) {
    for (const bool isPacked : {false, true}) {
        SwfTagDefineShape shape;
        auto part = std::make_unique<SwfShapeRecords>();
        if (isPacked) {
            shape.records.packEdges();
            part->packEdges();
        }
        shape.records.addLine(65536, 0);
        part->addCurve(0, 0, 0, INT32_MIN);
        part->addLine(65535, 0);
        shape.records.append(std::move(part));
        SwfWarnings warnings;
        const std::vector<uint8_t> body = bodyOf(shape, &warnings);
        // A width of 18 is told as 0; the delta has its 18 bits.
        EXPECT_EQ(std::vector<uint8_t>(body.begin() + 6, body.begin() + 10),
                  (std::vector<uint8_t>{0x11, 0xC0, 0x40, 0x00}));
        ASSERT_EQ(warnings.total(), 1u);
        EXPECT_TRUE(warnings.items()[0].text().starts_with("cut: "));
        EXPECT_NE(warnings.items()[0].text().find("DefineShape"), std::string::npos);
        EXPECT_NE(warnings.items()[0].reason.find("2 edges have"), std::string::npos);
    }
}

void addRandomRecord(SwfShapeRecords& records, std::mt19937& random) {
    auto delta = [&] { return (static_cast<int32_t>(random() % 131072) - 65536) >> random() % 17; };
    const uint32_t kind = random() % 8;
    if (kind == 0) {
        SwfStyleChange& change = records.addStyleChange();
        change.stateMoveTo = true;
        change.moveDeltaX = static_cast<int32_t>(random()) >> 1;
        change.moveDeltaY = static_cast<int32_t>(random()) >> random() % 31;
        change.moveDeltaY >>= 1;
        change.stateLineStyle = random() % 2 != 0;
    } else if (kind < 5) {
        records.addLine(random() % 4 == 0 ? 0 : delta(), delta());
    } else {
        records.addCurve(delta(), delta(), delta(), delta());
    }
}

// Reads the body, all of it, and writes it again. `records` is how many there are.
void expectBack(const std::vector<uint8_t>& body, uint32_t records) {
    SwfIStream stream(body.data(), body.size());
    SwfTagDefineShape3 back(stream);
    EXPECT_EQ(stream.position(), body.size());
    EXPECT_EQ(back.records.count(), records);
    EXPECT_TRUE(bodyOf(back) == body);
}

TEST(Shapes, LongListsComeBack) {
    std::mt19937 random(1);
    SwfTagDefineShape3 shape;
    for (int i = 0; i < 20000; ++i)
        addRandomRecord(shape.records, random);
    std::vector<uint8_t> body = bodyOf(shape);
    expectBack(body, shape.records.count());
    body.pop_back();
    SwfIStream cut(body.data(), body.size());
    EXPECT_THROW(SwfTagDefineShape3{cut}, SwfException);
}

TEST(Shapes, EdgesKeptAsBitsAreWrittenAlike) {
    // In parts, so that they are joined at any bit of a byte.
    for (const std::vector<int>& parts : std::vector<std::vector<int>>{{0}, {1}, {7, 0, 1, 2, 3, 50}, {9000, 9000}}) {
        SwfTagDefineShape3 shape, packed;
        packed.records.packEdges();
        std::mt19937 random(2), again(2);
        for (const int count : parts) {
            auto part = std::make_unique<SwfShapeRecords>();
            part->packEdges();
            for (int i = 0; i < count; ++i) {
                addRandomRecord(shape.records, random);
                addRandomRecord(*part, again);
            }
            packed.records.append(std::move(part));
        }
        EXPECT_EQ(bodyOf(packed), bodyOf(shape)) << parts[0];
    }
}

TEST(Shapes, NewStylesMayComeAtAnyPlace) {
    for (int edges = 3200; edges < 3290; ++edges) { // of 10 bits each: some 4 KB, which are written in one go
        SwfTagDefineShape3 shape;
        for (int i = 0; i < edges; ++i)
            shape.records.addLine(1, 0);
        SwfStyleChange& change = shape.records.addStyleChange();
        change.newStyles = std::make_unique<SwfNewStyles>();
        change.stateMoveTo = true;
        change.moveDeltaX = 1 << 20;
        change.moveDeltaY = -1;
        expectBack(bodyOf(shape), shape.records.count());
    }
}

} // namespace
