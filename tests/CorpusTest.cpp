// Real movies, where they are at hand: nothing crashes and nothing is lost on the way to XML and back.
#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <map>
#include <set>

#include "Conversion.h"
#include "MovieCompare.h"
#include "Paths.h"
#include "SwfAllTags.h"
#include "SwfMovie.h"
#include "SwfUtils.h"
#include "SwfWarnings.h"

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

struct Summary {
    uint32_t movies = 0, refused = 0;
    uint64_t tags = 0, unknown = 0, keptRaw = 0;
    std::map<std::string, uint32_t> rewritten; // tags of the same meaning in other bytes, by name
};

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

std::unique_ptr<SwfMovieSafe> parsed(std::string_view file, SwfWarnings* warnings) {
    auto movie = std::make_unique<SwfMovieSafe>();
    movie->parse({file.begin(), file.end()}, {.keepRaw = true, .warnings = warnings});
    return movie;
}

uint64_t countUnknown(const SwfTags& tags) {
    uint64_t count = 0;
    for (const auto& tag : tags.items()) {
        const auto* sprite = dynamic_cast<const SwfTagDefineSprite*>(tag.get());
        count += sprite != nullptr ? countUnknown(sprite->tags) : tag->isUnknown();
    }
    return count;
}

// Fields that show what the file says and are worked out anew on the way back.
bool isDerived(const xml2swf::FieldDifference& field) {
    return field.path == "DefineSprite/@FrameCount" || field.path.ends_with("/BitsField/@WideCodes");
}

// Every tag has the same bytes or at least the same meaning; what is shown as Unknown has the same bytes.
void compare(SwfMovieSafe& before, SwfMovieSafe& after, Summary& summary) {
    const xml2swf::MovieComparison comparison = xml2swf::compareMovies(before, after);
    for (const xml2swf::FieldDifference& field : comparison.header)
        EXPECT_TRUE(field.path == "FrameCount" || field.path == "AfterLastTag") << field.path;
    for (const xml2swf::TagComparison& tag : comparison.tags) {
        ++summary.tags;
        if (tag.relation == xml2swf::TagRelation::sameMeaning)
            ++summary.rewritten[tagName(tag.code)];
        if (tag.relation == xml2swf::TagRelation::different && isDerived(*tag.field))
            continue;
        EXPECT_LE(tag.relation, xml2swf::TagRelation::sameMeaning)
            << "tag " << tag.pathA << " (" << tagName(tag.code) << "): " << relationText(tag.relation) << ' '
            << (tag.field ? tag.field->path : "");
    }
    summary.unknown += countUnknown(before.tags.tags());
}

void convert(const std::filesystem::path& path, Summary& summary) {
    const std::vector<uint8_t> file = readFile(path.string());
    SwfWarnings warnings;
    const auto movie = parsed({reinterpret_cast<const char*>(file.data()), file.size()}, &warnings);
    summary.keptRaw += warnings.total();
    const std::string xml = xml2swf::swfToXmlDocument(*movie, {.keepRaw = true});
    xml2swf::MovieTarget target;
    const auto back = parsed(compiledXml(target, xml), nullptr);
    compare(*movie, *back, summary);

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
    Summary summary;
    for (const auto& path : corpus()) {
        SCOPED_TRACE(path.string());
        ++summary.movies;
        const bool bad = refused.count(path.filename().string()) != 0 || isUnsupported(path);
        try {
            convert(path, summary);
            EXPECT_FALSE(bad) << "is read";
        } catch (const SwfException& error) {
            ++summary.refused;
            EXPECT_TRUE(bad) << error.what();
        }
    }
    std::cout << summary.movies << " movies, " << summary.refused << " refused; " << summary.tags << " tags, "
              << summary.tags - summary.unknown << " shown in their own form, " << summary.unknown << " as bytes; "
              << summary.keptRaw << " warnings\n";
    for (const auto& [name, count] : summary.rewritten)
        std::cout << "  the same meaning in other bytes: " << count << " " << name << "\n";
}

} // namespace
