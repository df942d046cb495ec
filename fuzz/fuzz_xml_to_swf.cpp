// Any text as a document, in its form and in the full one: compiled by way of objects and of bytes, and what it gives
// can be read again.
#include "Movies.h"

namespace {

fuzz::Bytes compiled(std::string_view text, bool toWrite) {
    fuzz::Bytes file;
    fuzz::refusable([&] {
        xml2swf::MovieTarget target;
        libswf::SwfWarnings warnings;
        xml2swf::ConversionOptions options;
        options.warnings = &warnings;
        options.toWrite = toWrite;
        if (xmlToSwf(text, target, options))
            file = fuzz::serialise(target.movie);
    });
    return file;
}

} // namespace

static void compileBothWays(std::string_view text) {
    fuzz::Bytes file = compiled(text, true);
    libswf::swfAssert(file == compiled(text, false), "AsBytes == AsObjects");
    for (const bool fullForm : {false, true}) {
        if (file.empty())
            break;
        libswf::SwfMovieSafe movie;
        fuzz::parse(movie, file, true, nullptr, false, fullForm);
        fuzz::toXml(movie, true);
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    compileBothWays(text);
    constexpr std::string_view movie = "<Movie ";
    if (const size_t at = text.find(movie); at != text.npos)
        compileBothWays(text.insert(at + movie.size(), "Form=\"full\" "));
    return 0;
}
