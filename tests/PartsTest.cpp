// Big movies and texts are converted by several threads, in parts. What comes out is what one thread gives.

#include <thread>

#include "Outcome.h"
#include "SwfInOrder.h"

using namespace libswf;
using namespace xml2swf;

namespace {

constexpr size_t count = 30000; // some 1.5 MB in both forms

using OddElements = std::vector<std::pair<size_t, std::string>>;

// Labels, with other elements at some places.
std::string document(const OddElements& odd, const std::string& every = {}) {
    std::string text = "<Movie SwfVersion=\"8\">";
    auto next = odd.begin();
    for (size_t i = 0; i < count; ++i) {
        const bool isOdd = next != odd.end() && next->first == i;
        const std::string name = std::to_string(i) + std::string(30, '-');
        text += "\n    " + (isOdd ? (next++)->second : "<FrameLabel Name=\"" + name + "\" " + every + "/>");
    }
    return text + "\n</Movie>";
}

// Notes what is reported, and may end the work.
struct Progress : IProgressReporter {
    explicit Progress(double fraction) : stopAt(fraction) {}
    const std::thread::id thread = std::this_thread::get_id();
    const double stopAt;
    std::vector<double> reports;

    void report(double fraction) override {
        EXPECT_EQ(std::this_thread::get_id(), thread);
        reports.push_back(fraction);
        if (fraction > stopAt)
            throw std::range_error("stopped");
    }
};

Outcome compiled(const std::string& text, uint32_t threads, double stopAt = 2, bool toWrite = false) {
    Progress progress(stopAt);
    Outcome outcome = ::compiled(text, {.progress = &progress, .toWrite = toWrite, .threads = threads});
    outcome.reports = progress.reports;
    return outcome;
}

// Warnings of reading come after those of showing.
Outcome shown(const std::string& file, SwfLoadOptions load, uint32_t threads, double stopAt = 2) {
    SwfMovieSafe movie;
    SwfWarnings reading;
    load.warnings = &reading;
    movie.parse({file.begin(), file.end()}, load);
    Progress progress(stopAt);
    std::vector<TagText> places;
    const auto show = [&](const ConversionOptions& options) {
        std::string text = swfToXml(movie, options);
        for (const TagText& place : places)
            text += " " + std::to_string(place.start) + "-" + std::to_string(place.end) + " " +
                    std::to_string(place.tag->type);
        return text;
    };
    Outcome outcome =
        outcomeOf({.keepRaw = load.keepRaw, .progress = &progress, .tagTexts = &places, .threads = threads}, show);
    outcome.reports = progress.reports;
    note(reading, outcome);
    return outcome;
}

const std::string badValue = "<SetTabIndex Depth=\"no\" />", notWell = "<ShowFrame><a></b></ShowFrame>",
                  odd = "<FrameLabel Nam=\"x\" />", foreign = "<Nothing />",
                  big = "<EnableDebugger Password=\"" + std::string(400000, 'x') + "\" />",
                  badCodec = "<Unknown TagType=\"60\"><Data><![CDATA[AQABAAEAAQAA/w==]]></Data></Unknown>";

// A big element with many tags and this one.
std::string sprite(const std::string& tag) {
    std::string text = "<DefineSprite Id=\"1\" FrameCount=\"1\">";
    for (size_t i = 0; i < 2000; ++i)
        text += "<ShowFrame />";
    return text + tag + "</DefineSprite>";
}

// A shape with so many edges, and others in front of some of them.
std::string shape(size_t edges, const OddElements& odd) {
    std::string text = "<DefineShape2 ShapeId=\"1\"><Bounds MaxX=\"1\" MaxY=\"1\" MinX=\"0\" MinY=\"0\" />"
                       "<FillStyles><SolidFillStyle Color=\"ff\" /></FillStyles><LineStyles /><Edges>";
    auto next = odd.begin();
    for (size_t i = 0; i < edges; ++i) {
        if (next != odd.end() && next->first == i)
            text += (next++)->second;
        const std::string number = std::to_string(int(i % 1000) - 500);
        text += i % 3 == 0 ? "\n<Curve CDX=\"" + number + "\" CDY=\"1\" ADX=\"2\" ADY=\"" + number + "\" />"
                           : "\n<Line DX=\"" + number + "\" DY=\"-7\" />";
        if (i % 100 == 0)
            text += "\n<StyleChange>\n<SetFill0 Index=\"1\" />\n</StyleChange>";
    }
    return text + "\n</Edges></DefineShape2>";
}

std::string script() {
    std::string text = "<DoAction><Actions>";
    for (size_t i = 0; i < 3000; ++i)
        text += "<Push><Integer Value=\"" + std::to_string(i) + "\" /></Push><Trace />";
    return text + "<End /></Actions></DoAction>";
}

} // namespace

TEST(Parts, CompileToTheSame) {
    const auto movie = [](const std::string& tag) {
        return "<Movie SwfVersion=\"8\"><ShowFrame />" + tag + "</Movie>";
    };
    const std::string newStyles = "<StyleChange><NewStyles><FillStyles><SolidFillStyle Color=\"0\" /></FillStyles>"
                                  "<LineStyles /></NewStyles></StyleChange>",
                      oddLine = "<Line DX=\"1\" DZ=\"1\" />", badLine = "<Line DX=\"x\" />",
                      bigChange = "<StyleChange>" + std::string(40000, ' ') + "</StyleChange>";
    struct {
        std::string text, problem;
        uint64_t warnings = 0;
    } const cases[] = {
        {document({}), ""},
        {document({{100, big}, {101, big}, {5000, script()}, {20000, sprite("")}, {29999, big}}), ""},
        {document({{0, "<!-- a comment -->"}, {700, "text"}, {15000, foreign}, {29000, "<![CDATA[]]>"}}), "", 1},
        {document({}, "Odd=\"1\" "), "", count},
        {document({{50, odd}, {15000, sprite(odd)}, {29000, odd}}), "", 3},
        {document({{50, odd}, {15000, odd}, {29000, odd}, {29500, badValue}}), "no\" is not", 3},
        {document({{50, badValue}, {51, odd}, {25000, badValue}}), "in row 52", 0},
        {document({{20000, sprite(badValue)}, {25000, badValue}}), "in row 20002", 0},
        {document({{50, badValue}, {25000, notWell}, {29000, notWell}}), "closing tag name in row 25002"},
        {document({{50, notWell}, {25000, badValue}}), "closing tag name in row 52"},
        {document({{3, "<ShowFrame"}}), "expected > in row 6"},
        {"<Movie>" + std::string(2000000, ' ') + "</Movie>", ""},
        {movie("<DefineMorphShape ShapeId=\"1\"><StartEdges><Line DX=\"1\" /></StartEdges>"
               "<StartEdges><Line DX=\"2\" /></StartEdges></DefineMorphShape>"),
         ""},
        {movie(shape(60000, {})), ""},
        {movie(shape(60000, {{0, newStyles}, {30000, newStyles}, {59990, newStyles}})), ""},
        {movie(shape(60000, {{20000, "<!-- a --><Line DY='1' DX='5'/>"}, {50000, oddLine}})), "", 1},
        {movie(shape(60000, {{20000, oddLine}, {40000, bigChange}, {45000, oddLine}})), "", 2},
        {movie(shape(60000, {{20000, badLine}, {40000, "<Line DX=\"no\" />"}})), "\"x\" is not"},
        {movie(shape(60000, {{20000, badLine}, {40000, "<Line><a></b></Line>"}})), "closing tag name"},
        {movie(shape(60000, {{50000, "<StyleChange><SetFill0 Index=\"4\" /></StyleChange>"}})), "fill index 4"},
    };
    for (const auto& c : cases) {
        const Outcome one = compiled(c.text, 1), several = compiled(c.text, 3), asBytes = compiled(c.text, 3, 2, true);
        EXPECT_EQ(one.problem.empty(), c.problem.empty()) << one.problem;
        EXPECT_NE(one.problem.find(c.problem), one.problem.npos) << one.problem;
        EXPECT_EQ(one.warningsInAll, c.warnings);
        EXPECT_TRUE(several == one) << several.problem << " instead of " << one.problem << "; warnings "
                                    << several.warningsInAll << "; reports " << several.reports.size();
        EXPECT_TRUE(asBytes == one) << asBytes.problem << " instead of " << one.problem;
    }
}

TEST(Parts, AreShownTheSame) {
    for (const OddElements& odd : {OddElements(),
                                   {{100, big},
                                    {101, sprite("")},
                                    {9000, script()},
                                    {15000, shape(40000, {})},
                                    {20000, badCodec},
                                    {29990, big}}}) {
        const std::string file = compiled(document(odd), 1).result;
        for (const bool keepRaw : {true, false}) {
            const Outcome one = shown(file, {.keepRaw = keepRaw}, 1);
            EXPECT_EQ(one.problem.empty(), keepRaw || odd.empty()) << one.problem;
            EXPECT_EQ(one.warningsInAll, keepRaw && !odd.empty() ? 1u : 0u);
            for (const bool readLater : {false, true})
                EXPECT_TRUE(shown(file, {.keepRaw = keepRaw, .readLater = readLater}, 3) == one);
        }
    }
}

// All cases in one movie, text and bytes, in each way.
TEST(Parts, CasesAreTheSameInEachWay) {
    for (const bool isFull : {false, true}) {
        std::string elements, text = isFull ? "<Movie Form=\"full\" SwfVersion=\"8\">" : "<Movie SwfVersion=\"8\">";
        Bytes records, file = hexBytes("46 57 53 08 00000000 10 00 00 01 00 00");
        for (const auto& path : findCases(casesDir)) {
            for (const CaseFile& each : parseCases(path)) {
                if (each.fullForm != isFull || each.version != 8)
                    continue;
                if (each.xml && each.fails == CaseFile::Fails::never)
                    elements += "\n" + *each.xml;
                if (each.body && each.tag != 0)
                    records = joined(std::move(records), joined(each.before, recordOf(each.tag, *each.body)));
            }
        }
        // Of the font in which cases give glyphs by their characters.
        text += "<DefineFontInfo FontId=\"30465\"><CodesTable><Code Value=\"80\" /><Code Value=\"117\" />"
                "<Code Value=\"34\" /></CodesTable></DefineFontInfo>";
        while (text.size() < bigText)
            text += elements;
        while (file.size() < bigBody)
            file = joined(std::move(file), records);
        text += "\n</Movie>";
        const Outcome objects = compiled(text, 1);
        EXPECT_EQ(objects.problem, "");
        for (const auto& [threads, toWrite] : {std::pair(1u, true), std::pair(3u, false), std::pair(3u, true)})
            EXPECT_TRUE(compiled(text, threads, 2, toWrite) == objects) << isFull << threads << toWrite;
        for (const bool keepRaw : {false, true}) {
            const auto show = [&](uint32_t threads, bool later) { // what is read later is warned of later
                Outcome outcome = shown({file.begin(), file.end()},
                                        {.fullForm = isFull, .keepRaw = keepRaw, .readLater = later}, threads);
                std::sort(outcome.warnings.begin(), outcome.warnings.end());
                return outcome;
            };
            const Outcome now = show(1, false);
            EXPECT_TRUE(now.problem.empty() || !keepRaw) << now.problem;
            for (const auto& [threads, later] : {std::pair(1u, true), std::pair(3u, false), std::pair(3u, true)})
                EXPECT_TRUE(show(threads, later) == now) << isFull << keepRaw << threads << later;
        }
    }
}

// Shapes of 1 MB, of which every hundredth is written with a warning, and another tag at a place.
static std::unique_ptr<SwfTags> bigList(size_t place, std::shared_ptr<SwfTag> odd) {
    auto tags = std::make_unique<SwfTags>();
    for (size_t i = 0; i < 4000; ++i) {
        auto shape = std::make_shared<SwfTagDefineShape3>();
        for (int32_t edge = 0; edge < 100; ++edge)
            shape->records.addLine(edge - 50, edge % 7);
        if (i % 100 == 0)
            shape->records.addLine(70000, static_cast<int32_t>(i));
        shape->characterId = static_cast<uint16_t>(i);
        tags->append(i == place ? odd : shape);
    }
    return tags;
}

static Outcome written(SwfTags& tags, bool inParts) {
    Outcome outcome;
    SwfWarnings warnings;
    SwfContext context;
    context.version = 8;
    try {
        SwfOStream stream(inParts ? tags.getSizeInParts(context, 3) : tags.getSize(context));
        stream.context = context;
        stream.context.warnings = &warnings;
        if (inParts) {
            tags.writeRecordsInParts(stream, 3);
            stream.writeUI16(0);
        } else {
            tags.write(stream);
        }
        outcome.result.assign(stream.begin(), stream.end());
    } catch (const SwfException& error) {
        outcome.problem = error.what();
    }
    for (const SwfWarning& warning : warnings.items())
        outcome.warnings.push_back(warning.tagName + " " + warning.reason);
    outcome.warningsInAll = warnings.total();
    return outcome;
}

TEST(Parts, AreMeasuredAndWrittenTheSame) {
    const auto font = [](uint16_t code) { // whose kerning codes are wide
        auto tag = std::make_shared<SwfTagDefineFont3>();
        tag->codes.append(code);
        tag->kerning.append({code, code, -1});
        return tag;
    };
    auto bad = std::make_shared<SwfTagDefineShape3>();
    bad->records.addStyleChange().moveDeltaX = INT32_MAX;
    static_cast<SwfStyleChange&>(bad->records[0]).stateMoveTo = true;
    for (const auto& [place, odd] : std::vector<std::pair<size_t, std::shared_ptr<SwfTag>>>{
             {5, std::make_shared<SwfTagEnd>()}, {2501, font('a')}, {3999, font(0x3b1)}, {5, bad}, {3210, bad}}) {
        const std::unique_ptr<SwfTags> one = bigList(place, odd), several = bigList(place, odd);
        const Outcome expected = written(*one, false);
        EXPECT_EQ(expected.problem.empty(), odd != bad) << expected.problem;
        EXPECT_EQ(expected.warningsInAll, odd == bad ? 0u : 40u);
        EXPECT_TRUE(written(*several, true) == expected);
    }
}

TEST(Parts, AReporterThatThrowsEndsTheWork) {
    const std::string text = document({}), file = compiled(text, 1).result;
    for (const Outcome& outcome : {compiled(text, 3, 0.3), shown(file, {.keepRaw = true}, 3, 0.3)}) {
        EXPECT_EQ(outcome.problem, "stopped");
        EXPECT_EQ(outcome.reports.size(), size_t(count * 0.3) + 1);
    }
}

TEST(Parts, AreTakenInOrderUpToTheFirstError) {
    for (const size_t bad : {0, 37, 99, 100}) {
        std::vector<size_t> done(100), taken;
        auto work = [&](size_t i) {
            done[i] = i + 1;
            if (i == bad || i > bad + 1)
                throw std::out_of_range(std::to_string(i));
        };
        auto take = [&](size_t i) { taken.push_back(done[i] - 1); };
        std::string error;
        try {
            workInOrder({done.size(), work, take}, 4);
        } catch (const std::out_of_range& thrown) {
            error = thrown.what();
        }
        EXPECT_EQ(error, bad == 100 ? "" : std::to_string(bad));
        ASSERT_EQ(taken.size(), std::min<size_t>(bad + 1, 100));
        for (size_t i = 0; i < taken.size(); ++i)
            EXPECT_EQ(taken[i], i);
    }
}
