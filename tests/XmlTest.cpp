// The XML frame: numbers, base64, the element writer, the parser's limits and the places of errors.
#include "Tests.h"

#include "Base64.h"
#include "XmlElementWriter.h"
#include "XmlNumbers.h"
#include "XmlTags.h"

using namespace libswf;
using namespace xml2swf;
using namespace std::string_literals;

namespace {

TEST(XmlNumbers, FloatsKeepTheirBits) {
    const struct {
        uint32_t bits;
        const char* text;
    } rows[] = {
        {0x41400000, "12"},
        {0x3DCCCCCD, "0.1"},
        {0x80000000, "-0"},
        {0x3F800001, "1.0000001"},
        {0x00000001, "1e-45"},
        {0x7F7FFFFF, "3.4028235e+38"},
        {0x7F800000, "inf"},
        {0xFF800000, "-inf"},
        {0x7FC00000, "nan"},
        {0xFFC00000, "nan(ffc00000)"},
        {0x7F800001, "nan(7f800001)"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(formatReal(std::bit_cast<float>(row.bits)).view(), row.text);
        ASSERT_TRUE(parseFloat(row.text)) << row.text;
        EXPECT_EQ(std::bit_cast<uint32_t>(*parseFloat(row.text)), row.bits) << row.text;
    }
    EXPECT_EQ(formatReal(0.1).view(), "0.1");
    EXPECT_EQ(std::bit_cast<uint64_t>(parseDouble("nan(7ff0000000000001)").value_or(0)), 0x7FF0000000000001);
    EXPECT_EQ(formatReal(std::bit_cast<double>(uint64_t(1))).view(), "5e-324");
    EXPECT_EQ(parseFloat("+1.5e1"), 15.0f);
    EXPECT_EQ(parseFloat(".5"), 0.5f);
    for (const char* text : {"", "+", "-", "+-1", "-+1", "--1", " 1", "1 ", "0x1", "1,5", "1.5f", "infinity", "nan()",
                             "nan(3f800000)", "nan(7f800001", "nan(17f800001)", "NaN(x)", "1e39"})
        EXPECT_FALSE(parseFloat(text)) << text;
}

TEST(XmlNumbers, IntegersAreDecimal) {
    const struct {
        const char* text;
        std::optional<int64_t> value;
    } rows[] = {
        {"0", 0},
        {"007", 7},
        {"+5", 5},
        {"-5", -5},
        {"9223372036854775807", INT64_MAX},
        {"-9223372036854775808", INT64_MIN},
        {"9223372036854775808", {}},
        {"", {}},
        {"+", {}},
        {"-", {}},
        {"+-5", {}},
        {"++5", {}},
        {" 5", {}},
        {"5 ", {}},
        {"0x5", {}},
        {"5.0", {}},
        {"five", {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(parseInteger(row.text), row.value) << row.text;
    EXPECT_EQ(formatInteger(int8_t(-7)).view(), "-7");
    EXPECT_EQ(formatInteger(uint8_t(55)).view(), "55"); // not the character

    EXPECT_EQ(parseHex("fF0000ff"), 0xFF0000FF);
    EXPECT_EQ(parseHex("ff0000"), 0x00FF0000u);
    for (const char* text : {"", "0x12", "-1", "+1", "123456789", "g", " 1"})
        EXPECT_FALSE(parseHex(text)) << text;
}

TEST(Base64, BothWays) {
    const struct {
        const char* bytes;
        const char* text;
    } rows[] = {{"", ""},          {"00", "AA=="},       {"ff", "/w=="},
                {"fb ff", "+/8="}, {"4d 61 6e", "TWFu"}, {"4d 61 6e 00", "TWFuAA=="}};
    for (const auto& row : rows) {
        XmlText text("<");
        appendBase64(text, hexBytes(row.bytes));
        EXPECT_EQ(text.view(), std::string("<") + row.text);
        EXPECT_EQ(hexText(decodeBase64(row.text)), row.bytes);
    }
    for (const char* text : {" TWFu ", "T\tW\r\nF\nu", "TWFu\n"})
        EXPECT_EQ(hexText(decodeBase64(text)), "4d 61 6e") << text;
    EXPECT_EQ(hexText(decodeBase64("TWFu A A =\n=")), "4d 61 6e 00");
    EXPECT_TRUE(decodeBase64(" \n").empty());

    for (size_t size : {767, 768, 769, 1536, 1537}) {
        Bytes bytes(size);
        for (size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<uint8_t>(i * 31);
        XmlText encoded;
        appendBase64(encoded, bytes);
        const std::string text = encoded.take();
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), static_cast<ptrdiff_t>((size - 1) / 768));
        EXPECT_EQ(text.find('\n'), size > 768 ? 1024 : text.npos);
        EXPECT_EQ(decodeBase64(text), bytes);
    }
}

TEST(Base64, TellsForeignCharactersAnywhere) {
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (int c = 0; c < 256; ++c) {
        if (c == '=')
            continue; // ends a text
        const size_t found = c == 0 ? alphabet.npos : alphabet.find(static_cast<char>(c));
        for (const size_t at : {0, 5, 14, 31, 33, 63, 90, 103}) {
            std::string text(104, 'A');
            text[at] = static_cast<char>(c);
            Bytes expected(78);
            for (size_t bit = 0; bit < 6 && found != alphabet.npos; ++bit)
                expected[(at * 6 + bit) / 8] |=
                    static_cast<uint8_t>((found >> (5 - bit) & 1) << (7 - (at * 6 + bit) % 8));
            try {
                EXPECT_EQ(decodeBase64(text), expected) << c << " at " << at;
                EXPECT_NE(found, alphabet.npos) << c << " at " << at;
            } catch (const Base64Error&) {
                EXPECT_EQ(found, alphabet.npos) << c << " at " << at;
            }
        }
    }
}

TEST(Base64, RefusesWithThePlace) {
    const struct {
        const char* text;
        size_t offset; // of the group that is wrong
    } rows[] = {{"A", 0},        {"AA", 0},       {"AAA", 0},  {"TWFuA", 4}, {"TWFu AA=", 5}, {"TW!u", 0},
                {"TWFu-_-_", 4}, {"AA==TWFu", 0}, {"AA=A", 0}, {"A===", 0},  {"====", 0},     {"TWFu\xC3\xA9==", 4},
                {"=", 0}};
    for (const auto& row : rows) {
        try {
            decodeBase64(row.text);
            ADD_FAILURE() << row.text;
        } catch (const Base64Error& error) {
            EXPECT_EQ(error.place.offset, row.offset) << row.text;
            EXPECT_STREQ(error.what(), "Incorrect Base64 data");
        }
    }
}

TEST(XmlElementWriter, TakesLateAttributesAndSplitsCData) {
    XmlText out;
    XmlElementWriter parent, child;
    parent.begin(out, 0, "A", true);
    child.begin(out, 1, "B");
    child.text("x]]>y");
    child.end(true);
    parent.attribute("Late", true); // goes into the start tag all the same
    parent.attribute("Color", SwfColor(0, 0xAB, 0, 0));
    {
        XmlElementWriter open;
        open.begin(out, 1, "C", true);
        open.attribute("N", SwfString(std::string(200, 'n')));
    }
    parent.end(true);
    EXPECT_EQ(
        out.view(),
        "<A Late=\"true\" Color=\"ab0000\">\n    <B>\n        <![CDATA[x]]]]><![CDATA[>y]]>\n    </B>    <C N=\"" +
            std::string(200, 'n') + "\">\n    </C>\n</A>");
}

// Compiles one tag under a Movie element; `text` is the whole document.
struct Compiled {
    MovieTarget target;
    SwfWarnings warnings;
    bool done;
    explicit Compiled(std::string_view text)
        : done(xmlToSwf(text, target, {.keepRaw = false, .warnings = &warnings})) {}
};

TEST(Conversion, EveryByteOfALabelSurvives) {
    std::string bytes;
    for (int c = 1; c < 256; ++c)
        bytes += static_cast<char>(c);
    bytes += "\r\n\n\r'\"<&>]]>&amp;&#65;";
    SwfMovieSafe movie, again;
    auto label = std::make_shared<SwfTagFrameLabel>();
    label->name = SwfString(bytes);
    movie.tags.append(label);
    auto reload = [](const SwfVector<uint8_t>& file) { return std::vector<uint8_t>(file.begin(), file.end()); };
    again.parse(reload(movie.serialise(9)), {});
    Compiled compiled(swfToXmlDocument(again, {}));
    SwfMovieSafe back;
    back.parse(reload(compiled.target.movie.serialise(9)), {});
    const std::string_view name = dynamic_cast<SwfTagFrameLabel&>(*back.tags.at(0)).name.view();
    EXPECT_EQ(hexDiff({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()},
                      {reinterpret_cast<const uint8_t*>(name.data()), name.size()}),
              "");
}

TEST(XmlPlace, CountsRowsAndCharacters) {
    const struct {
        const char* text;
        size_t offset;
        uint32_t row, column;
    } rows[] = {
        {"", 0, 1, 1},
        {"abc", 2, 1, 3},
        {"a\nb", 2, 2, 1},
        {"a\r\nb", 3, 2, 1},
        {"a\rb", 2, 2, 1},
        {"\n\r\n\r\rx", 5, 5, 1},
        {"\r", 1, 2, 1},
        {"\xC3\xA9\xE2\x82\xACx", 5, 1, 3},
        {"a\n\xF0\x9F\x98\x80z", 6, 2, 2},
        {"ab", 99, 1, 3},
    };
    for (const auto& row : rows) {
        XmlPlace place;
        place.offset = row.offset;
        place.locate(row.text);
        EXPECT_EQ(place.row, row.row) << row.text;
        EXPECT_EQ(place.column, row.column) << row.text;
        EXPECT_EQ(XmlPlaces(row.text).at(row.offset).column, row.column) << row.text;
    }
    std::string text; // lines of many lengths and ends, so that stops fall on all of them
    for (int i = 0; i < 3000; ++i)
        text += std::string(static_cast<size_t>(i % 7), 'x') + (i % 3 == 0 ? "\r\n" : i % 3 == 1 ? "\r" : "\xC3\xA9\n");
    XmlPlaces places(text);
    for (size_t offset :
         {text.size(), text.size() + 9, size_t(4095), size_t(4096), size_t(4097), size_t(8192), size_t(0)}) {
        XmlPlace place{offset, 0, 0};
        place.locate(text);
        EXPECT_EQ(places.at(offset).row, place.row) << offset;
        EXPECT_EQ(places.at(offset).column, place.column) << offset;
    }
}

TEST(XmlDocument, ErrorsCarryTheirPlace) {
    const std::string nested = [] {
        std::string text = "<Movie>\n";
        for (int i = 0; i < 1000; ++i)
            text += "<a>";
        return text;
    }();
    const struct {
        std::string text;
        const char* what;
        uint32_t row, column;
    } rows[] = {
        {"<Movie>\n<a></b></Movie>", "invalid closing tag name", 2, 7},
        {"<Movie>\r\n  <End x></Movie>", "expected =", 2, 9},
        {"<Movie>", "unexpected end of data", 1, 8},
        {"<Movie>\n<a b=\"\xC3\xA9\0\"/></Movie>"s, "unexpected end of data", 2, 8},
        {"<Movie Width=\"x\"/>", "Incorrect value of attribute Width", 1, 2},
        {"<Movie SwfVersion=\"256\"/>", "Incorrect value of attribute SwfVersion", 1, 2},
        {"<Movie\nForm=\"Full\"/>", "Incorrect value of attribute Form", 1, 2},
        {"<Movie Height=\"53687092\"/>", "Incorrect value of attribute Height", 1, 2},
        {"<Movie>\n <Unknown TagType=\"x\"/></Movie>",
         "bad lexical cast: source type value could not be interpreted as target", 2, 3},
        {"<Movie FrameRate=\"\"/>", "bad lexical cast: source type value could not be interpreted as target", 1, 2},
        {"<Movie>\n<Unknown><Data><![CDATA[AAAA\nAA=!]]></Data></Unknown></Movie>", "Incorrect Base64 data", 3, 1},
        {nested, "elements nested more than 1000 deep", 2, 3001 - 3},
    };
    for (const auto& row : rows) {
        auto expect = [&](const std::exception& error, const XmlPlace& place) {
            EXPECT_STREQ(error.what(), row.what);
            EXPECT_EQ(place.row, row.row) << row.text.substr(0, 100);
            EXPECT_EQ(place.column, row.column) << row.text.substr(0, 100);
        };
        try {
            Compiled compiled(row.text);
            ADD_FAILURE() << row.text.substr(0, 100);
        } catch (const XmlSyntaxError& error) {
            expect(error, error.place);
        } catch (const XmlValueError& error) {
            expect(error, error.place);
        } catch (const Base64Error& error) {
            expect(error, error.place);
        } catch (const MovieAttributeError& error) {
            expect(error, error.place);
        }
    }
}

// What the parser would recurse into is found however the text hides it.
TEST(XmlDocument, RefusesDeepNestingBehindMarkup) {
    std::string deep;
    for (int i = 0; i < 1000000; ++i)
        deep += "<a>";
    for (const char* start :
         {"", "<?xml version=\"1.0\"?>", "<!-- \" > -->", "<!DOCTYPE x [ <!ELEMENT a> <!-- ]>",
          "<!DOCTYPE x [ <![CDATA[ ]]>", "<!DOCTYPE x [ <b c=' ]>", "<!DOCTYPEx [>", "<?xMl a='?><!--' ?>",
          "<x y='>\"<!--'>", "<x>'", "<x><!OTHER <!-- >", "<x><![CDATA[ <!-- ]]>", "<?pi <!-- ?>"})
        EXPECT_THROW(Compiled(start + deep), XmlSyntaxError) << start;
}

TEST(XmlToSwf, FindsTheRoot) {
    for (const char* text : {"<Movies/>", "<x><Movie/></x>", "<?Movie?><Other/>", "<!-- <Movie/> -->"})
        EXPECT_FALSE(Compiled(text).done) << text;
    for (const char* text : {"\xEF\xBB\xBF<Movie/>", "<?xml version='1.0' encoding='latin1'?>\n<!-- x --><Movie/>",
                             "<?Movie?><Movie/>", "<Other/><Movie/>"})
        EXPECT_TRUE(Compiled(text).done) << text;
}

TEST(XmlToSwf, ReadsTheRoot) {
    const struct {
        const char* attributes;
        bool compressed;
        uint8_t version;
        float frameRate;
        SwfRect stage;
    } rows[] = {
        {"", true, 7, 12, {0, 0, 11000, 8000}},
        {"SwfVersion='5'", false, 5, 12, {0, 0, 11000, 8000}},
        {"SwfVersion='5' IsCompressed='true' FrameRate='-1.5'", true, 5, -1.5f, {0, 0, 11000, 8000}},
        {"Form='classic' IsCompressed='0' Width='0' Height='53687091'", false, 7, 12, {0, 0, 0, 1073741820}},
        {"Width='9' MaxX='30' MinY='-5'", true, 7, 12, {0, -5, 30, 0}},
        {"MaxX='3'", true, 7, 12, {0, 0, 3, 0}},
        {"MaxY='3'", true, 7, 12, {0, 0, 0, 3}},
        {"MinX='3'", true, 7, 12, {3, 0, 0, 0}},
        {"MinY='3'", true, 7, 12, {0, 3, 0, 0}},
    };
    for (const auto& row : rows) {
        const Compiled compiled("<Movie " + std::string(row.attributes) + "/>");
        const SwfMovie& movie = compiled.target.movie;
        EXPECT_EQ(movie.isCompressed, row.compressed) << row.attributes;
        EXPECT_EQ(movie.version, row.version) << row.attributes;
        EXPECT_EQ(movie.frameRate, row.frameRate) << row.attributes;
        EXPECT_EQ(movie.frameSize.Xmin, row.stage.Xmin) << row.attributes;
        EXPECT_EQ(movie.frameSize.Ymin, row.stage.Ymin) << row.attributes;
        EXPECT_EQ(movie.frameSize.Xmax, row.stage.Xmax) << row.attributes;
        EXPECT_EQ(movie.frameSize.Ymax, row.stage.Ymax) << row.attributes;
        EXPECT_TRUE(compiled.warnings.empty());
    }
}

TEST(XmlToSwf, WarnsOfWhatNothingReads) {
    const Compiled compiled("<Movie Wdith='5'>\n  <DefineShap3/>\n  <ShowFrame A='1'><B/></ShowFrame>\n</Movie>");
    std::string texts;
    for (const SwfWarning& warning : compiled.warnings.items())
        texts += warning.text().substr(0, warning.text().find(':')) + " " + std::to_string(warning.row) + ":" +
                 std::to_string(warning.column) + " " + warning.tagName + " | ";
    EXPECT_EQ(texts, "skipped 2:4 DefineShap3 | skipped 3:14 ShowFrame | skipped 3:21 B | skipped 1:8 Movie | ");
    EXPECT_EQ(compiled.target.movie.tags.count(), 1u);
    try {
        makeTag("DefineShap3");
        ADD_FAILURE();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Trying to get unknown type from factory");
    }
}

// In reading and in writing, behind lists that have ended.
TEST(Conversion, WarningsNameThePathOfTheirTag) {
    const std::string odd = "<Unknown TagType='60' Odd='1'><Data>AQABAAEAAQAA/w==</Data></Unknown>"; // no such codec
    Compiled compiled("<Movie><DefineSprite><DefineSprite/>" + odd + "</DefineSprite>" + odd + "</Movie>");
    const SwfVector<uint8_t> file = compiled.target.movie.serialise(0);
    SwfMovieSafe movie;
    SwfWarnings shown;
    movie.parse({file.begin(), file.end()}, {.keepRaw = true});
    swfToXml(movie, {.keepRaw = true, .warnings = &shown});
    for (const SwfWarnings* warnings : {&compiled.warnings, &shown}) {
        std::string paths;
        for (const SwfWarning& warning : warnings->items())
            paths += warning.path + " ";
        EXPECT_EQ(paths, "0.1 1 ");
    }
}

TEST(SwfToXml, WritesTheRoot) {
    const struct {
        SwfRect stage;
        uint8_t version;
        bool compressed;
        float frameRate;
        const char* start;
    } rows[] = {
        {{0, 0, 11000, 8000}, 7, true, 12, R"(SwfVersion="7" Width="550" Height="400" FrameRate="12")"},
        {{0, 0, 20, 20}, 5, true, 0.5f, R"(SwfVersion="5" Width="1" Height="1" FrameRate="0.5" IsCompressed="true")"},
        {{-20, 0, 39, 19},
         6,
         false,
         1,
         R"(SwfVersion="6" Width="2" Height="0" FrameRate="1" IsCompressed="false" MaxX="39" MaxY="19" MinX="-20" MinY="0")"},
        {{0, 0, -20, 20},
         6,
         true,
         1,
         R"(SwfVersion="6" Width="0" Height="1" FrameRate="1" MaxX="-20" MaxY="20" MinX="0" MinY="0")"},
    };
    for (const auto& row : rows) {
        SwfMovieSafe movie;
        movie.frameSize = row.stage;
        movie.version = row.version;
        movie.isCompressed = row.compressed;
        movie.frameRate = row.frameRate;
        const std::string text = swfToXmlDocument(movie, {});
        EXPECT_EQ(text,
                  "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<Movie " + std::string(row.start) + ">\n</Movie>");
        EXPECT_TRUE(Compiled(text).warnings.empty());
    }
}

TEST(SwfToXml, LeavesOutFillsThatNoFileHas) {
    auto shape = std::make_shared<SwfTagDefineShape>();
    for (const uint32_t type : {0x11u, 0x12u})
        shape->fillStyles.items.add(std::make_unique<SwfGradientFillStyle>(type));
    for (const uint32_t type : {0x44u, 0x43u})
        shape->fillStyles.items.add(std::make_unique<SwfBitmapFillStyle>(type));
    SwfMovieSafe movie;
    movie.tags.append(shape);
    const std::string text = swfToXml(movie, {});
    const size_t gradient = text.find("<GradientFillStyle Type=\"Radial\">"),
                 bitmap = text.find("<BitmapFillStyle Type=\"NonSmoothedClipped\"");
    EXPECT_LT(gradient, bitmap);
    EXPECT_EQ(text.rfind("FillStyle Type"), bitmap + 7) << text;
    EXPECT_EQ(text.rfind("<GradientFillStyle"), gradient) << text;
}

TEST(XmlToSwf, TablesMakeALayout) {
    for (const std::string child : {"AdvanceTable", "BoundsTable", "KerningTable", "CodesTable"}) {
        const Compiled compiled("<Movie><DefineFont3><" + child + "/></DefineFont3></Movie>");
        const auto& font = dynamic_cast<SwfTagDefineFont3&>(compiled.target.movie.tags.at(0));
        EXPECT_EQ(font.hasLayout, child != "CodesTable") << child;
    }
}

TEST(Conversion, ReportsProgress) {
    struct Reporter : IProgressReporter {
        std::vector<double> fractions;
        void report(double fraction) override { fractions.push_back(fraction); }
    } reporter;
    MovieTarget target;
    xmlToSwf("<Movie><End/><!-- --><Oops/><ShowFrame/><ShowFrame/></Movie>", target, {.progress = &reporter});
    EXPECT_EQ(reporter.fractions, (std::vector<double>{0.25, 0.5, 0.75, 1}));
    reporter.fractions.clear();
    SwfMovieSafe movie;
    swfToXml(movie, {.progress = &reporter});
    xmlToSwf("<Movie/>", target, {.progress = &reporter});
    EXPECT_EQ(reporter.fractions, (std::vector<double>{1, 1}));
}

TEST(DocumentText, TurnsUtf16IntoUtf8) {
    const struct {
        std::string bytes, text;
    } rows[] = {
        {"", ""},
        {"<", "<"},
        {"\xEF\xBB\xBF<\xFF", "\xEF\xBB\xBF<\xFF"},
        {"\xFF\xFE<\0\xE9\0\xAC\x20\x3D\xD8\x00\xDE"s, "<\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
        {"\xFE\xFF\0<\0\xE9\x20\xAC\xD8\x3D\xDE\x00"s, "<\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
        {"\xFE\xFF\xD8\x3D\0<"s, "\xED\xA0\xBD<"}, // half a pair stays visible
    };
    for (const auto& row : rows)
        EXPECT_EQ(documentText(row.bytes), row.text);
}

TEST(XmlTags, ATagThatIsNotOfItsCodesClassIsShownAsBytes) {
    SwfMovieSafe movie;
    movie.tags.append(std::make_shared<SwfTag>(SwfTagCode::DefineShape));
    EXPECT_NE(swfToXml(movie, {}).find("<Unknown TagType=\"2\""), std::string::npos);
}

} // namespace
