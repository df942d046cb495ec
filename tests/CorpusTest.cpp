// Real movies, where they are at hand: nothing crashes and nothing is lost on the way to XML and back.
#include "Tests.h"

#include "MovieCompare.h"

using namespace libswf;

namespace {

// Movies whose body is broken on purpose.
const std::set<std::string> refused = {"lzma-malformed-length.swf"};

// Whether the movie is one that this build cannot inflate.
bool isUnsupported([[maybe_unused]] const std::filesystem::path& path) {
#ifdef ZELK_HAVE_LZMA
    return false;
#else
    return std::ifstream(path, std::ios::binary).get() == 'Z';
#endif
}

std::vector<std::filesystem::path> corpus() {
    std::vector<std::filesystem::path> paths;
    std::error_code missing;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(corpusDir, missing)) {
        if (entry.path().extension() == ".swf")
            paths.push_back(entry.path());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string compiledXml(xml2swf::MovieTarget& target, const std::string& xml) {
    SwfWarnings warnings;
    EXPECT_TRUE(xml2swf::xmlToSwf(xml, target, {.keepRaw = true, .warnings = &warnings}));
    for (const SwfWarning& warning : warnings.items())
        ADD_FAILURE() << warning.text();
    const SwfVector<uint8_t> file = target.movie.serialise(1);
    return {reinterpret_cast<const char*>(file.data()), file.size()};
}

std::unique_ptr<SwfMovieSafe> parsed(std::string_view file) {
    auto movie = std::make_unique<SwfMovieSafe>();
    movie->parse({file.begin(), file.end()}, {.keepRaw = true});
    return movie;
}

// Fields that show what the file says and are worked out anew on the way back.
bool isDerived(const xml2swf::FieldDifference& field) {
    return field.path == "DefineSprite/@FrameCount" || field.path.ends_with("/BitsField/@WideCodes");
}

// Every tag has the same bytes or at least the same meaning; what is shown as Unknown has the same bytes.
void compare(SwfMovieSafe& before, SwfMovieSafe& after) {
    const xml2swf::MovieComparison comparison = xml2swf::compareMovies(before, after);
    for (const xml2swf::FieldDifference& field : comparison.header)
        EXPECT_TRUE(field.path == "FrameCount" || field.path == "AfterLastTag") << field.path;
    for (const xml2swf::TagComparison& tag : comparison.tags) {
        if (tag.relation == xml2swf::TagRelation::different && isDerived(*tag.field))
            continue;
        EXPECT_LE(tag.relation, xml2swf::TagRelation::sameMeaning)
            << "tag " << tag.pathA << " (" << tagName(tag.code) << "): " << relationText(tag.relation) << ' '
            << (tag.field ? tag.field->path : "");
    }
}

void convert(const std::filesystem::path& path) {
    const std::vector<uint8_t> file = readFile(path.string());
    const auto movie = parsed({reinterpret_cast<const char*>(file.data()), file.size()});
    const std::string xml = xml2swf::swfToXmlDocument(*movie, {.keepRaw = true});
    xml2swf::MovieTarget target;
    const auto back = parsed(compiledXml(target, xml));
    compare(*movie, *back);

    // With the library's own settings tags may be dropped, but what is left can be shown or is refused in order.
    SwfMovieSafe plain;
    plain.parse(file, {});
    plain.serialise(1);
    try {
        xml2swf::swfToXml(plain, {});
    } catch (const SwfException&) {
    }
}

TEST(Corpus, GoesToXmlAndBack) {
    if (!std::filesystem::is_directory(corpusDir))
        GTEST_SKIP() << "no movies at " << corpusDir;
    for (const auto& path : corpus()) {
        SCOPED_TRACE(path.string());
        const bool bad = refused.count(path.filename().string()) != 0 || isUnsupported(path);
        try {
            convert(path);
            EXPECT_FALSE(bad) << "is read";
        } catch (const SwfException& error) {
            EXPECT_TRUE(bad) << error.what();
        }
    }
}

} // namespace
