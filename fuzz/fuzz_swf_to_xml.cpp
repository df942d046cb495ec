// Any bytes as a movie: read in both ways and shown as XML in both forms, with scripts read at once and later.
#include "Movies.h"

namespace {

std::string shown(const uint8_t* data, size_t size, bool fullForm, bool keepRaw, bool readLater) {
    std::string text = "refused";
    fuzz::refusable([&] {
        libswf::SwfMovieSafe movie;
        libswf::SwfWarnings warnings;
        fuzz::parse(movie, fuzz::Bytes(data, data + size), keepRaw, &warnings, readLater, fullForm);
        text = fuzz::toXml(movie, keepRaw);
    });
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    for (const bool fullForm : {false, true}) {
        shown(data, size, fullForm, false, false);
        libswf::swfAssert(shown(data, size, fullForm, true, false) == shown(data, size, fullForm, true, true),
                          "Later == AtOnce");
    }
    return 0;
}
