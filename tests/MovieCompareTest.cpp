// Comparison of movies, given as XML.
#include "Tests.h"

#include "MovieCompare.h"

using namespace libswf;
using namespace xml2swf;

namespace {

void compileInto(SwfMovieSafe& movie, const std::string& tags, const std::string& root) {
    MovieTarget target;
    ASSERT_TRUE(xmlToSwf("<Movie " + root + ">" + tags + "</Movie>", target, {}));
    const SwfVector<uint8_t> file = target.movie.serialise(1);
    movie.parse({file.begin(), file.end()}, {.keepRaw = true});
}

MovieComparison compare(const std::string& a, const std::string& b, const std::string& rootA = "",
                        const std::string& rootB = "") {
    SwfMovieSafe movieA, movieB;
    compileInto(movieA, a, rootA);
    compileInto(movieB, b, rootB);
    return compareMovies(movieA, movieB);
}

std::string fieldText(const FieldDifference& field) {
    return field.path + " " + field.a.value_or("-") + " " + field.b.value_or("-");
}

// A line per tag that is not identical: "different 1 2 SetTabIndex/@Depth 3 4".
std::string linesOf(const MovieComparison& comparison) {
    std::string lines;
    for (const FieldDifference& field : comparison.header)
        lines += fieldText(field) + "\n";
    for (const TagComparison& tag : comparison.tags) {
        if (tag.relation == TagRelation::identical)
            continue;
        lines += std::string(relationText(tag.relation)) + " " + (tag.pathA.empty() ? "-" : tag.pathA) + " " +
                 (tag.pathB.empty() ? "-" : tag.pathB);
        lines += tag.field ? " " + fieldText(*tag.field) + "\n" : "\n";
    }
    return lines;
}

std::string label(int i) { return "<FrameLabel Name=\"" + std::to_string(i) + "\" />"; }
std::string sprite(int id, const std::string& tags) {
    return "<DefineSprite Id=\"" + std::to_string(id) + "\">" + tags + "</DefineSprite>";
}

const std::string frame = "<ShowFrame />";

} // namespace

TEST(MovieCompare, Relations) {
    const std::string assets = R"(<Asset Id="1" Name="a" /><Asset Id="2" Name="b" />)";
    const std::string wideGrid = "<Unknown TagType=\"78\"><Data>AQBAAAAAAA==</Data></Unknown>"; // 8-bit fields of 0
    const std::string grid = R"(<DefineScalingGrid CharacterId="1" />)";
    const std::string wordProtect = "<Unknown TagType=\"24\"><Data>AABhAA==</Data></Unknown>"; // stays raw
    const struct {
        std::string a, b, lines;
    } rows[] = {
        {frame + label(1) + sprite(1, frame), frame + label(1) + sprite(1, frame), ""},
        {label(1) + grid, label(1) + wideGrid, "same meaning 1 1\n"},
        {sprite(1, grid), sprite(1, wideGrid), "same meaning 0 0\nsame meaning 0.0 0.0\n"},
        // Attributes, children and texts
        {R"(<SetTabIndex Depth="3" />)", R"(<SetTabIndex Depth="4" />)", "different 0 0 SetTabIndex/@Depth 3 4\n"},
        {R"(<Protect />)", R"(<Protect Password="" />)", "different 0 0 Protect/@Password - \n"},
        {"<ExportAssets>" + assets + "</ExportAssets>", "<ExportAssets>" + assets + assets + "</ExportAssets>",
         "different 0 0 ExportAssets/Asset[3] - <Asset>\n"},
        {"<ExportAssets>" + assets + "</ExportAssets>",
         R"(<ExportAssets><Asset Id="1" Name="a" /><Asset /></ExportAssets>)",
         "different 0 0 ExportAssets/Asset[2]/@Id 2 0\n"},
        {R"(<Metadata Data="x&lt;1" />)", R"(<Metadata Data="x&lt;2" />)", "different 0 0 Metadata/Data x<1 x<2\n"},
        {"<Metadata Data=\"" + std::string(100, 'x') + "\" />", "<Metadata Data=\"" + std::string(99, 'x') + "y\" />",
         "different 0 0 Metadata/Data ...xxxxxxxxxx"
         "x (100 characters) ...xxxxxxxxxxy (100 characters)\n"},
        {R"(<Protect Password="" />)", wordProtect, "different 0 0 Protect <Protect> <Unknown>\n"},
        // One tag more or less makes no other differ
        {label(1) + frame + label(2) + frame, label(9) + grid + label(1) + frame + label(2) + frame,
         "only in B - 0\nonly in B - 1\n"},
        {label(1) + label(2) + grid + frame, label(1) + frame, "only in A 1 -\nonly in A 2 -\n"},
        {sprite(1, label(1) + frame) + label(2), label(3) + sprite(1, label(1) + label(4) + frame) + label(2),
         "only in B - 0\n"
         "different 0 1 DefineSprite/FrameLabel - <FrameLabel>\n"
         "only in B - 1.1\n"},
        {sprite(1, frame) + frame, sprite(2, frame) + frame, "different 0 0 DefineSprite/@Id 1 2\n"},
        {sprite(1, sprite(2, label(1))), sprite(1, sprite(2, label(2))),
         "different 0 0 DefineSprite/DefineSprite/FrameLabel/@Name 1 2\n"
         "different 0.0 0.0 DefineSprite/FrameLabel/@Name 1 2\n"
         "different 0.0.0 0.0.0 FrameLabel/@Name 1 2\n"},
    };
    for (const auto& row : rows) {
        const MovieComparison comparison = compare(row.a, row.b);
        EXPECT_EQ(linesOf(comparison), row.lines) << row.a << "\n" << row.b;
        EXPECT_EQ(comparison.same(), row.lines.empty() || row.lines.starts_with("same")) << row.a;
    }
}

TEST(MovieCompare, RepeatedTagsAroundInsertionsStayAligned) {
    std::string a, b;
    for (int i = 0; i < 500; ++i) {
        a += label(i % 3) + frame;
        if (i == 100 || i == 400)
            b += "<SetTabIndex /><ScriptLimits /><SetTabIndex />";
        b += i == 250 ? label(7) + frame : label(i % 3) + frame;
    }
    const auto counts = compare(a, b).counts();
    EXPECT_EQ(counts, (std::array<uint64_t, tagRelations>{999, 0, 1, 0, 6}));
}

TEST(MovieCompare, Header) {
    EXPECT_EQ(linesOf(compare(frame, frame, R"(SwfVersion="6")", R"(SwfVersion="6")")), "");
    EXPECT_EQ(linesOf(compare(frame, frame + frame, R"(SwfVersion="6" FrameRate="12" Width="2")",
                              R"(SwfVersion="5" FrameRate="0.5" Width="3")")),
              "SwfVersion 6 5\n"
              "IsCompressed true false\n"
              "FrameRate 12 0.5\n"
              "MaxX 40 60\n"
              "FrameCount 1 2\n"
              "only in B - 1\n");

    SwfMovieSafe plain, longer;
    compileInto(plain, frame, R"(SwfVersion="5")");
    const SwfBytes file = plain.body();
    std::vector<uint8_t> bytes(file.span().begin(), file.span().end());
    bytes.push_back(0xab);
    longer.parse(bytes, {.keepRaw = true});
    EXPECT_EQ(linesOf(compareMovies(plain, longer)), "AfterLastTag 0 bytes 1 bytes: ab\n");
}
