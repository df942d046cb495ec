// What a movie says about itself: its characters and its problems.
#include <gtest/gtest.h>

#include "CharacterIndex.h"
#include "CharacterText.h"
#include "Conversion.h"
#include "MovieOutline.h"
#include "Paths.h"
#include "Problems.h"
#include "XmlErrors.h"

namespace zelk {

using Kind = Problem::Kind;
using Severity = Problem::Severity;

static std::string movie(std::string_view content, std::string_view attributes = "SwfVersion=\"6\"") {
    return "<Movie " + std::string(attributes) + ">\n" + std::string(content) + "\n</Movie>";
}

static constexpr std::string_view shape =
    "<DefineShape ShapeId=\"1\"><Bounds/><FillStyles/><LineStyles/><Edges/></DefineShape>";
static constexpr std::string_view font =
    "<DefineFont FontId=\"2\"><GlyphShapeTable><Glyphs/><Glyphs/></GlyphShapeTable>"
    "</DefineFont>";

static std::string textIn(int fontId, int glyph) {
    return "<DefineText Id=\"3\"><Bounds/><Matrix/><TextRecords><TextRecord FontId=\"" + std::to_string(fontId) +
           "\" Height=\"9\">\n<GlyphEntries><GlyphEntry Index=\"" + std::to_string(glyph) +
           "\" Advance=\"9\"/></GlyphEntries></TextRecord></TextRecords></DefineText>";
}

TEST(StudyTest, EachProblemIsFoundAtItsPlace) {
    const struct {
        std::string text;
        Kind kind;
        Severity severity;
        uint32_t row, column;
        const char *path, *said;
    } cases[] = {
        {movie("<PlaceObject2 Depth=\"1\" CharacterId=\"9\" Move=\"false\"/>"), Kind::undefined, Severity::error, 2, 1,
         "0", "nothing defines character 9 (placed)"},
        {movie(std::string(shape) + "\n<DefineSprite Id=\"7\" FrameCount=\"1\">\n<PlaceObject Depth=\"1\" "
                                    "CharacterId=\"9\"><Matrix/></PlaceObject></DefineSprite>"),
         Kind::undefined, Severity::error, 4, 1, "1.0", "nothing defines character 9"},
        {movie("<DefineShape ShapeId=\"4\"><Bounds/><FillStyles><BitmapFillStyle Type=\"Clipped\" BitmapId=\"8\">"
               "<Matrix/></BitmapFillStyle></FillStyles><LineStyles/><Edges/></DefineShape>"),
         Kind::undefined, Severity::error, 2, 1, "0", "nothing defines character 8 (fill of a shape)"},
        {movie(textIn(2, 0)), Kind::undefined, Severity::error, 2, 1, "0", "nothing defines character 2 (font"},
        {movie(std::string(shape) + "\n" + std::string(shape)), Kind::definedTwice, Severity::error, 3, 1, "1",
         "is defined by tag 0 already"},
        {movie("<PlaceObject2 Depth=\"1\" CharacterId=\"1\" Move=\"false\"/>\n" + std::string(shape)),
         Kind::usedTooEarly, Severity::warning, 2, 1, "0", "is defined behind it only, by tag 1"},
        {movie("<PlaceObject2 Depth=\"2\" Move=\"true\"/>"), Kind::emptyDepth, Severity::warning, 2, 1, "0",
         "moves what was never placed at depth 2"},
        {movie(std::string(shape) + "<PlaceObject2 Depth=\"1\" CharacterId=\"1\" Move=\"false\"/>\n"
                                    "<RemoveObject2 Depth=\"3\"/>"),
         Kind::emptyDepth, Severity::warning, 3, 1, "2", "nothing was placed at depth 3"},
        {movie(std::string(font) + textIn(2, 2)), Kind::missingGlyph, Severity::error, 3, 15, "1",
         "glyph 2, but character 2 has 2 glyphs"},
        {movie("<DefineBits CharacterId=\"5\"><JPEGData><![CDATA[/9j/2Q==]]></JPEGData></DefineBits>"),
         Kind::missingTables, Severity::error, 2, 1, "0", "no JPEGTables"},
        {movie("<ShowFrame/>\n lost\n<ShowFrame/>"), Kind::strayText, Severity::warning, 3, 2, "", "\"lost\""},
        {movie("<DoAction><Actions>\nlost<Stop/></Actions></DoAction>"), Kind::strayText, Severity::warning, 3, 1, "0",
         "\"lost\""},
        {movie("", "SwfVersion=\"6\" FrameRate=\"twelve\""), Kind::wrongValue, Severity::error, 1, 1, "",
         "FrameRate: \"twelve\""},
        {movie("<ShowFrame/>\n<FrameLabel Name=\"a\" IsAnchor=\"maybe\"/>"), Kind::wrongValue, Severity::warning, 3, 1,
         "", "IsAnchor: \"maybe\""},
    };
    for (const auto& c : cases) {
        const Problems found = problemsOfText(c.text);
        ASSERT_EQ(found.items.size(), 1u) << c.text;
        const Problem& problem = found.items[0];
        EXPECT_EQ(kindName(problem.kind), kindName(c.kind)) << c.text;
        EXPECT_EQ(problem.severity, c.severity) << c.text;
        EXPECT_EQ(std::pair(problem.row, problem.column), std::pair(c.row, c.column)) << c.text;
        EXPECT_EQ(problem.path, c.path) << c.text;
        EXPECT_NE(problem.reason.find(c.said), std::string::npos) << problem.reason;
        EXPECT_EQ(found.errors, c.severity == Severity::error ? 1u : 0u) << c.text;
    }
}

TEST(StudyTest, OneWrongValueDoesNotHideTheNext) {
    const Problems found = problemsOfText(movie("<PlaceObject2 Depth=\"x\"/>\n<DefineSprite Id=\"1\">\n"
                                                "<FrameLabel Name=\"a\"/><RemoveObject2 Depth=\"-1\"/>\n</DefineSprite>"
                                                "<DefineBinaryData CharacterId=\"2\"><Data>*</Data></DefineBinaryData>"
                                                "<ShowFrame Odd=\"1\"/>",
                                                "Width=\"wide\" Height=\"9\""));
    std::vector<std::string> wrong;
    for (const Problem& problem : found.items) {
        if (problem.kind == Kind::wrongValue)
            wrong.push_back(std::to_string(problem.row) + problem.tag);
    }
    EXPECT_EQ(wrong, (std::vector<std::string>{"1Movie", "2PlaceObject2", "4RemoveObject2", "5"}));
    EXPECT_NE(std::ranges::find(found.items, Kind::conversion, &Problem::kind), found.items.end()) << "Odd";
    EXPECT_THROW(problemsOfText("<Movie>"), xml2swf::XmlSyntaxError);
}

// Imports, pictures that bring their tables, glyphs that are there, depths of sprites, marked-up texts.
TEST(StudyTest, WhatIsRightIsNoProblem) {
    const std::string good[] = {
        movie("<ImportAssets URL=\"a.swf\"><Asset Id=\"3\" Name=\"b\"/></ImportAssets>"
              "<PlaceObject2 Depth=\"1\" CharacterId=\"3\" Move=\"false\"/>",
              "Form=\"full\" SwfVersion=\"6\""),
        // The same table as bytes: "a.swf", 1 entry, id 3, "b".
        movie("<Unknown TagType=\"57\"><Data><![CDATA[YS5zd2YAAQADAGIA]]></Data></Unknown>"
              "<PlaceObject2 Depth=\"1\" CharacterId=\"3\" Move=\"false\"/>"),
        movie("<DefineBits CharacterId=\"5\"><JPEGData><![CDATA[/9j/2wBDAP/Z]]></JPEGData></DefineBits>"),
        movie(std::string(font) + textIn(2, 1)),
        movie("<SymbolClass><Symbol Tag=\"0\" Name=\"Main\"/></SymbolClass><Metadata><Data>a text</Data></Metadata>"),
        movie(std::string(shape).append(
            "<DefineSprite Id=\"2\"><PlaceObject2 Depth=\"1\" CharacterId=\"1\"/>"
            "<PlaceObject2 Depth=\"1\" Move=\"true\"/><RemoveObject2 Depth=\"1\"/></DefineSprite>")),
    };
    for (const std::string& text : good) {
        for (const Problem& problem : problemsOfText(text).items)
            ADD_FAILURE() << lineOf(problem) << "\n" << text;
    }
}

TEST(StudyTest, StaticTextsAreCalledWhatTheySay) {
    const auto text = [](int id, const std::string& records) {
        return "<DefineText2 Id=\"" + std::to_string(id) + "\"><TextRecords>" + records +
               "</TextRecords></DefineText2>";
    };
    const auto record = [](const std::string& attributes, const std::string& glyphs) {
        return "<TextRecord " + attributes + "><GlyphEntries>" + glyphs + "</GlyphEntries></TextRecord>";
    };
    const std::string p = "<GlyphEntry Index=\"0\"/>", u = "<GlyphEntry Character=\"u\"/>";
    const CharacterIndex characters(movie(
        text(1, record("FontId=\"9\"", p + u) + record("XOffset=\"5\"", p) + record("YOffset=\"5\"", u)) +
        text(2, record("FontId=\"8\"", p)) + text(3, record("FontId=\"9\"", "<GlyphEntry Index=\"2\"/>")) +
        "<DefineFont2 FontId=\"9\"><Glyphs/><CodesTable><Code Value=\"80\"/></CodesTable>"
        "<AdvanceTable><Code Value=\"65\"/><Code Value=\"66\"/><Code Value=\"67\"/></AdvanceTable></DefineFont2>"));
    EXPECT_EQ(characters.name(1), "PuP u");
    EXPECT_EQ(characters.name(2), "");
    EXPECT_EQ(characters.name(3), "") << "an advance is no code";
    EXPECT_EQ(characters.named([](std::string_view name) { return name.starts_with("Pu"); }), std::vector<uint16_t>{1});
}

TEST(StudyTest, CharactersHaveNamesDefinitionsAndUses) {
    // In bytes: a NameCharacter of 1, "n".
    const std::string text = movie(
        std::string(shape).append("<DefineSprite FrameCount=\"1\" Id=\"2\"><PlaceObject2 Name=\"inst\" Depth=\"1\" "
                                  "CharacterId=\"1\" Move=\"false\"/></DefineSprite>"
                                  "<ExportAssets><Asset Id=\"2\" Name=\"a&amp;b\"/></ExportAssets>"
                                  "<Unknown TagType=\"40\"><Data><![CDATA[AQBuAA==]]></Data></Unknown>"
                                  "<DefineEditText FontId=\"6\" FontHeight=\"1\" Id=\"5\"><Bounds/></DefineEditText>"));
    const CharacterIndex characters(text);
    EXPECT_EQ(characters.name(1), "n") << "a given name says more than that of an instance";
    EXPECT_EQ(characters.names(1).size(), 2u);
    EXPECT_EQ(characters.name(2), "a&b");
    EXPECT_EQ(characters.name(3), "");
    ASSERT_NE(characters.definition(2), nullptr);
    EXPECT_EQ(characters.definition(2)->tag, 1u);
    EXPECT_EQ(characters.definition(6), nullptr);
    std::vector<IdRole> roles;
    for (const CharacterId& use : characters.of(1))
        roles.push_back(use.role);
    EXPECT_EQ(roles, (std::vector{IdRole::defines, IdRole::places, IdRole::names}));
    EXPECT_TRUE(characters.of(1)[2].isInBytes);
    EXPECT_EQ(characters.of(1)[2].element, "NameCharacter");
    EXPECT_EQ(characters.of(1)[1].list, characters.definition(2)->tag) << "in the sprite";
    EXPECT_EQ(characters.freeId(), 3);
    EXPECT_EQ(characters.shown(2), "2 (a&b)");
    for (const CharacterId& id : characters.all()) {
        if (id.isInBytes)
            continue;
        EXPECT_EQ(text.substr(id.start, id.end - id.start), std::to_string(id.id));
        EXPECT_EQ(characters.at(id.start), &id);
        EXPECT_EQ(characters.at(id.end), &id);
    }
    EXPECT_EQ(characters.at(0), nullptr);
    ASSERT_NE(characters.ofTag(5), nullptr);
    EXPECT_EQ(characters.ofTag(5)->id, 5) << "its own id, not the font's, which stands first";
    EXPECT_THROW(CharacterIndex("<Movie"), xml2swf::XmlSyntaxError);
}

TEST(StudyTest, TheOutlineSortsTagsAndKnowsFramesAndClasses) {
    const std::string text = movie(
        std::string(shape) + "<DefineSprite Id=\"2\"><FrameLabel Name=\"a\"/><DoAction/><ShowFrame/><ShowFrame/>"
                             "<StopSound/></DefineSprite><DoABC Name=\"b\"><Class Name=\"p.C\"/></DoABC><ShowFrame/>");
    const MovieOutline outline(text);
    EXPECT_EQ(outline.tags().size(), 9u);
    EXPECT_EQ(outline.ofKind(TagKind::shape), std::vector<uint32_t>{0});
    EXPECT_EQ(outline.ofKind(TagKind::script), (std::vector<uint32_t>{3, 7})) << "in sprites as well";
    EXPECT_EQ(outline.ofKind(TagKind::other), std::vector<uint32_t>{8}) << "not what stands in sprites";
    std::vector<std::string> parts;
    for (uint32_t tag : {1u, 7u}) {
        for (const OutlinePart& part : outline.parts(tag))
            parts.push_back(part.name + " " + text.substr(part.offset, 6));
    }
    EXPECT_EQ(parts,
              (std::vector<std::string>{"Frame 1 (a) <Frame", "Frame 2 <ShowF", "Frame 3 <StopS", "p.C <Class"}));
    EXPECT_EQ(text.substr(outline.tags()[1].end - 8, 8), "eSprite>") << outline.tags()[1].end;
}

// "|" is the place.
TEST(CharacterText, KnowsWhichIdAPlaceMeans) {
    const std::pair<std::string, int> cases[] = {
        {"<PlaceObject2 |Depth=\"1\" CharacterId=\"4\"/>", 4},
        {"|  <PlaceObject2 Depth=\"1\" CharacterId=\"4\"/>", 4},
        {"<DefineEditText Id=\"5|\" FontId=\"6\">", 5},
        {"<DefineEditText Id=\"5\" FontId=\"|6\">", 6},
        {"<DefineEditText| Id=\"5\" FontId=\"6\">", 6},
        {"<DefineButtonSound ButtonId=\"7\" SoundIdPress=\"0|\"/>", 7},
        {"<ShowFrame|/>", -1},
        {"<PlaceObject2 CharacterId=\"x|\"/>", -1},
        {"</PlaceObject2|>", -1},
        {"|", -1},
    };
    for (auto [text, id] : cases) {
        const size_t place = text.find('|');
        text.erase(place, 1);
        const auto found = characterIdAt(text, place);
        EXPECT_EQ(found ? found->id : -1, id) << text << place;
    }
}

TEST(CharacterText, ACharacterIsRenamedEverywhereOrNowhere) {
    const std::string text =
        movie(std::string(shape) +
              "<PlaceObject2 Depth=\"1\" CharacterId=\"1\" Move=\"false\"/>"
              "<ExportAssets><Asset Id=\"1\" Name=\"1\"/></ExportAssets>" +
              std::string(font) + "<Unknown TagType=\"40\"><Data><![CDATA[AgBuAA==]]></Data></Unknown>");
    const CharacterIndex characters(text);
    const Renaming renaming = renamedCharacter(characters, 1, 345);
    EXPECT_EQ(renaming.refusal, "");
    std::string renamed = text;
    for (auto change = renaming.changes.rbegin(); change != renaming.changes.rend(); ++change)
        renamed.replace(change->start, change->end - change->start, change->text);
    const CharacterIndex after(renamed);
    EXPECT_EQ(after.of(345).size(), 3u);
    EXPECT_EQ(after.name(345), "1");
    EXPECT_TRUE(after.of(1).empty());
    const std::tuple<uint16_t, int64_t, const char*> refused[] = {{1, 0, "1 to 65535"},
                                                                  {1, 65536, "1 to 65535"},
                                                                  {9, 4, "No tag has the id 9"},
                                                                  {1, 2, "Another character has the id 2 (n)"},
                                                                  {2, 4, "kept as bytes has the id 2"}};
    for (const auto& [from, to, said] : refused) {
        const Renaming none = renamedCharacter(characters, from, to);
        EXPECT_NE(none.refusal.find(said), std::string::npos) << none.refusal;
        EXPECT_TRUE(none.changes.empty());
    }
    const IdProposals fonts = idsFor(characters, "DefineEditText", "FontId");
    EXPECT_EQ(fonts.ids, std::vector<std::string>{"2"});
    EXPECT_EQ(fonts.notes, std::vector<std::string>{"DefineFont n"});
    EXPECT_EQ(idsFor(characters, "PlaceObject2", "CharacterId").ids, (std::vector<std::string>{"1", "2"}));
    EXPECT_EQ(idsFor(characters, "DefineText", "Id").ids, std::vector<std::string>{"3"}) << "one that is free";
    EXPECT_TRUE(idsFor(characters, "PlaceObject2", "Depth").ids.empty());
}

} // namespace zelk
