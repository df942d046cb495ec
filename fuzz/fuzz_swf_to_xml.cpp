// Any bytes as a movie: read in both ways and shown as XML, with scripts read at once and later.
#include "Movies.h"

namespace {

std::string shown(const uint8_t* data, size_t size, bool keepRaw, bool readLater) {
    std::string text = "refused";
    fuzz::refusable([&] {
        libswf::SwfMovieSafe movie;
        libswf::SwfWarnings warnings;
        fuzz::parse(movie, fuzz::Bytes(data, data + size), keepRaw, &warnings, readLater);
        text = fuzz::toXml(movie, keepRaw);
    });
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    shown(data, size, false, false);
    libswf::swfAssert(shown(data, size, true, false) == shown(data, size, true, true), "Later == AtOnce");
    return 0;
}
