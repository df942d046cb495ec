// The preview pane: what it shows of a document, and of tags that ask for too much.
#include <map>

#include "DocumentTags.h"
#include "PreviewPane.h"
#include "TagPreview.h"
#include "WindowFixture.h"

namespace {

using namespace zelk;

// --- the window ------------------------------------------------------------------------------------------------------

class PreviewTest : public WindowTest {
protected:
    PreviewTest() { window->openFiles({QStringLiteral(SAMPLES_DIR "/pictures.xml")}); }

    size_t find(std::string_view text) { return editor().text().find(text); }
    void goTo(std::string_view text) { editor().select({find(text), find(text)}); }
    std::string shown() {
        QApplication::processEvents();
        EXPECT_TRUE(QTest::qWaitFor([this] { return !pane->isBusy() && tags().isCurrent(); }, 20'000));
        EXPECT_TRUE(QTest::qWaitFor([this] { return !pane->isBusy(); }, 20'000));
        return pane->words().toStdString();
    }
    DocumentTags& tags() { return DocumentTags::of(editor()); }

    PreviewPane* const pane = window->findChild<PreviewPane*>();
};

TEST_F(PreviewTest, FollowsTheCaret) {
    choose(CommandId::preview);
    const std::pair<const char*, const char*> cases[] = {
        {"<PngData>", "DefineBitsLossless2 1 · 48 × 48 px"},
        {"BitmapId=\"1\"", "DefineShape3 2 · 96 × 96 px · 1 fill, 4 edges"},
        {"<DefineMorphShape", "DefineMorphShape 4 · 62 × 62 px → 72 × 72 px · 1 fill, 1 line style, 10 edges"},
        {"<DefineSprite", "DefineSprite 5 · 1 frame · 5 tags · 320 × 240 px"},
        {"    <DefineSprite", "DefineSprite 5 · 1 frame · 5 tags · 320 × 240 px"},
        {"FrameRate", "There is no tag here."},
        {"<SetBackgroundColor", "SetBackgroundColor\nThere is no picture of this kind of tag."},
    };
    for (const auto& [place, words] : cases) {
        goTo(place);
        EXPECT_EQ(shown(), words) << place;
    }
    goTo("CharacterId=\"2\"");
    EXPECT_EQ(shown().find("There is no picture"), std::string::npos) << "the innermost tag, which places a character";
    EXPECT_FALSE(pane->preview()->drawing(0)->isEmpty());
}

TEST_F(PreviewTest, FollowsEdits) {
    choose(CommandId::preview);
    goTo("<DefineBitsLossless2");
    shown();
    editor().replaceBytes(find("</DefineBitsLossless2>"), find("</DefineBitsLossless2>"), "<");
    EXPECT_EQ(shown(), "There is no tag here.") << "not well-formed";
    editor().undo();
    EXPECT_EQ(shown(), "DefineBitsLossless2 1 · 48 × 48 px");
    const size_t width = find("BitmapWidth=\"48\"");
    editor().replaceBytes(width + 13, width + 15, "65535");
    EXPECT_NE(shown().find("\n"), std::string::npos) << "says what is wrong with it: " << shown();
}

TEST_F(PreviewTest, ShowsATagOfAList) {
    choose(CommandId::preview);
    const std::string end = "</DefineSound>";
    pane->showTag(editor(), {find("<DefineSound"), find(end) + end.size()});
    EXPECT_TRUE(shown().starts_with("DefineSound 6 · PCM · 5513 Hz · mono · 500 ms")) << pane->words().toStdString();
    goTo("<DefineSprite");
    EXPECT_EQ(shown().substr(0, 13), "DefineSound 6") << "the caret does not count then";
    pane->showCaret(&editor());
    EXPECT_EQ(shown().substr(0, 14), "DefineSprite 5");
    choose(CommandId::closeAll);
    EXPECT_EQ(pane->preview(), nullptr);
}

TEST_F(PreviewTest, LooksForNothingWhileItIsHidden) {
    goTo("<DefineSprite");
    QTest::qWait(400);
    EXPECT_EQ(pane->preview(), nullptr);
    choose(CommandId::preview);
    EXPECT_EQ(shown().substr(0, 14), "DefineSprite 5");
}

TEST_F(PreviewTest, OffersWhatFitsTheTag) {
    choose(CommandId::preview);
    const auto* slider = pane->findChild<QSlider*>();
    const std::tuple<const char*, bool, bool> cases[] = {
        {"<DefineMorphShape", true, false}, {"<DefineSound", false, true}, {"<DefineSprite", false, false}};
    for (const auto& [place, isMorph, isSound] : cases) {
        goTo(place);
        shown();
        EXPECT_EQ(slider->isVisibleTo(pane), isMorph) << place;
        EXPECT_EQ(pane->preview()->sound() != nullptr, isSound) << place;
    }
}

// --- where tags stand ------------------------------------------------------------------------------------------------

TEST(TagMap, KnowsWhatDefinesACharacter) {
    const std::string text = "<Movie SwfVersion=\"7\">\n"
                             "  <DefineFontInfo FontId=\"3\" />\n"
                             "  <DefineFont2 FontName=\"a Id=\" FontId = '3'></DefineFont2>\n"
                             "  <DefineSprite Id=\"4\"><JPEGTables>AA==</JPEGTables></DefineSprite>\n"
                             "  <DefineShape ShapeId=\"3\" /><DefineBits CharacterId=\"70000\" />\n"
                             "</Movie>";
    const TagMap map(text);
    const auto element = [&](const std::optional<TagRange>& tag) {
        return tag ? text.substr(tag->start, 12) : std::string();
    };
    EXPECT_EQ(map.layout().version, 7);
    EXPECT_EQ(element(map.definition(3)), "<DefineFont2") << "the first that defines it";
    EXPECT_EQ(element(map.definition(4)), "<DefineSprit");
    EXPECT_FALSE(map.definition(4464)) << "70,000 is no id";
    EXPECT_EQ(element(map.jpegTables()), "<JPEGTables>");
    EXPECT_EQ(element(map.at(text, text.find("AA=="))), "<JPEGTables>");
    EXPECT_EQ(element(map.at(text, text.find("</DefineSprite>") + 1)), "<DefineSprit") << "behind the tag in it";
    EXPECT_EQ(element(map.at(text, text.find("  <DefineFont2"))), "<DefineFont2") << "in front of it in its line";
    EXPECT_FALSE(map.at(text, 3));
    EXPECT_FALSE(map.at(text, text.size()));
    EXPECT_FALSE(TagMap("<Movie><DefineShape>").at("<Movie><DefineShape>", 9));
}

TEST(TagPreview, FollowsTheFormOfTheText) {
    for (const bool isFull : {true, false}) {
        const std::string text = "<Movie SwfVersion=\"9\"" + std::string(isFull ? " Form=\"full\"" : "") +
                                 "><PlaceObject4 Depth=\"1\" /></Movie>";
        PreviewRequest request;
        request.element = "<PlaceObject4 Depth=\"1\" />";
        request.layout = TagMap(text).layout();
        const TagPreview preview(request);
        EXPECT_EQ(preview.words().startsWith(QStringLiteral("PlaceObject4")), isFull);
        EXPECT_EQ(preview.problem() == QStringLiteral("This element is no tag."), !isFull);
    }
}

// --- tags that ask for too much --------------------------------------------------------------------------------------

std::string repeated(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

std::string lossless(const std::string& width, const std::string& data) {
    return "<DefineBitsLossless2 CharacterId=\"1\" BitmapFormat=\"5\" BitmapWidth=\"" + width + "\" BitmapHeight=\"" +
           width + "\" BitmapColorTableSize=\"0\"><PngData>" + data + "</PngData></DefineBitsLossless2>";
}

std::string placed(int count, int id) {
    std::string all;
    for (int depth = 1; depth <= count; ++depth)
        all += "<PlaceObject2 Depth=\"" + std::to_string(depth) + "\" CharacterId=\"" + std::to_string(id) + "\" />";
    return all;
}

std::string shapeOf(const std::string& fills, const std::string& lines, const std::string& styles,
                    const std::string& edges) {
    return "<DefineShape3 ShapeId=\"2\"><Bounds /><FillStyles>" + fills + "</FillStyles><LineStyles>" + lines +
           "</LineStyles><Edges><StyleChange>" + styles + "</StyleChange>" + edges + "</Edges></DefineShape3>";
}

struct Hostile {
    const char* name;
    std::string element;
    std::string problem; // or its beginning; empty for none
    std::map<uint16_t, std::string> others = {};
};

std::vector<Hostile> hostileTags() {
    const std::string sprite = "<DefineSprite Id=\"9\">" + placed(40, 9) + "</DefineSprite>";
    const std::string shape = shapeOf("<BitmapFillStyle Type=\"Clipped\" BitmapId=\"1\"><Matrix /></BitmapFillStyle>",
                                      "", "<SetFill1 Index=\"1\" />",
                                      "<Line DX=\"2000000\" DY=\"0\" /><Line DX=\"0\" DY=\"2000000\" />"
                                      "<Line DX=\"-2000000\" DY=\"-2000000\" />");
    const std::string many = "<DefineSprite Id=\"8\">" + placed(5000, 2) + "</DefineSprite>",
                      one = "<DefineSprite Id=\"8\">" + placed(1, 2) + "</DefineSprite>"; // which draws another one
    return {
        {"65,535 by 65,535 pixels", lossless("65535", "eNo="), "the bitmap is too big"},
        {"pixels that are not there", lossless("5000", "eNo="), "*"},
        {"a sprite in itself", sprite, "Nothing is drawn.", {{9, sprite}}},
        {"a button of itself",
         "<DefineButton2 ButtonId=\"9\"><ButtonRecord StateUp=\"true\" CharacterId=\"9\" /></DefineButton2>", "*"},
        {"a bitmap that is no bitmap", shape, "", {{1, shape}}},
        {"a bitmap that is broken", shape, "", {{1, lossless("5000", "eNo=")}}},
        {"a bitmap fill that is far too big, 5,000 times",
         many,
         "",
         {{2, shape}, {1, lossless("2", "eNpjYGBgAAMAAAoAAQ==")}}},
        {"more glyphs than are drawn",
         "<DefineFont FontId=\"1\"><GlyphShapeTable>" + repeated("<Glyphs />", 100'000) +
             "</GlyphShapeTable></DefineFont>",
         "Nothing is drawn."},
        {"samples that are not there",
         "<DefineSound SoundId=\"1\" SoundFormat=\"PCM\" SoundRate=\"44100Hz\" SoundSize=\"16Bit\" "
         "SoundType=\"Stereo\" "
         "SoundSampleCount=\"4294967295\"><SoundData>AAAA</SoundData></DefineSound>",
         "There is nothing to be heard."},
        {"a sound nobody decodes",
         "<DefineSound SoundId=\"1\" SoundFormat=\"Nellymoser\" SoundSampleCount=\"9\"><SoundData>AAAA</SoundData>"
         "</DefineSound>",
         "*"},
        {"edges that go far away",
         shapeOf("<SolidFillStyle Color=\"ff\" />", "<LineStyle Width=\"60000\" Color=\"ff\" />",
                 "<SetFill1 Index=\"1\" /><SetLine Index=\"1\" />",
                 repeated("<Line DX=\"2000000000\" DY=\"-2000000000\" /><Curve CDX=\"-2147483648\" "
                          "CDY=\"2147483647\" ADX=\"2147483647\" ADY=\"-2147483648\" />",
                          50)),
         ""},
        {"styles that are not there",
         one,
         "Nothing is drawn.",
         {{2, shapeOf("", "", "<SetFill0 Index=\"900\" /><SetFill1 Index=\"65535\" /><SetLine Index=\"3\" />",
                      "<Line DX=\"400\" DY=\"0\" /><Line DX=\"0\" DY=\"400\" /><Line DX=\"-400\" DY=\"-400\" />")}}},
        {"more edges than are drawn",
         shapeOf("<SolidFillStyle Color=\"ff\" />", "", "<SetFill1 Index=\"1\" />",
                 repeated("<Line DX=\"1\" DY=\"0\" />", 450'000)),
         ""},
        {"a scale that is no number",
         one,
         "",
         {{2, "<DefineText Id=\"2\"><Matrix><Scale ScaleX=\"nan\" ScaleY=\"inf\" /></Matrix><TextRecords><TextRecord "
              "XOffset=\"0\" FontId=\"5\" Height=\"9\"><GlyphEntries><GlyphEntry Index=\"4294967295\" Advance=\"-5\" "
              "/></GlyphEntries></TextRecord></TextRecords></DefineText>"},
          {5, "<DefineFont2 FontId=\"5\"><Glyphs><Glyphs /></Glyphs></DefineFont2>"}}},
        {"a morph shape without an end",
         "<DefineMorphShape ShapeId=\"1\"><StartEdges><Line DX=\"9\" DY=\"9\" /></StartEdges></DefineMorphShape>",
         "Nothing is drawn."},
        {"no tag", "<Nothing />", "This element is no tag."},
        {"no XML", "<DefineShape", "*"},
        {"no numbers", "<DefineShape ShapeId=\"x\"><Bounds MinX=\"y\" /></DefineShape>", "*"},
    };
}

TEST(TagPreview, EndsWhateverATagSays) {
    for (const Hostile& test : hostileTags()) {
        SCOPED_TRACE(test.name);
        PreviewRequest request;
        request.element = test.element;
        request.layout = 8;
        request.definition = [&](uint16_t id) {
            const auto found = test.others.find(id);
            return found == test.others.end() ? std::string() : found->second;
        };
        const TagPreview preview(request);
        const std::string problem = preview.problem().toStdString();
        if (test.problem == "*")
            EXPECT_FALSE(problem.empty());
        else
            EXPECT_TRUE(problem.starts_with(test.problem) && problem.empty() == test.problem.empty()) << problem;
        QImage image(50, 50, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&image);
        painter.scale(0.001, 0.001);
        int pieces = 0;
        const auto bitmaps = [&](uint16_t id) { return preview.bitmap(id); };
        const auto drawing = preview.drawing(0.3);
        drawing->paint(painter, bitmaps, [&] { return ++pieces < 100; });
        EXPECT_LE(pieces, 100);
        EXPECT_LE(drawing->pieces().size(), 20'000u);
        if (drawing->pieces().size() < 1000) { // all of those would take minutes
            const QImage whole = imageOf(*drawing, 0.05, bitmaps);
            EXPECT_LE(double(whole.width()) * whole.height(), 16.1e6);
        }
    }
}

} // namespace
