#include "Cases.h"

#include <filesystem>

#include "Conversion.h"
#include "GeneratedMovies.h"
#include "SwfUtils.h"

namespace bench {

namespace fs = std::filesystem;

namespace {

constexpr size_t megabyte = 1000000;

void addCorpus(std::vector<Case>& cases) {
    const fs::path folder = fs::path(CORPUS_DIR) / "large";
    if (!fs::exists(folder))
        return;
    std::vector<fs::path> files(fs::directory_iterator(folder), fs::directory_iterator{});
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files)
        cases.push_back({file.stem().string(), [file] { return libswf::readFile(file.string()); }, true});
}

void addGenerated(std::vector<Case>& cases, const char* name, Content content, std::initializer_list<size_t> sizes) {
    for (size_t size : sizes) {
        cases.push_back({std::string(name) + "-" + std::to_string(size) + "MB",
                         [=] { return compressMovie(generateMovie(content, size * megabyte)); }, size == 10});
    }
}

// The same movies in the full form, beside the classic one.
void addFull(std::vector<Case>& cases) {
    for (const char* name : {"million-edges", "shapes-10MB", "actions-10MB", "mixed-30MB"}) {
        const auto classic =
            std::find_if(cases.begin(), cases.end(), [&](const Case& other) { return other.name == name; });
        Case full = *classic;
        full.name += "-full";
        full.measureDeflate = false;
        full.fullForm = true;
        cases.insert(classic + 1, full);
    }
}

// Movies of ActionScript 3, in the form that shows its code: generated ones, and the corpus's with most of it.
void addAbc(std::vector<Case>& cases) {
    for (const size_t size : {1, 10})
        cases.push_back({"abc-" + std::to_string(size) + "MB",
                         [=] { return compressMovie(generateAbcMovie(size * megabyte)); }, false, true});
    const fs::path biggest = fs::path(CORPUS_DIR) / "large" / "abc-definefont4.swf";
    if (fs::exists(biggest))
        cases.push_back({"abc-of-corpus", [=] { return libswf::readFile(biggest.string()); }, false, true});
}

} // namespace

const std::vector<Case>& cases() {
    static const std::vector<Case> all = [] {
        std::vector<Case> result;
        addCorpus(result);
        result.push_back({"million-edges", [] { return compressMovie(generateShape(1000000)); }, false});
        addGenerated(result, "shapes", Content::shapes, {10, 30});
        addGenerated(result, "actions", Content::actions, {10, 30});
        addGenerated(result, "payload", Content::payload, {10, 30, 100});
        addGenerated(result, "mixed", Content::mixed, {10, 30, 100});
        addFull(result);
        addAbc(result);
        return result;
    }();
    return all;
}

const Movie& movieOf(const Case& benchCase) {
    static std::string held;
    static Movie movie;
    if (held == benchCase.name)
        return movie;
    movie = Movie();
    movie.file = benchCase.makeFile();
    libswf::SwfMovieSafe loaded;
    libswf::SwfLoadOptions load;
    load.fullForm = movie.fullForm = benchCase.fullForm;
    load.keepRaw = true;
    loaded.parse(movie.file, load);
    const libswf::SwfBytes body = loaded.body();
    movie.plain.assign(body.span().begin(), body.span().end());
    xml2swf::ConversionOptions options;
    options.keepRaw = true;
    movie.xml = swfToXmlDocument(loaded, options);
    held = benchCase.name;
    return movie;
}

} // namespace bench
