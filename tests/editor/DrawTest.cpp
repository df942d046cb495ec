// Tags as pictures: small hand-made tags, looked at pixel by pixel, and every tag of the corpus.
#include <gtest/gtest.h>

#include <QPainter>

#include <map>

#include "BitmapImages.h"
#include "Glyphs.h"
#include "ImageCodec.h"
#include "SingleTag.h"
#include "SwfMovie.h"
#include "SwfTagDefineSprite.h"
#include "SwfUtils.h"
#include "TagDrawing.h"
#include "TagWords.h"
#include "Waveform.h"

namespace {

using namespace zelk;
using namespace libswf;
namespace fs = std::filesystem;

// --- tags as XML: lengths in pixels ----------------------------------------------------------------------------------

std::string twips(int pixels) { return std::to_string(20 * pixels); }

std::string solid(const std::string& color) { return "<SolidFillStyle Color=\"" + color + "\" />"; }

std::string line(int width, const std::string& color) {
    return "<LineStyle Width=\"" + twips(width) + "\" Color=\"" + color + "\" />";
}

std::string moveTo(int x, int y, const std::string& styles) {
    return "<StyleChange><Move DX=\"" + twips(x) + "\" DY=\"" + twips(y) + "\" />" + styles + "</StyleChange>";
}

std::string set(const char* what, int index) {
    return "<Set" + std::string(what) + " Index=\"" + std::to_string(index) + "\" />";
}

std::string lineBy(int dx, int dy) { return "<Line DX=\"" + twips(dx) + "\" DY=\"" + twips(dy) + "\" />"; }

// Clockwise, so that the right side is inside.
std::string square(int x, int y, int side, const std::string& styles) {
    return moveTo(x, y, styles) + lineBy(side, 0) + lineBy(0, side) + lineBy(-side, 0) + lineBy(0, -side);
}

std::string shape3(const std::string& fills, const std::string& lines, const std::string& edges) {
    return "<DefineShape3 ShapeId=\"1\"><Bounds /><FillStyles>" + fills + "</FillStyles><LineStyles>" + lines +
           "</LineStyles><Edges>" + edges + "</Edges></DefineShape3>";
}

std::string shape4(const std::string& attributes, const std::string& fills, const std::string& lines,
                   const std::string& edges) {
    return "<DefineShape4 ShapeId=\"1\" " + attributes + "><FillStyles>" + fills + "</FillStyles><LineStyles2>" +
           lines + "</LineStyles2><Shapes>" + edges + "</Shapes></DefineShape4>";
}

// The gradient's square from 0 to 64 pixels.
std::string gradient(const std::string& type, int spread, const std::string& color2) {
    return "<GradientFillStyle Type=\"" + type +
           "\"><Matrix><Translate TranslateX=\"640\" TranslateY=\"640\" /><Scale ScaleX=\"0.0390625\" "
           "ScaleY=\"0.0390625\" /></Matrix><GradientRecords InterpolationMode=\"0\" SpreadMode=\"" +
           std::to_string(spread) +
           "\"><GradientRecord Ratio=\"0\" Color=\"ff0000ff\" /><GradientRecord Ratio=\"255\" Color=\"" + color2 +
           "\" /></GradientRecords></GradientFillStyle>";
}

std::string bitmapFill(const char* type) {
    return "<BitmapFillStyle Type=\"" + std::string(type) +
           "\" BitmapId=\"7\"><Matrix><Translate TranslateX=\"200\" TranslateY=\"200\" /><Scale ScaleX=\"200\" "
           "ScaleY=\"200\" /></Matrix></BitmapFillStyle>";
}

std::string rectangle(const char* name, int x, int y, int width, int height) {
    return "<" + std::string(name) + " MinX=\"" + twips(x) + "\" MinY=\"" + twips(y) + "\" MaxX=\"" + twips(x + width) +
           "\" MaxY=\"" + twips(y + height) + "\" />";
}

// A square that grows into one twice as large; its right side bulges in the end, and a fill and a line change.
std::string morph() {
    const std::string styles = set("Fill1", 1) + set("Line", 1);
    const std::string bulge = "<Curve CDX=\"400\" CDY=\"400\" ADX=\"-400\" ADY=\"400\" />";
    return "<DefineMorphShape ShapeId=\"1\">" + rectangle("StartBounds", 0, 0, 20, 20) +
           rectangle("EndBounds", 0, 0, 40, 40) +
           "<MorphFillStyles><MorphSolidFillStyle StartColor=\"ff\" EndColor=\"ff0000ff\" /></MorphFillStyles>"
           "<MorphLineStyles><MorphLineStyle StartWidth=\"0\" EndWidth=\"0\" StartColor=\"0\" EndColor=\"0\" />"
           "</MorphLineStyles><StartEdges>" +
           square(0, 0, 20, styles) + "</StartEdges><EndEdges>" + moveTo(0, 0, "") + lineBy(40, 0) + bulge +
           lineBy(-40, 0) + lineBy(0, -40) + "</EndEdges></DefineMorphShape>";
}

// One glyph: the left upper quarter of the em square above the baseline.
std::string font(const char* name, int unit) {
    const std::string size = std::to_string(512 * unit), minus = "-" + size;
    return "<" + std::string(name) + " FontId=\"5\" FontName=\"x\"><Glyphs><Glyphs><StyleChange><Move DX=\"0\" DY=\"" +
           minus + "\" /><SetFill1 Index=\"1\" /></StyleChange><Line DX=\"" + size +
           "\" DY=\"0\" /><Line DX=\"0\" DY=\"" + size + "\" /><Line DX=\"" + minus +
           "\" DY=\"0\" /><Line DX=\"0\" DY=\"" + minus +
           "\" /></Glyphs></Glyphs><CodesTable><Code Value=\"65\" /></CodesTable><AdvanceTable><Code Value=\"" + size +
           "\" /></AdvanceTable></" + name + ">";
}

std::string text(int fontId) {
    return "<DefineText2 Id=\"1\"><Matrix><Translate TranslateX=\"200\" TranslateY=\"0\" /></Matrix><TextRecords>"
           "<TextRecord XOffset=\"0\" YOffset=\"600\" Color=\"ff0000ff\" FontId=\"" +
           std::to_string(fontId) +
           "\" Height=\"400\" Type=\"true\"><GlyphEntries><GlyphEntry Index=\"0\" Advance=\"400\" /><GlyphEntry "
           "Index=\"0\" Advance=\"400\" /></GlyphEntries></TextRecord></TextRecords></DefineText2>";
}

std::string place(int depth, int id, int x, const std::string& more = {}, const std::string& attributes = {}) {
    return "<PlaceObject2 Depth=\"" + std::to_string(depth) + "\" CharacterId=\"" + std::to_string(id) + "\" " +
           attributes + "><Matrix><Translate TranslateX=\"" + twips(x) + "\" TranslateY=\"0\" /></Matrix>" + more +
           "</PlaceObject2>";
}

// --- drawing ---------------------------------------------------------------------------------------------------------

// Four pixels, each of a colour.
QImage fourPixels() {
    QImage image(2, 2, QImage::Format_ARGB32);
    image.setPixel(0, 0, 0xFFFF0000);
    image.setPixel(1, 0, 0xFF00FF00);
    image.setPixel(0, 1, 0xFF0000FF);
    image.setPixel(1, 1, 0x80FFFFFF);
    return image;
}

QImage painted(const Drawing& drawing, const BitmapLookup& bitmaps) {
    QImage image(100, 100, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.scale(0.05, 0.05);
    drawing.paint(painter, bitmaps);
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

using Elements = std::map<uint16_t, std::string>;

Characters charactersOf(const Elements& elements) {
    Characters characters;
    characters.definition = [&elements](uint16_t id) {
        const auto found = elements.find(id);
        return found == elements.end() ? nullptr : compileTag(found->second, 8, nullptr);
    };
    characters.bitmap = [](uint16_t id) { return id == 7 ? fourPixels() : QImage(); };
    return characters;
}

struct Pixel {
    int x, y;
    QRgb color;
};

struct DrawCase {
    const char* name;
    std::string element;
    std::vector<Pixel> pixels;
    double ratio = 0;
    Elements others = {};
};

constexpr QRgb nothing = 0, red = 0xFFFF0000, green = 0xFF00FF00, blue = 0xFF0000FF, black = 0xFF000000;

bool isNear(QRgb a, QRgb b) {
    const auto near = [](int left, int right) { return std::abs(left - right) <= 6; };
    return near(qAlpha(a), qAlpha(b)) &&
           (qAlpha(a) == 0 || (near(qRed(a), qRed(b)) && near(qGreen(a), qGreen(b)) && near(qBlue(a), qBlue(b))));
}

std::vector<DrawCase> shapeCases() {
    const std::string redBlue = solid("ff0000ff") + solid("ffff");
    const std::string half = "<StyleChange>" + set("Fill1", 2) + "</StyleChange>";
    const std::string newStyles =
        "<NewStyles><FillStyles>" + solid("ff00ff") + "</FillStyles><LineStyles /></NewStyles>";
    const std::string flat = "<LineStyle Width=\"200\" Color=\"ff\"><BitsField EndCapStyle=\"1\" StartCapStyle=\"1\" "
                             "JoinStyle=\"1\" /></LineStyle>";
    const std::string miter = "<LineStyle Width=\"200\" Color=\"ff\" MitterLimitFactor=\"768\"><BitsField "
                              "JoinStyle=\"2\" EndCapStyle=\"1\" StartCapStyle=\"1\" /></LineStyle>";
    const std::string filled =
        "<LineStyle Width=\"400\"><BitsField HasFill=\"1\" StartCapStyle=\"1\" EndCapStyle=\"1\" "
        "/><FillStyle>" +
        gradient("Linear", 0, "ffff") + "</FillStyle></LineStyle>";
    const std::string along = moveTo(20, 20, set("Line", 1)) + lineBy(40, 0);
    return {
        {"hole",
         shape3(redBlue, "", square(10, 10, 60, set("Fill1", 1)) + square(30, 30, 20, set("Fill1", 1))),
         {{20, 20, red}, {40, 40, nothing}, {5, 5, nothing}, {60, 60, red}}},
        {"the other side",
         shape3(redBlue, "",
                moveTo(10, 10, set("Fill0", 2)) + lineBy(0, 40) + lineBy(40, 0) + lineBy(0, -40) + lineBy(-40, 0)),
         {{30, 30, blue}, {60, 60, nothing}}},
        {"a fill on each side",
         shape3(redBlue, "",
                moveTo(40, 10, set("Fill0", 2) + set("Fill1", 1)) + lineBy(0, 40) +
                    moveTo(40, 50, set("Fill0", 0) + set("Fill1", 1)) + lineBy(-30, 0) + lineBy(0, -40) +
                    lineBy(30, 0) + moveTo(40, 10, set("Fill1", 2)) + lineBy(30, 0) + lineBy(0, 40) + lineBy(-30, 0)),
         {{25, 30, red}, {55, 30, blue}, {80, 30, nothing}, {39, 12, red}, {41, 48, blue}}},
        {"an edge inside of one fill",
         shape3(redBlue, "",
                square(10, 10, 60, set("Fill1", 1)) + moveTo(10, 40, set("Fill0", 1) + set("Fill1", 1)) +
                    lineBy(60, 0)),
         {{40, 30, red}, {40, 50, red}, {40, 40, red}}},
        {"edges out of order",
         shape3(redBlue, "",
                moveTo(10, 10, set("Fill1", 1)) + lineBy(40, 0) + moveTo(50, 50, "") + lineBy(-40, 0) +
                    moveTo(50, 10, "") + lineBy(0, 40) + moveTo(10, 50, "") + lineBy(0, -40)),
         {{12, 30, red}, {48, 30, red}, {30, 48, red}, {60, 30, nothing}}},
        {"later styles on top",
         shape3(redBlue, "", square(10, 10, 40, set("Fill1", 2)) + half + square(30, 10, 40, set("Fill1", 1))),
         {{20, 30, blue}, {40, 30, blue}, {60, 30, red}}},
        {"new styles on top",
         shape3(redBlue, "", square(10, 10, 40, set("Fill1", 2)) + square(30, 10, 40, set("Fill1", 1) + newStyles)),
         {{20, 30, blue}, {40, 30, green}, {60, 30, green}}},
        {"colours without alpha are opaque",
         "<DefineShape ShapeId=\"1\"><Bounds /><FillStyles>" + solid("ff000000") +
             "</FillStyles><LineStyles /><Edges>" + square(10, 10, 40, set("Fill1", 1)) + "</Edges></DefineShape>",
         {{30, 30, red}}},
        {"alpha", shape3(solid("ff000080"), "", square(10, 10, 40, set("Fill1", 1))), {{30, 30, 0x80FF0000}}},
        {"even and odd",
         shape4("", redBlue, "", square(10, 10, 40, set("Fill1", 1)) + square(30, 30, 40, set("Fill1", 1))),
         {{40, 40, nothing}, {20, 20, red}}},
        {"winding",
         shape4("Reserved=\"1\"", redBlue, "",
                square(10, 10, 40, set("Fill1", 1)) + square(30, 30, 40, set("Fill1", 1))),
         {{40, 40, red}, {20, 20, red}}},
        {"a curve",
         shape3(redBlue, "",
                moveTo(10, 50, set("Fill1", 1)) + "<Curve CDX=\"800\" CDY=\"-1600\" ADX=\"800\" ADY=\"1600\" />" +
                    lineBy(-80, 0)),
         {{50, 15, red}, {50, 5, nothing}, {14, 15, nothing}}},
        {"a line has its width",
         shape3("", line(10, "ff"), along),
         {{40, 16, black}, {40, 23, black}, {40, 13, nothing}, {40, 27, nothing}, {16, 20, black}}},
        {"flat caps", shape4("", "", flat, along), {{40, 16, black}, {16, 20, nothing}, {64, 20, nothing}}},
        {"bevel join",
         shape4("", "", flat, moveTo(20, 60, set("Line", 1)) + lineBy(40, 0) + lineBy(0, -40)),
         {{64, 64, nothing}, {61, 61, black}}},
        {"miter join",
         shape4("", "", miter, moveTo(20, 60, set("Line", 1)) + lineBy(40, 0) + lineBy(0, -40)),
         {{64, 64, black}}},
        {"a closed line has no caps",
         shape4("", "", miter, square(20, 20, 40, set("Line", 1))),
         {{16, 16, black}, {64, 64, black}}},
        {"a fill in a line",
         shape4("", "", filled, moveTo(0, 30, set("Line", 1)) + lineBy(64, 0)),
         {{2, 30, 0xFFF70008}, {32, 30, 0xFF800080}, {61, 30, 0xFF0B00F4}, {32, 45, nothing}}},
    };
}

std::vector<DrawCase> fillCases() {
    const std::string all = square(0, 0, 100, set("Fill1", 1));
    const auto with = [&](const std::string& fill) { return shape3(fill, "", all); };
    std::string focal = gradient("FocalRadialGradient", 0, "ffff");
    focal.replace(focal.find("<GradientRecords"), focal.find("<GradientRecord Ratio") - focal.find("<GradientRecords"),
                  "<GradientRecords High=\"128\" Low=\"0\"><BitsField NumGradients=\"2\" InterpolationMode=\"0\" "
                  "SpreadMode=\"0\" />");
    std::string squashed = gradient("Linear", 0, "ffff");
    squashed.replace(squashed.find("0.0390625"), 9, "0");
    squashed.replace(squashed.find("0.0390625"), 9, "0");
    return {
        {"linear",
         with(gradient("Linear", 0, "ffff")),
         {{1, 50, 0xFFF90006}, {32, 50, 0xFF7D0082}, {63, 50, 0xFF0200FD}, {90, 50, blue}}},
        {"reflected", with(gradient("Linear", 1, "ffff")), {{32, 50, 0xFF7D0082}, {95, 50, 0xFF7F0080}}},
        {"repeated", with(gradient("Linear", 2, "ffff")), {{60, 50, 0xFF0D00F2}, {68, 50, 0xFFED0012}}},
        {"fading", with(gradient("Linear", 0, "ff000000")), {{32, 50, 0x7DFF0000}, {80, 50, nothing}}},
        {"radial",
         with(gradient("Radial", 0, "ffff")),
         {{32, 32, 0xFFFC0003}, {48, 32, 0xFF7C0083}, {16, 32, 0xFF83007C}, {80, 80, blue}}},
        {"focal", with(focal), {{48, 32, 0xFFF4000B}, {16, 32, 0xFF5500AA}, {80, 80, blue}}},
        {"squashed to nothing", with(squashed), {{32, 32, blue}}},
        // Pixels of 10, the first at 10, 10.
        {"tiled",
         with(bitmapFill("NonSmoothedTiled")),
         {{15, 15, red},
          {25, 15, green},
          {15, 25, blue},
          {25, 25, 0x80FFFFFF},
          {35, 15, red},
          {5, 15, green},
          {95, 95, red}}},
        {"clipped",
         with(bitmapFill("NonSmoothedClipped")),
         {{15, 15, red}, {25, 15, green}, {95, 15, green}, {2, 2, red}, {15, 95, blue}, {95, 95, 0x80FFFFFF}}},
        {"smooth", with(bitmapFill("Tiled")), {{15, 15, 0xFEE80C0A}, {20, 15, 0xFB738A08}}},
    };
}

std::vector<DrawCase> otherCases() {
    const std::string redSquare = shape3(solid("ff0000ff"), "", square(0, 0, 20, set("Fill1", 1)));
    const std::string toBlue = "<ColorTransform MulR=\"0\" MulG=\"0\" MulB=\"0\" MulA=\"256\" AddB=\"255\" />";
    const Elements font2 = {{5, font("DefineFont2", 1)}}, font3 = {{5, font("DefineFont3", 20)}};
    const std::vector<Pixel> twoGlyphs = {{15, 25, red}, {25, 25, nothing}, {35, 25, red}, {15, 15, nothing}};
    const std::string field =
        "<DefineEditText Id=\"1\" FontId=\"5\" FontHeight=\"400\" Color=\"ff0000ff\" Align=\"Right\" Leading=\"0\">" +
        rectangle("Bounds", 0, 0, 60, 40) +
        "<BitsField UseOutlines=\"1\" Border=\"1\" /><InitialText>A</InitialText></DefineEditText>";
    return {
        {"a morph shape at its start", morph(), {{10, 10, black}, {25, 10, nothing}}, 0},
        {"half way",
         morph(),
         {{10, 10, 0xFF800000}, {28, 28, 0xFF800000}, {33, 15, 0xFF800000}, {38, 15, nothing}},
         0.5},
        {"at its end", morph(), {{10, 10, red}, {38, 38, red}, {45, 20, red}, {55, 20, nothing}}, 1},
        {"glyphs of a text", text(5), twoGlyphs, 0, font2},
        {"glyphs in small units", text(5), twoGlyphs, 0, font3},
        {"a text without its font", text(6), {{20, 25, red}, {20, 10, nothing}}, 0, font2},
        {"a text field", field, {{50, 17, red}, {30, 20, 0xFFFFFFFF}, {70, 20, nothing}}, 0, font2},
        {"the first frame of a sprite",
         "<DefineSprite Id=\"9\">" + place(2, 1, 30) + place(1, 1, 0, toBlue) + "<ShowFrame />" + place(3, 1, 60) +
             "</DefineSprite>",
         {{10, 10, blue}, {40, 10, red}, {70, 10, nothing}, {25, 10, nothing}},
         0,
         {{1, redSquare}}},
        {"a bitmap in other colours",
         "<DefineSprite Id=\"9\">" +
             place(1, 1, 0, "<ColorTransform MulR=\"256\" MulG=\"128\" MulB=\"256\" MulA=\"128\" AddB=\"100\" />") +
             "</DefineSprite>",
         {{15, 15, 0x7FFF0064}, {25, 15, 0x7F007F64}, {25, 25, 0x40FF7FFF}},
         0,
         {{1, shape3(bitmapFill("NonSmoothedTiled"), "", square(0, 0, 100, set("Fill1", 1)))}}},
        {"a mask does not hide",
         "<DefineSprite Id=\"9\">" + place(1, 1, 0) + place(2, 1, 0, toBlue, "ClipDepth=\"3\"") +
             "<ShowFrame /></DefineSprite>",
         {{10, 10, red}},
         0,
         {{1, redSquare}}},
    };
}

class Drawn : public testing::TestWithParam<DrawCase> {};

TEST_P(Drawn, HasThesePixels) {
    const DrawCase& test = GetParam();
    const auto tag = compileTag(test.element, 8, nullptr);
    ASSERT_NE(tag, nullptr);
    const Characters characters = charactersOf(test.others);
    const QImage image = painted(drawTag(*tag, characters, test.ratio), characters.bitmap);
    for (const Pixel& pixel : test.pixels) {
        EXPECT_TRUE(isNear(image.pixel(pixel.x, pixel.y), pixel.color))
            << pixel.x << ", " << pixel.y << ": " << std::hex << image.pixel(pixel.x, pixel.y) << ", not "
            << pixel.color;
    }
}

const auto nameOf = [](const auto& info) {
    std::string name = info.param.name;
    std::ranges::replace_if(
        name, [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
    return name;
};
INSTANTIATE_TEST_SUITE_P(Shapes, Drawn, testing::ValuesIn(shapeCases()), nameOf);
INSTANTIATE_TEST_SUITE_P(Fills, Drawn, testing::ValuesIn(fillCases()), nameOf);
INSTANTIATE_TEST_SUITE_P(Others, Drawn, testing::ValuesIn(otherCases()), nameOf);

TEST(Drawing, HairlinesAreAPixelWideAtEachSize) {
    const auto tag =
        compileTag(shape3("", "<LineStyle Width=\"0\" Color=\"ff\" />", moveTo(0, 50, set("Line", 1)) + lineBy(100, 0)),
                   8, nullptr);
    const Drawing drawing = drawTag(*tag, {});
    for (double scale : {0.01, 0.05, 1.0}) {
        QImage image(20, 1100, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.scale(scale, scale);
        drawing.paint(painter, nullptr);
        painter.end();
        int darkness = 0;
        for (int y = 0; y < image.height(); ++y)
            darkness += qAlpha(image.pixel(10, y));
        EXPECT_NEAR(darkness, 255, 5) << scale;
    }
}

TEST(Drawing, GlyphTableTellsTheCodes) {
    const auto tag = std::dynamic_pointer_cast<SwfGlyphFont>(compileTag(font("DefineFont3", 20), 8, nullptr));
    const GlyphTable table = glyphTable(tag);
    ASSERT_EQ(table.cells.size(), 1U);
    EXPECT_EQ(table.cells[0].code, 65);
    EXPECT_TRUE(table.cells[0].place.contains(table.drawing.bounds()));
}

TEST(Drawing, WaveformShowsTheLoudestOfEachColumn) {
    std::vector<int16_t> samples(20'000); // stereo, silent but for one sample on the right
    samples[10'001] = INT16_MIN;
    const Drawing drawing = waveform(samples, 2);
    ASSERT_EQ(drawing.pieces().size(), 2U);
    EXPECT_LE(drawing.pieces()[0].path.boundingRect().height(), 40);
    const QRectF right = drawing.pieces()[1].path.boundingRect();
    EXPECT_NEAR(right.bottom(), 4000, 20);
    EXPECT_NEAR(right.top(), 3000, 20);
    EXPECT_TRUE(waveform({}, 2).isEmpty());
}

TEST(Drawing, WordsCountWhatIsInATag) {
    const std::string edges =
        square(0, 0, 20, set("Fill1", 1)) +
        moveTo(0, 0, "<NewStyles><FillStyles>" + solid("ff") + "</FillStyles><LineStyles /></NewStyles>");
    std::string element = shape3(solid("ff"), line(1, "ff"), edges);
    element.replace(element.find("<Bounds />"), 10, rectangle("Bounds", 2, 3, 145, 80));
    EXPECT_EQ(tagWords(*compileTag(element, 8, nullptr)).toStdString(),
              "DefineShape3 1 · 145 × 80 px · 2 fills, 1 line style, 4 edges");
}

// --- movies ----------------------------------------------------------------------------------------------------------

void drawAll(const SwfTags& tags, const Characters& characters, int& drawn) {
    for (const auto& tag : tags.items()) {
        if (const auto* sprite = dynamic_cast<const SwfTagDefineSprite*>(tag.get()))
            drawAll(sprite->tags, characters, drawn);
        if (!isDrawable(*tag))
            continue;
        tagWords(*tag);
        drawn += !imageOf(drawTag(*tag, characters, 0.5), 0.01, characters.bitmap).isNull();
    }
}

TEST(Drawing, DrawsEveryTagOfTheCorpus) {
    if (!fs::exists(CORPUS_DIR))
        GTEST_SKIP() << "no corpus";
    int drawn = 0;
    for (const auto& entry : fs::recursive_directory_iterator(CORPUS_DIR)) {
        if (entry.path().extension() != ".swf")
            continue;
        SCOPED_TRACE(entry.path().string());
        SwfMovieSafe movie;
        try {
            movie.parse(readFile(entry.path().string()), {});
        } catch (const SwfException&) {
            continue;
        }
        Characters characters;
        characters.definition = [&](uint16_t id) { return movie.tags.definition(id); };
        characters.bitmap = [&](uint16_t id) {
            const auto tag = movie.tags.definition(id);
            try {
                return tag != nullptr && isBitmap(*tag) ? BitmapImages().imageOf(*tag, nullptr) : QImage();
            } catch (const SwfException&) {
                return QImage();
            }
        };
        EXPECT_NO_THROW(drawAll(movie.tags.tags(), characters, drawn));
    }
    EXPECT_GT(drawn, 300);
}

} // namespace
