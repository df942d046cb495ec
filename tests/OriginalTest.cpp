// Tags that were not touched keep their bytes when the original is at hand.
#include "Tests.h"

#include "MovieCompare.h"
#include "OriginalMovie.h"
#include "XmlText.h"

using namespace libswf;
using namespace xml2swf;

namespace {

struct Opened {
    SwfMovieSafe movie;
    std::string xml;
    std::vector<TagText> texts; // places in `xml`

    explicit Opened(const Bytes& file) {
        SwfLoadOptions load;
        load.keepRaw = true;
        movie.parse(file, load);
        ConversionOptions options;
        options.keepRaw = true;
        options.tagTexts = &texts;
        xml = swfToXml(movie, options);
    }
};

// The inflated file that a text compiles into.
Bytes compiled(const std::string& xml, const OriginalMovie& original) {
    MovieTarget target;
    ConversionOptions options;
    options.original = &original;
    EXPECT_TRUE(xmlToSwf(xml, target, options));
    target.movie.isCompressed = false;
    const SwfVector<uint8_t> file = target.movie.serialise(1);
    return {file.begin(), file.end()};
}

Bytes withoutSignature(std::span<const uint8_t> file) { return {file.begin() + 1, file.end()}; }

// The movie's text with one tag's element changed so that it stays the same tag: a comment goes into it or a blank
// before "/>".
std::string edited(const Opened& opened, const TagText& tag) {
    std::string text = opened.xml;
    const size_t end = text.find('>', tag.start);
    text.insert(text[end - 1] == '/' ? end - 1 : end, " ");
    return text;
}

// The movie comes back whole, and with one tag edited all others keep their bytes but those around it and in it.
void check(const Bytes& file) {
    Opened opened(file);
    SwfMovieSafe again;
    again.parse(file, {.keepRaw = true});
    const OriginalMovie original(again);
    const Bytes body = withoutSignature(opened.movie.body().span());
    EXPECT_EQ(withoutSignature(compiled(std::string(xmlDeclaration) + opened.xml, original)), body);

    const size_t step = opened.texts.size() / 12 + 1; // some tags of each movie, nested ones among them
    for (size_t i = 0; i < opened.texts.size(); i += step) {
        SwfMovieSafe after;
        const Bytes result = compiled(edited(opened, opened.texts[i]), original);
        const size_t stage = opened.movie.source().frameSizeBytes.size() + 4;
        EXPECT_TRUE(std::equal(body.begin() + 7, body.begin() + 7 + ptrdiff_t(stage), result.begin() + 8));
        after.parse(result, {.keepRaw = true});
        const std::vector<TagComparison> tags = compareMovies(opened.movie, after).tags;
        ASSERT_EQ(tags.size(), opened.texts.size());
        for (const TagComparison& tag : tags) {
            const std::string path = tag.pathA + ".", ofEdited = tags[i].pathA + ".";
            EXPECT_TRUE(tag.relation == TagRelation::identical || ofEdited.starts_with(path) ||
                        path.starts_with(ofEdited))
                << path << " with " << ofEdited;
        }
    }
}

} // namespace

TEST(Original, UntouchedTagsOfTheCorpusKeepTheirBytes) {
    if (!std::filesystem::is_directory(corpusDir))
        GTEST_SKIP() << "no movies at " << corpusDir;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(corpusDir)) {
        if (entry.path().extension() != ".swf")
            continue;
        SCOPED_TRACE(entry.path().string());
        try {
            check(readFile(entry.path().string()));
        } catch (const SwfException&) {
            continue; // not readable
        }
    }
}

TEST(Original, TextsByCharacterFollowTheirFont) {
    // DefineFontInfo of font 5 with the codes "Pu", and "P" in it, in wider fields than it needs.
    const Bytes file = hexBytes("46 57 53 08 2b000000 00 000c 0100 47 03 05 00 01 46 00 50 75"
                                "cf 02 01 00 00 00 08 08 88 05 00 0a 00 01 00 00 00 40 00 00 00");
    SwfMovieSafe movie;
    movie.parse(file, {.fullForm = true, .keepRaw = true});
    const OriginalMovie original(movie);
    const std::string xml = swfToXml(movie, {.keepRaw = true});
    EXPECT_NE(xml.find("Character=\"P\""), std::string::npos) << xml;
    EXPECT_EQ(hexText(compiled(xml, original)), hexText(file));
    std::string other = xml;
    const size_t codes = other.find("Value=\"80\"");
    other.replace(codes, 10, "Value=\"117\"").replace(other.find("Value=\"117\"", codes + 5), 11, "Value=\"80\"");
    EXPECT_NE(hexText(compiled(other, original)).find("88 05 00 0a 00 01 01 00"), std::string::npos);
}

TEST(Original, OddMoviesKeepWhatTheXmlFormLoses) {
    // A stage in wider fields, a wrong frame count and length, long headers, bytes after End.
    const Bytes file = hexBytes("46 57 53 08 ffffffff f8 00*16 000c 0900"
                                "7f 02 03000000 01 02 03" // SetBackgroundColor with a long header
                                "40 00 40 00"
                                "7f 00 00000000" // ShowFrame with a long header
                                "ff 09 11000000 05 00 07 00 7f 02 03000000 04 05 06 40 00 00 00" // sprite
                                "00 00 de ad be ef");
    const Opened opened(file);
    SwfMovieSafe movie;
    SwfLoadOptions load;
    load.keepRaw = true;
    movie.parse(file, load);
    const OriginalMovie original(movie);
    EXPECT_EQ(compiled(opened.xml, original), file);

    auto withEdit = [&](const std::string& what, const std::string& by) {
        std::string xml = opened.xml;
        xml.replace(xml.find(what), what.size(), by);
        return hexText(compiled(xml, original));
    };
    const std::string stage = "f8 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0c 09 00 ",
                      tail = "00 00 de ad be ef";
    const std::string frames = "40 00 40 00 7f 00 00 00 00 00 ";
    const std::string sprite = "ff 09 11 00 00 00 05 00 07 00 7f 02 03 00 00 00 04 05 06 40 00 00 00 ";
    EXPECT_EQ(withEdit("\"1020300\"", "\"11020300\"").substr(24), stage + "43 02 11 02 03 " + frames + sprite + tail);
    // A child of the sprite changes: its sister keeps its bytes, the sprite is written anew.
    EXPECT_EQ(withEdit("\"4050600\"", "\"14050600\"").substr(24),
              stage + "7f 02 03 00 00 00 01 02 03 " + frames + "cd 09 05 00 01 00 43 02 14 05 06 40 00 00 00 " + tail);
    // Another version may need another layout: nothing is taken over.
    EXPECT_EQ(withEdit("SwfVersion=\"8\"", "SwfVersion=\"9\"").find("de ad"), std::string::npos);
}
