// Texts of movies: out as lists and files, in again with the bytes worked out by hand.
#include "MovieTexts.h"

#include <cstdlib>

#include "Conversion.h"
#include "MovieCompare.h"
#include "Paths.h"
#include "SwfAllTags.h"
#include "SwfUtils.h"
#include "TextFiles.h"

using namespace libswf;
using namespace zelk;

namespace {

using Bytes = std::vector<uint8_t>;

// 'A', 'B' and 'e' with an accent, 500, 600 and 700 of 1024 wide.
std::string font2(const std::string& layout = R"(Ascent="800" Descent="200" Leading="0")") {
    const bool hasLayout = !layout.empty();
    std::string glyphs, codes, advances, bounds;
    for (const char* code : {"65", "66", "233"}) {
        glyphs += R"(<Glyphs><StyleChange><SetFill0 Index="1" /></StyleChange></Glyphs>)";
        codes += std::string("<Code Value=\"") + code + "\" />";
        bounds += R"(<Bound MaxX="0" MaxY="0" MinX="0" MinY="0" />)";
    }
    for (const char* advance : {"500", "600", "700"})
        advances += std::string("<Code Value=\"") + advance + "\" />";
    return R"(<DefineFont2 FontId="1" LanguageCode="0" FontName="Round" )" + layout +
           R"(><BitsField Bold="false" Italic="false" WideCodes="true" WideOffsets="false" ANSI="false" )"
           R"(SmallText="false" ShiftJIS="false" /><Glyphs>)" +
           glyphs + "</Glyphs><CodesTable>" + codes + "</CodesTable>" +
           (hasLayout ? "<AdvanceTable>" + advances + "</AdvanceTable><BoundsTable>" + bounds + "</BoundsTable>" +
                            "<KerningTable />"
                      : "") +
           "</DefineFont2>";
}

// Two records on one line and one on the next; 20 twips of spacing. The bounds end at 3000.
const std::string text37 =
    R"(<DefineText Id="37"><Bounds MaxX="3000" MaxY="400" MinX="0" MinY="0" /><Matrix>)"
    R"(<Translate TranslateX="0" TranslateY="0" /></Matrix><TextRecords>)"
    R"(<TextRecord XOffset="100" YOffset="300" Color="ff" FontId="1" Height="1024" Type="true"><GlyphEntries>)"
    R"(<GlyphEntry Index="0" Advance="520" /><GlyphEntry Index="1" Advance="620" /></GlyphEntries></TextRecord>)"
    R"(<TextRecord Color="ff0000ff" Type="true"><GlyphEntries><GlyphEntry Index="2" Advance="720" /></GlyphEntries></TextRecord>)"
    R"(<TextRecord XOffset="100" YOffset="600" Type="true"><GlyphEntries><GlyphEntry Index="0" Advance="500" />)"
    R"(</GlyphEntries></TextRecord></TextRecords></DefineText>)";

std::string field(uint32_t id, bool html, const std::string& text, const std::string& more = "") {
    return "<DefineEditText Id=\"" + std::to_string(id) + "\" " + more +
           " Color=\"ff\" VarName=\"v\"><Bounds MaxX=\"9\" MaxY=\"9\" MinX=\"0\" MinY=\"0\" />" +
           "<BitsField AutoSize=\"false\" ReadOnly=\"true\" Password=\"false\" Multiline=\"true\" WordWrap=\"false\" "
           "UseOutlines=\"" +
           (more.empty() ? "false" : "true") + "\" HTML=\"" + (html ? "true" : "false") +
           "\" WasStatic=\"false\" Border=\"false\" NoSelect=\"false\" /><InitialText><![CDATA[" + text +
           "]]></InitialText></DefineEditText>";
}

Bytes movieOf(const std::string& tags, int version = 7) {
    xml2swf::MovieTarget target;
    EXPECT_TRUE(xml2swf::xmlToSwf("<Movie Form=\"full\" SwfVersion=\"" + std::to_string(version) +
                                      "\" IsCompressed=\"false\">" + tags + "<ShowFrame /></Movie>",
                                  target, {.keepRaw = true}));
    const SwfVector<uint8_t> file = target.movie.serialise(0);
    return {file.begin(), file.end()};
}

std::unique_ptr<SwfMovieSafe> parsed(const Bytes& file) {
    auto movie = std::make_unique<SwfMovieSafe>();
    movie->parse(file, {.fullForm = true, .keepRaw = true});
    return movie;
}

// "key=text" for each.
std::vector<std::string> listed(const Bytes& file, TextChoice choice = {}) {
    std::vector<std::string> result;
    const MovieTexts texts = findTexts(*parsed(file), choice);
    for (const MovieText& text : texts.texts)
        result.push_back(text.key + "=" + text.text);
    for (const TextProblem& problem : texts.unreadable)
        result.push_back(problem.key + "?" + problem.reason);
    return result;
}

struct Changed {
    Bytes file;
    std::vector<std::string> problems;
};

Changed changed(const Bytes& file, const std::vector<NewText>& changes, TextChangeOptions options = {}) {
    const auto movie = parsed(file);
    ChangedTexts result = changeTexts(*movie, changes, options);
    const SwfVector<uint8_t> bytes = result.movie.serialise(0);
    Changed all{{bytes.begin(), bytes.end()}, {}};
    for (const TextProblem& problem : result.problems)
        all.problems.push_back(problem.key + "?" + problem.reason);
    return all;
}

using Lines = std::vector<std::string>;

} // namespace

TEST(Texts, AreListedWithStableKeys) {
    const std::string sprite = R"(<DefineSprite Id="4" FrameCount="1"><FrameLabel Name="go" IsAnchor="false" />)"
                               R"(<ShowFrame /></DefineSprite>)";
    const Bytes file = movieOf(font2() + text37 + sprite + field(12, true, "<p>A &amp; B<b> </b><i>C</i></p>") +
                               field(13, false, "one\rtwo") +
                               R"(<PlaceObject2 Depth="5" CharacterId="37" Name="title" Move="false" />)");
    EXPECT_EQ(listed(file), (Lines{"text:37:1=AB", "text:37:2=\u00E9", "text:37:3=A", "field:12:1=A & B",
                                   "field:12:2=C", "field:13=one\ntwo"}));
    EXPECT_EQ(
        listed(file, {.names = true}),
        (Lines{"text:37:1=AB", "text:37:2=\u00E9", "text:37:3=A", "label:sprite4/frame1=go", "field:12:1=A & B",
               "field:12:2=C", "variable:12=v", "field:13=one\ntwo", "variable:13=v", "name:frame1/depth5=title"}));
    const MovieText first = findTexts(*parsed(file), {}).texts[0];
    EXPECT_EQ(first.place, "frame 1, depth 5");
    EXPECT_EQ(first.fontName, "Round");
    EXPECT_DOUBLE_EQ(first.room->taken, 57);
    EXPECT_DOUBLE_EQ(first.room->most, 57 + (3000 - 1960) / 20.0);
    EXPECT_EQ(listed(movieOf(text37)),
              (Lines{"text:37:1?the movie has no font 1 with glyphs", "text:37:2?the movie has no font 1 with glyphs",
                     "text:37:3?the movie has no font 1 with glyphs"}));
}

TEST(Texts, StaticTextIsLaidOutAndAllElseKeepsItsBytes) {
    const Bytes before = movieOf(font2() + text37 + field(12, false, "x"));
    std::string other = text37;
    other.replace(other.find(R"(<GlyphEntry Index="0" Advance="520" />)"), 38,
                  R"(<GlyphEntry Index="2" Advance="720" /><GlyphEntry Index="0" Advance="520" />)");
    const auto after = changed(before, {{"text:37:1", "AB", "\u00E9AB"}});
    EXPECT_EQ(after.problems, Lines());
    EXPECT_EQ(after.file, movieOf(font2() + other + field(12, false, "x")));
    EXPECT_EQ(changed(after.file, {{"text:37:1", {}, "AB"}}).file, before);
    EXPECT_EQ(changed(before, {}).file, before);
}

TEST(Texts, WhatCannotBePutInIsToldAndStays) {
    const Bytes file =
        movieOf(font2() + text37 + field(12, false, "A", R"(FontId="1" FontHeight="200" MaxLength="3")") +
                field(13, true, "<p>A</p>"));
    const std::pair<NewText, const char*> cases[] = {
        {{"text:37:1", "AB", "Ax"}, "font 1 (Round) has no glyph for 'x' (U+0078)"},
        {{"text:37:1", "AB", "ABABA"}, "too wide by 31 px"},
        {{"text:37:1", "BA", "B"}, "the movie has another text there now"},
        {{"text:38:1", "AB", "B"}, "the movie has no text of this key"},
        {{"field:12", "A", "x"}, "font 1 (Round) has no glyph for 'x' (U+0078)"},
        {{"field:12", "A", "AAAA"}, "the field takes at most 3 characters"},
        {{"field:13:1", "A", " "}, "the new text is blank"},
        {{"field:12", {}, "\xFF"}, "the new text is no UTF-8"},
    };
    for (const auto& [change, reason] : cases) {
        const auto after = changed(file, {change});
        EXPECT_EQ(after.problems, Lines{change.key + "?" + reason});
        EXPECT_EQ(after.file, file) << reason;
    }
    const auto wide = changed(file, {{"text:37:1", "AB", "ABABA"}}, {.widen = true});
    EXPECT_EQ(wide.problems, Lines());
    EXPECT_EQ(dynamic_cast<const SwfTagDefineText&>(*parsed(wide.file)->tags.at(1)).bounds.Xmax, 3620);
}

TEST(Texts, FontWithoutAdvancesTakesThoseOfTheTexts) {
    const Bytes file = movieOf(font2("") + text37);
    const auto after = changed(file, {{"text:37:3", "A", "BA"}});
    EXPECT_EQ(after.problems, Lines());
    const auto movie = parsed(after.file);
    const auto& glyphs = dynamic_cast<const SwfTagDefineText&>(*movie->tags.at(1)).records[2].glyphs;
    EXPECT_EQ(glyphs[0].advance, 620 - 20);
}

TEST(Texts, FieldsKeepMarksReturnsAndCodePage) {
    const Bytes before = movieOf(field(12, true, "<p>A &amp; B<b> </b><i>C</i></p>") + field(13, false, "one\rtwo"), 5);
    const auto after = changed(before, {{"field:12:1", "A & B", "1 < 2"},
                                        {"field:12:2", "C", "\u00E9\u20AC"},
                                        {"field:13", "one\ntwo", "1\n2"},
                                        {"variable:13", "v", "\u4E2D"}});
    EXPECT_EQ(after.problems,
              Lines{"variable:13?the movie's strings are Windows-1252, which has no '\u4E2D' (U+4E2D)"});
    EXPECT_EQ(after.file,
              movieOf(field(12, true, "<p>1 &lt; 2<b> </b><i>\xE9\x80</i></p>") + field(13, false, "1\r2"), 5));
}

TEST(Texts, ChangesInSpritesAndOfMovedTextsFindTheirPlace) {
    const auto movie = [](const std::string& text) {
        return movieOf(R"(<DefineSprite Id="4" FrameCount="9"><FrameLabel Name="a" IsAnchor="false" /><ShowFrame />)"
                       R"(<FrameLabel Name=")" +
                       text + R"(" IsAnchor="false" /><ShowFrame /></DefineSprite>)");
    };
    const auto after = changed(movie("b"), {{"label:sprite4/frame2", "b", "longer than before"}});
    EXPECT_EQ(after.file, movie("longer than before"));
    const auto moved = changed(movieOf(field(12, true, "<p>new</p><p>A</p>")), {{"field:12:1", "A", "B"}});
    EXPECT_EQ(moved.file, movieOf(field(12, true, "<p>new</p><p>B</p>")));
}

namespace {

// x = c ? "Yes" : text; my.label = "Hello"; play("a"); and a function that is called by its name.
std::string script(const std::string& text) {
    return R"(<DoAction><Actions><ConstantPool><Constant Name="my" /><Constant Name="label" /><Constant Name="Hello" />)"
           R"(</ConstantPool><Push><String Name="x" /><String Name="c" /></Push><GetVariable /><If To="L1" />)"
           R"(<Push><String Name=")" +
           text +
           R"(" /></Push><Jump To="L2" /><Push At="L1"><String Name="Yes" /></Push><SetVariable At="L2" />)"
           R"(<Push><Constant Name="my" /></Push><GetVariable /><Push><Constant Name="label" /><Constant Name="Hello" />)"
           R"(</Push><SetMember /><Push><String Name="a" /><Integer Value="1" /><String Name="gotoAndPlay" /></Push>)"
           R"(<CallFunction /><Pop /><End /></Actions></DoAction>)";
}

std::string abc(const std::string& text) {
    return R"(<DoABC Flags="1" Name="main"><Abc MajorVersion="46" MinorVersion="16"><Script><Initializer><Code MaxStack="5" )"
           R"(LocalCount="1" InitScopeDepth="1" MaxScopeDepth="2"><GetLocal0 /><PushString Value="key" /><PushString Value=")" +
           text +
           R"(" /><NewObject Count="1" /><PushTrue /><IfTrue To="L1" /><PushString Value="member" /><GetProperty Name="{}::[]" />)"
           R"(<Pop At="L1" /><ReturnVoid /></Code></Initializer></Script><Constants><NamespaceSet Name="{}" /></Constants></Abc></DoABC>)";
}

} // namespace

TEST(Texts, ScriptsArePutInWithTheirBranchesAndWithoutTheirNames) {
    const Bytes before = movieOf(script("No") + script("No"));
    EXPECT_EQ(listed(before, {.scripts = true}),
              (Lines{"script:frame1:3=No", "script:frame1:4=Yes", "script:frame1:7=Hello", "script:frame1#2:3=No",
                     "script:frame1#2:4=Yes", "script:frame1#2:7=Hello"}));
    const auto after = changed(before, {{"script:frame1#2:3", "No", "\u00E9 & <so on>"}});
    EXPECT_EQ(after.problems, Lines());
    EXPECT_EQ(after.file, movieOf(script("No") + script("\u00E9 &amp; &lt;so on&gt;")));
    const std::string most(70000, 'x');
    EXPECT_EQ(changed(before, {{"script:frame1:3", "No", most}}).file, before);
    EXPECT_EQ(changed(before, {{"script:frame1:3", "No", most}}).problems.size(), 1u);

    std::string choices; // what lies below them is looked at once for each, not once for each way through all
    for (int i = 0; i < 60; ++i) {
        const std::string end = "E" + std::to_string(i), other = "O" + std::to_string(i);
        choices += "<Push><Boolean Value=\"1\" /></Push><If To=\"" + other +
                   "\" /><Push><Integer Value=\"1\" /></Push>" + "<Jump To=\"" + end + "\" /><Push At=\"" + other +
                   "\"><Integer Value=\"2\" /></Push><Pop At=\"" + end + "\" />";
    }
    const Bytes many = movieOf("<DoAction><Actions><Push><String Name=\"below\" /></Push>" + choices +
                               "<Trace /><End /></Actions></DoAction>");
    EXPECT_EQ(listed(many, {.scripts = true}), Lines{"script:frame1:1=below"});

    const Bytes block = movieOf(abc("value"), 10);
    EXPECT_EQ(listed(block, {.scripts = true}), Lines{"script:abc/main:Initializer:2=value"});
    const auto changedBlock = changed(block, {{"script:abc/main:Initializer:2", "value", "two\nlines \\"}});
    EXPECT_EQ(listed(changedBlock.file, {.scripts = true}), Lines{"script:abc/main:Initializer:2=two\nlines \\"});
}

TEST(Texts, FilesGiveBackWhatTheyWereGiven) {
    MovieText text;
    text.key = "field:12";
    text.text = "quote \" back \\ tab \t\nline, \x01 \u00E9\r;";
    text.tagCode = SwfTagCode::DefineEditText;
    const std::pair<TextFileKind, const char*> kinds[] = {{TextFileKind::po, "msgstr \"\""},
                                                          {TextFileKind::csv, ",\"\"\r\n"},
                                                          {TextFileKind::json, "\"translation\": \"\""}};
    for (const auto& [kind, empty] : kinds) {
        std::string file = writeTexts({text}, kind, "a.swf");
        EXPECT_TRUE(readTexts(file, kind).empty());
        const std::string_view mark = empty;
        file.insert(file.rfind(mark) + mark.rfind('"'), "new");
        const std::vector<NewText> changes = readTexts(file, kind);
        ASSERT_EQ(changes.size(), 1u) << file;
        EXPECT_EQ(changes[0].key, text.key);
        EXPECT_EQ(changes[0].original, text.text);
        EXPECT_EQ(changes[0].text, "new");
    }
    const auto po = readTexts("#, fuzzy\nmsgctxt \"a\"\nmsgid \"b\"\nmsgstr \"c\"\n\nmsgctxt \"d\"\r\n"
                              "msgid \"\"\n\"e\\x41\\101\"\nmsgstr \"f\"\n\"g\"",
                              TextFileKind::po);
    ASSERT_EQ(po.size(), 1u);
    EXPECT_EQ(*po[0].original + "=" + po[0].text, "eAA=fg");
    const std::tuple<TextFileKind, const char*, size_t> bad[] = {
        {TextFileKind::po, "msgid \"a\"\nmsgid_plural \"b\"", 2},
        {TextFileKind::po, "\nmsgid \"a", 2},
        {TextFileKind::po, "msgid \"\\q\"", 1},
        {TextFileKind::po, "msgctxt \"a\"", 1},
        {TextFileKind::csv, "key,text\n", 1},
        {TextFileKind::csv, "key,text,translation\n\"a", 2},
        {TextFileKind::csv, "key,text,translation\n\"a\nb\",c,d\ne", 4},
        {TextFileKind::json, "{", 0}};
    for (const auto& [kind, content, line] : bad) {
        try {
            readTexts(content, kind);
            ADD_FAILURE() << content;
        } catch (const TextFileError& error) {
            EXPECT_EQ(error.line, line) << content;
        }
    }
}

// Each text in its place again, laid out anew, gives the movie as it was; each changed one is there.
TEST(Texts, OfRealMoviesComeOutAndIn) {
    std::error_code missing;
    uint32_t texts = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(corpusDir, missing)) {
        if (entry.path().extension() != ".swf" || entry.path().stem() == "lzma-malformed-length")
            continue;
        const Bytes file = readFile(entry.path().string());
        const auto movie = parsed(file);
        constexpr size_t mostWithScripts = 10000; // of all movies it takes long
        const TextChoice choice{file.size() < mostWithScripts, true};
        const MovieTexts all = findTexts(*movie, choice);
        std::vector<NewText> changes, back;
        for (const MovieText& text : all.texts) {
            std::string shorter = text.text;
            const size_t vowel = shorter.find_last_of("aeiou");
            shorter.size() == 1 || vowel == shorter.npos ? shorter += shorter : shorter.erase(vowel, 1);
            changes.push_back({text.key, text.text, shorter});
            back.push_back({text.key, {}, text.text});
        }
        texts += static_cast<uint32_t>(all.texts.size());
        const Bytes body(movie->body().span().begin(), movie->body().span().end());
        const auto after = changed(file, changes);
        EXPECT_EQ(listed(after.file, choice).size(), all.texts.size()) << entry.path();
        const std::string name = entry.path().stem().string();
        if (name.ends_with("invalid_utf8") || name.ends_with("text_blocks_clicks"))
            continue; // names that stay UTF-8 once they were; kerning
        const auto again = changed(after.file, back).file;
        EXPECT_EQ(listed(again, choice), listed(file, choice)) << name;
        const auto isScript = [](const MovieText& text) { return text.kind == TextKind::script; };
        if (std::none_of(all.texts.begin(), all.texts.end(), isScript)) { // pools keep what was added
            EXPECT_TRUE(xml2swf::compareMovies(*parsed(file), *parsed(again)).same()) << name;
        }
    }
    std::cout << texts << " texts\n";
}
