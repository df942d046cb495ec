// Any text as a document: compiled by way of objects and of bytes, and what it gives can be read again.
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

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    fuzz::Bytes file = compiled(text, true);
    libswf::swfAssert(file == compiled(text, false), "AsBytes == AsObjects");
    if (!file.empty()) {
        libswf::SwfMovieSafe movie;
        fuzz::parse(movie, std::move(file), true);
        fuzz::toXml(movie, true);
    }
    return 0;
}
