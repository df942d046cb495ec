// Texts that are parsed in more than one piece behave as if they were parsed as a whole.

#include "Outcome.h"
#include "SwfTagDefineSprite.h"
#include "SwfTagsControl.h"

using namespace libswf;
using namespace xml2swf;

namespace {

constexpr int manyLabels = 3000; // some 150 KB

std::string labels(int count, const std::string& odd = "", int oddAt = -1) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text +=
            i == oddAt ? odd : "\n    <FrameLabel Name=\"" + std::to_string(i) + "\" IsAnchor=\"true\" /><!-- > ' -->";
    return text;
}

std::string movie(const std::string& content) {
    return "<?xml version=\"1.0\"?>\n<Movie SwfVersion=\"8\">" + content + "\n</Movie>\n";
}

std::string sprite(const std::string& content) { return "\n<DefineSprite Id=\"5\">" + content + "\n</DefineSprite>"; }

struct Compiled {
    MovieTarget target;
    SwfWarnings warnings;

    explicit Compiled(const std::string& text) {
        ConversionOptions options;
        options.warnings = &warnings;
        EXPECT_TRUE(xmlToSwf(text, target, options));
    }
};

void expectLabels(const SwfTags& tags) {
    ASSERT_EQ(tags.count(), uint32_t(manyLabels));
    for (int i = 0; i < manyLabels; ++i)
        ASSERT_EQ(dynamic_cast<SwfTagFrameLabel&>(tags.at(uint32_t(i))).name.view(), std::to_string(i));
}

} // namespace

TEST(XmlWindows, ChildrenComeInOrderAtEveryDepth) {
    expectLabels(Compiled(movie(labels(manyLabels))).target.movie.tags);
    const Compiled nested(movie(sprite(labels(10) + sprite(labels(manyLabels))) + labels(2)));
    const SwfTags& tags = nested.target.movie.tags;
    ASSERT_EQ(tags.count(), 3u);
    const auto& outer = dynamic_cast<SwfTagDefineSprite&>(tags.at(0));
    ASSERT_EQ(outer.tags.count(), 11u);
    expectLabels(dynamic_cast<SwfTagDefineSprite&>(outer.tags.at(10)).tags);
    EXPECT_TRUE(nested.warnings.empty());
}

TEST(XmlWindows, ErrorsAreThoseOfTheWholeText) {
    struct Row {
        const char* odd;
        const char* description;
        uint32_t column;
    } const rows[] = {
        {"\n    <FrameLabel Name=\"x\"></FrameLabe>", "invalid closing tag name", 37},
        {"\n    <FrameLabel Name=\"x\" &></FrameLabel>", "expected =", 27},
        {"\n    <FrameLabel Name=x />", "expected ' or \"", 22},
        {"\n    </DefineSprite><FrameLabel /><DefineSprit>", "invalid closing tag name", 0},
    };
    for (const Row& row : rows) {
        for (const bool inSprite : {false, true}) {
            std::string content = labels(manyLabels, row.odd, 2000);
            if (inSprite)
                content = sprite(content);
            try {
                Compiled compiled(movie(content));
                ADD_FAILURE() << row.odd << " compiles";
            } catch (const XmlSyntaxError& error) {
                EXPECT_STREQ(error.what(), row.description) << row.odd;
                if (row.column != 0) {
                    EXPECT_EQ(error.place.row, uint32_t(2 + 2000 + 1 + (inSprite ? 1 : 0))) << row.odd;
                    EXPECT_EQ(error.place.column, row.column) << row.odd;
                }
            }
        }
    }
}

TEST(XmlWindows, WarningsNameTheirPlace) {
    const Compiled compiled(movie(sprite(labels(manyLabels, "\n    <FrameLabel Nam=\"x\" />", 2500))));
    ASSERT_EQ(compiled.warnings.total(), 1u);
    const SwfWarning& warning = compiled.warnings.items()[0];
    EXPECT_EQ(warning.path, "0.2500");
    EXPECT_EQ(warning.row, uint32_t(2 + 1 + 2500 + 1));
    EXPECT_EQ(warning.column, 17u);
}

TEST(XmlWindows, LongPayloadsAreReadWhereTheyStand) {
    const std::string line(1024, 'A');
    std::string base64;
    for (int i = 0; i < 40; ++i)
        base64 += line + "\n";
    auto unknown = [](const std::string& content) {
        return movie("\n<Unknown TagType=\"500\"><Data>" + content + "</Data></Unknown>");
    };
    for (const std::string& content :
         {"\n<![CDATA[" + base64 + "]]>\n", base64, "<![CDATA[]]>" + base64 + "<![CDATA[" + base64 + "]]>"}) {
        const Compiled compiled(unknown(content));
        const auto& tag = dynamic_cast<SwfTagUnknown&>(compiled.target.movie.tags.at(0));
        EXPECT_EQ(tag.data.size(), 40u * 768) << content.substr(0, 20);
    }
    try {
        Compiled compiled(unknown("<![CDATA[" + base64 + "AA!A]]>"));
        ADD_FAILURE() << "foreign characters compile";
    } catch (const Base64Error& error) {
        EXPECT_EQ(error.place.row, 43u);
        EXPECT_EQ(error.place.column, 1u);
    }
}

// Edges of a big shape are taken straight from the text where it has the usual form.
TEST(XmlWindows, EdgesOfAnyFormAreReadAlike) {
    const char* const odds[] = {
        "<Line DX=\"-9999999\" DY=\"-0\" />",
        "<Line DX=\"12345678\" DY=\"0\" />",
        "<Line DX=\"+5\" DY=\"007\" />",
        "<Line DX=\"\" DY=\"1\" />",
        "<Line DX=\"-\" DY=\"1\" />",
        "<Line DX=\"1:\" DY=\"1\" />",
        "<Line DX=\"3\"/>",
        "<Line DY=\"3\" DX='4' />",
        "<Line DX=\"3\" DY=\"4\" DZ=\"5\" />",
        "<Curve CDX=\"1\" CDY=\"-22\" ADX=\"333\" ADY=\"-4444\" />",
        "<Curve CDX=\"-999999\" CDY=\"-999999\" ADX=\"-999999\" ADY=\"-999999\" />",
        "<Curve CDX=\"1\" CDY=\"-22\" ADX=\"333\"></Curve>",
        "\nx<Line DX=\"1\" DY=\"2\" />",
        "\n\t\t                                                                   <Line DX=\"1\" DY=\"2\" />",
        "<Line DX=\"1\" 2\" DY=\"2\" />",
        "<Line DX=\"&#49;\" DY=\"2\" />",
        "<StyleChange />",
        "<StyleChange></StyleChange>",
        "<StyleChange> <Move DX=\"-70\" DY=\"8\" /> <SetFill1 Index=\"1\" />\n</StyleChange>",
        "<StyleChange><SetFill1 Index=\"1\" /><SetFill0 Index=\"1\" /><SetLine Index=\"1\" /></StyleChange>",
        "<StyleChange><SetFill0 Index=\"70000\" /></StyleChange>",
        "<StyleChange><SetFill0 Index=\"-1\" /></StyleChange>",
        "<StyleChange><SetLine /><NewStyles><FillStyles /><LineStyles /></NewStyles></StyleChange>",
        "text <Other /> <![CDATA[<Line DX=\"1\" DY=\"2\" />]]>",
        "<Line DX=\"1\" DY=\"2\" ><Line DX=\"1\" DY=\"2\" /></Line>",
        "<Line DX=\"1\" DY=\"2\" /",
    };
    auto shape = [](const std::string& edges) {
        return movie("\n<DefineShape3 ShapeId=\"1\"><Bounds /><FillStyles><SolidFillStyle Color=\"ff\" /></FillStyles>"
                     "<LineStyles><LineStyle Width=\"1\" /></LineStyles><Edges>" +
                     edges + "</Edges></DefineShape3>");
    };
    for (const std::string odd : odds) {
        std::string usual, other;
        for (int i = 0; i < 1000; ++i) {
            const std::string line = "\n <Line DX=\"" + std::to_string(i - 500) + "\" DY=\"40\" />";
            const std::string edge = i == 500 || i == 900 ? "\n" + odd : line;
            usual += edge;
            other += edge + "<!-- -->";
        }
        const Outcome objects = compiled(shape(usual));
        EXPECT_TRUE(compiled(shape(usual), {.toWrite = true}) == objects) << odd;
        EXPECT_TRUE(compiled(shape(other)) == objects) << odd;
    }
}
