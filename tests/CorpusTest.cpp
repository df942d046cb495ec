// Real movies, where they are at hand: nothing crashes and nothing is lost on the way to XML and back.
#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <map>
#include <regex>
#include <set>

#include "CaseFile.h"
#include "Conversion.h"
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
    uint64_t tags = 0, shown = 0, unknown = 0, keptRaw = 0;
    std::map<std::string, uint32_t> rewritten; // shown tags whose bytes changed, by name
};

std::vector<std::filesystem::path> corpus() {
    std::vector<std::filesystem::path> paths;
    std::error_code missing;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(CORPUS_DIR, missing)) {
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

std::span<const uint8_t> bodyOf(const SwfTag& tag) {
    const std::span<const uint8_t> record = tag.source.span();
    return record.subspan((record[0] & 0x3F) == 0x3F ? 6 : 2);
}

// Tags that are bytes in XML come back as they were; the others are counted when their bytes differ.
void compareTags(const SwfTags& before, const SwfTags& after, Summary& summary) {
    ASSERT_EQ(before.count(), after.count());
    for (uint32_t i = 0; i < before.count(); ++i) {
        const SwfTag &a = before.at(i), &b = after.at(i);
        ++summary.tags;
        ASSERT_EQ(a.type, b.type) << "tag " << i;
        const std::string diff = hexDiff(bodyOf(a), bodyOf(b));
        if (a.isUnknown()) {
            ++summary.unknown;
            EXPECT_EQ(diff, "") << "tag " << i << ", " << tagName(a.type);
            continue;
        }
        ++summary.shown;
        if (!diff.empty())
            ++summary.rewritten[tagName(a.type)];
        const auto* sprite = dynamic_cast<const SwfTagDefineSprite*>(&a);
        const auto* spriteAfter = dynamic_cast<const SwfTagDefineSprite*>(&b);
        if (sprite != nullptr && spriteAfter != nullptr)
            compareTags(sprite->tags, spriteAfter->tags, summary);
    }
}

// Attributes that show what the file says and are worked out anew on the way back: a movie may be wrong about them.
std::string withoutDerived(std::string xml) {
    static const std::regex frames("(<DefineSprite [^\n]*) FrameCount=\"[0-9]+\"");
    static const std::regex widths(" Wide(Codes|Offsets)=\"(true|false)\"");
    return std::regex_replace(std::regex_replace(xml, frames, "$1"), widths, "");
}

void convert(const std::filesystem::path& path, Summary& summary) {
    const std::vector<uint8_t> file = readFile(path.string());
    SwfWarnings warnings;
    const auto movie = parsed({reinterpret_cast<const char*>(file.data()), file.size()}, &warnings);
    summary.keptRaw += warnings.total();
    const std::string xml = xml2swf::swfToXmlDocument(*movie, {.keepRaw = true});
    xml2swf::MovieTarget target;
    const auto back = parsed(compiledXml(target, xml), nullptr);
    compareTags(movie->tags.tags(), back->tags.tags(), summary);
    const std::string second = xml2swf::swfToXmlDocument(*back, {.keepRaw = true});
    EXPECT_EQ(lineDiff(withoutDerived(xml), withoutDerived(second)).substr(0, 1000), "");

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
    if (!std::filesystem::is_directory(CORPUS_DIR))
        GTEST_SKIP() << "no movies at " CORPUS_DIR;
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
              << summary.shown << " shown in their own form, " << summary.unknown << " as bytes; " << summary.keptRaw
              << " warnings\n";
    for (const auto& [name, count] : summary.rewritten)
        std::cout << "  other bytes in " << count << " " << name << "\n";
}

} // namespace
