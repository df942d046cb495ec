// The two forms side by side: what works on a part of a document follows its form, what the classic form shows
// otherwise is counted, what stands as Unknown is told.
#include "Tests.h"

#include "Completion.h"
#include "DocumentFonts.h"
#include "ElementInsertion.h"
#include "SingleTag.h"
#include "TagCheck.h"
#include "TagPayload.h"
#include "UnknownTag.h"

using namespace libswf;
using namespace xml2swf;
using namespace zelk;

namespace {

// --- parts of a document ---------------------------------------------------------------------------------------------

std::string bodyOf(const SwfTag& tag, MovieLayout layout) {
    SwfContext context;
    context.version = layout.version;
    context.fullForm = layout.fullForm;
    return hexText(::bodyOf(const_cast<SwfTag&>(tag), context));
}

struct FullTag {
    const char *element, *body;
};

const FullTag fullTags[] = {
    {R"(<PlaceObject3 Depth="1" Move="true"><FilterList><DropShadowFilter DropShadowColor="ff"><BitsField Passes="1" CompositeSource="1" /><Angle Value="1" /><Distance Value="4.5" /></DropShadowFilter></FilterList></PlaceObject3>)",
     "01 01 01 00 01 00 00 00 00 ff 00 00 00 00 00 00 00 00 00 00 01 00 00 80 04 00 00 00 21"},
    {R"(<PlaceObject4 Depth="1" CharacterId="2" Move="false"><Metadata>AQ==</Metadata></PlaceObject4>)",
     "02 00 01 00 02 00 01"},
    {R"(<DoAction><Actions><Push><Double Value="1.5" /></Push></Actions></DoAction>)",
     "96 09 00 06 00 00 f8 3f 00 00 00 00"},
    {R"(<ImportAssets URL="a"><Asset Id="5" Name="b" /></ImportAssets>)", "61 00 01 00 05 00 62 00"},
};

std::string fullDocument() {
    std::string text = "<?xml version=\"1.0\" ?>\n<!-- <Movie> -->\n<Movie Form='full' SwfVersion=\"9\">\n";
    for (const FullTag& tag : fullTags)
        text.append("    ").append(tag.element) += '\n';
    return text + R"(    <DefineSound SoundId="3" SoundFormat="Speex"><SoundData>AQID</SoundData></DefineSound>
</Movie>)";
}

TEST(FullDocument, PartsAreReadInItsForm) {
    const std::string text = fullDocument();
    const MovieLayout layout = layoutAtStart(text);
    EXPECT_EQ(layout, MovieLayout(9, true));
    EXPECT_NO_THROW(checkMovieText(text));
    for (const FullTag& test : fullTags) {
        SCOPED_TRACE(test.element);
        SwfWarnings warnings;
        const auto tag = compileTag(test.element, layout, &warnings);
        ASSERT_NE(tag, nullptr);
        EXPECT_EQ(bodyOf(*tag, layout), hexText(hexBytes(test.body)));
        EXPECT_NO_THROW(checkTag(test.element, layout, warnings));
        EXPECT_TRUE(warnings.empty()) << warnings.items()[0].reason;
        const std::string shown = tagElement(tag, layout);
        EXPECT_EQ(bodyOf(*compileTag(shown, layout, nullptr), layout), bodyOf(*tag, layout)) << shown;
        const auto elements = payloadElementsAt(text, text.find(test.element));
        ASSERT_TRUE(elements);
        EXPECT_EQ(bodyOf(TagPayload(*elements).tag(), layout), bodyOf(*tag, layout));
    }
    const auto sound = payloadElementsOf(text, 3);
    ASSERT_TRUE(sound);
    EXPECT_NE(tagElement(compileTag(sound->element, sound->layout, nullptr), sound->layout).find("Speex"),
              std::string::npos);
}

TEST(FullDocument, TextsAloneTakeTheFontsOfTheirDocument) {
    const std::string element =
        R"(<DefineText Id="1"><TextRecords><TextRecord FontId="5" Height="9"><GlyphEntries><GlyphEntry Character="&lt;" Advance="1" /></GlyphEntries></TextRecord></TextRecords></DefineText>)";
    const std::string codes = "><CodesTable><Code Value=\"80\" /><Code Value=\"60\" /></CodesTable></DefineFontInfo>";
    const std::string document = "<Movie Form=\"full\" SwfVersion=\"9\">" + element + "<DefineFontInfo FontId=\"7\"" +
                                 codes + "<DefineFontInfo FontId=\"5\"" + codes + "</Movie>";
    const MovieLayout layout = layoutAtStart(document);
    const auto ids = spelledFonts(element, true);
    EXPECT_EQ(ids, std::vector<uint16_t>{5});
    EXPECT_TRUE(spelledFonts(element, false).empty());
    const FontTables fonts = fontsOf(document, TagIndex(document), ids);
    EXPECT_EQ(fonts.find(7), nullptr);
    SwfWarnings warnings;
    checkTag(element, layout, warnings, &fonts);
    EXPECT_THROW(checkTag(element, layout, warnings), XmlValueError);
    const auto tag = compileTag(element, layout, &warnings, &fonts);
    EXPECT_NE(tagElement(tag, layout, &fonts).find("Character=\"&lt;\""), std::string::npos);
    EXPECT_NE(tagElement(tag, layout).find("Index=\"1\""), std::string::npos);
    EXPECT_NE(tagInForm(element, layout, false, &fonts).find("Index=\"1\""), std::string::npos);
}

TEST(FullDocument, OffersTheWordsOfItsForm) {
    const std::string text = fullDocument();
    const auto words = [&](size_t at, std::string_view typed) {
        std::string edited = text;
        edited.insert(at, typed);
        const auto completion = completionAt(edited, at + typed.size());
        std::string result;
        for (const std::string& word : completion ? completion->words : std::vector<std::string>())
            result += word + " ";
        return result;
    };
    EXPECT_NE(words(text.find("<PlaceObject4"), "<").find("FreeCharacter "), std::string::npos);
    EXPECT_EQ(words(text.find("<Angle"), "<Distance "), "Value ");
    EXPECT_EQ(words(text.find("<Double"), "<Con"),
              "Boolean Constant Constant16 Constant8 Double Float Integer Null Register String Undefined /Push ");
    EXPECT_EQ(words(text.find("<Push"), "<Jump "), "At To Offset ");
    const std::string part = "<DropShadowFilter><Distance ";
    const auto wordsIn = [&](std::optional<bool> fullForm) { return completionAt(part, part.size(), fullForm)->words; };
    EXPECT_EQ(wordsIn(true), std::vector<std::string>{"Value"});
    EXPECT_EQ(wordsIn({}), (std::vector<std::string>{"High", "Low"})) << "a part of a movie does not tell its form";
    const auto place = placeForElement(text, text.find("<DoAction"), ElementKind::tag);
    ASSERT_TRUE(place);
    const auto isNew = [](const XmlChildForm& choice) { return choice.name == "EnableTelemetry"; };
    EXPECT_TRUE(std::ranges::any_of(place->choices, isNew));
    const auto classic = placeForElement("<Movie>\n</Movie>", 8, ElementKind::tag);
    EXPECT_FALSE(std::ranges::any_of(classic->choices, isNew));
}

// --- what the classic form shows otherwise ---------------------------------------------------------------------------

Bytes fileOf(const std::string& records) { return movieFile(9, hexBytes(records + " 00 00")); }

FormDifferences differences(const std::vector<uint8_t>& file) {
    SwfMovieSafe movie;
    movie.parse(file, {.keepRaw = true, .readLater = true});
    FormDifferences found;
    ConversionOptions options;
    options.keepRaw = true;
    options.formDifferences = &found;
    options.threads = 4;
    swfToXml(movie, options);
    return found;
}

constexpr const char* oneDouble = "0d 03  96 09 00 06 00 00 f0 3f 00 00 00 00  00";

TEST(FormDifferences, AreCountedWhereLayoutsDiffer) {
    const struct {
        const char *name, *records;
        uint64_t values, tags;
    } cases[] = {
        {"a double", oneDouble, 1, 0},
        {"a double of zero", "0d 03  96 09 00 06 00 00 00 00 00 00 00 00  00", 0, 0},
        {"LoadTarget, which shows as a method", "05 03  9a 01 00 40  00", 2, 0},
        {"no flags", "05 03  9a 01 00 00  00", 0, 0},
        {"an action that stands as bytes", "05 03  9f 01 00 01  00", 1, 0},
        {"an action of no known code", "05 03  fe 01 00 01  00", 0, 0},
        {"Try", "0f 03  8f 09 00 01  01 00 01 00 00 00  65 00  07 07  00", 1, 0},
        {"the shadow's distance and two of its flags",
         "a0 11  02 01 01 00 02 00  01 00  00 00 00 ff  00 00 04 00  00 00 04 00  01 00 00 00  00 00 04 00  00 01 21",
         3, 0},
        {"the same distance as angle",
         "a0 11  02 01 01 00 02 00  01 00  00 00 00 ff  00 00 04 00  00 00 04 00  00 00 04 00  00 00 04 00  00 01 01",
         0, 0},
        {"a ratio of more than 8 bits", "86 11  10 00 01 00 01 01", 1, 0},
        {"the winding rule", "c9 14  01 00 00 00 04 00 00 11 00", 1, 0},
        {"an import table", "44 0e  61 00 00 00", 0, 1},
        {"one in a sprite", "ca 09  01 00 00 00  44 0e  61 00 00 00  00 00", 0, 1},
        {"a sound of a format without a name", "87 03  01 00 b0 00 00 00 00", 0, 1},
        {"a tag of no known code", "02 4b  01 02", 0, 0},
        {"a broken tag", "43 0a  01 02 03", 0, 0},
    };
    for (const auto& test : cases)
        EXPECT_EQ(differences(fileOf(test.records)), (FormDifferences{test.values, test.tags})) << test.name;
    Bytes big = movieFile(9, {});
    const std::vector<uint8_t> record = hexBytes(oneDouble);
    constexpr size_t count = 30000;
    for (size_t i = 0; i < count; ++i)
        big.insert(big.end(), record.begin(), record.end());
    EXPECT_EQ(differences(big), (FormDifferences{count, 0})) << "on several threads";
}

// --- what stands as Unknown ------------------------------------------------------------------------------------------

TEST(UnknownTag, SaysWhatItIs) {
    const auto unknown = [](const char* code, const char* data) {
        return "<Unknown TagType=\"" + std::string(code) + "\"><Data>" + data + "</Data></Unknown>";
    };
    const struct {
        std::string element;
        bool fullForm;
        const char* words;
    } cases[] = {
        {unknown("41", "AQID"), true, "ProductInfo, kept raw: ProductID: data ends here"},
        {unknown("41", "AQID"), false, "ProductInfo, kept raw: only the full form shows it"},
        {unknown("300", "AQID"), true, "Tag 300, kept raw: no layout of it is known"},
        {unknown("9", "AQIDBA=="), false, "SetBackgroundColor, kept raw: 1 bytes are left over after its fields"},
        {unknown("9", "AQID"), false, "SetBackgroundColor, kept raw"},
        {unknown("73", "AQAA"), false, "DefineFontAlignZones, kept raw"},
        {"<Unknown TagType=\"14\" CharacterId=\"1\"><Data>sAAAAAA=</Data></Unknown>", false, "DefineSound, kept raw: "},
        {unknown("9", "!"), false, ""},
        {"<ShowFrame />", false, ""},
    };
    for (const auto& test : cases) {
        const std::string words = unknownTagWords(test.element, {9, test.fullForm}, 1000);
        EXPECT_TRUE(words.starts_with(test.words) && words.empty() == (*test.words == 0)) << test.element << words;
    }
    const std::string big = unknown("9", std::string(2000, 'A').c_str());
    EXPECT_EQ(unknownTagWords(big, 9, 1000), "SetBackgroundColor, kept raw");
    const std::string text = "<Movie>" + big + "<Unknown TagType=\"9\" /><ShowFrame/></Movie>";
    EXPECT_EQ(unknownElementAt(text, text.find("</Unknown>")), big);
    EXPECT_EQ(unknownElementAt(text, text.find("\"9\" />")), "<Unknown TagType=\"9\" />");
    EXPECT_FALSE(unknownElementAt(text, text.find("<ShowFrame")));
}

} // namespace
