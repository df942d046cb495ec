// Any text as a document: compiled, and what it gives can be read again.
#include "Movies.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Bytes file;
    fuzz::refusable([&] {
        xml2swf::MovieTarget target;
        libswf::SwfWarnings warnings;
        xml2swf::ConversionOptions options;
        options.warnings = &warnings;
        if (xmlToSwf({reinterpret_cast<const char*>(data), size}, target, options))
            file = fuzz::serialise(target.movie);
    });
    if (!file.empty()) {
        libswf::SwfMovieSafe movie;
        fuzz::parse(movie, std::move(file), true);
        fuzz::toXml(movie, true);
    }
    return 0;
}
