// Any bytes as a movie: read in both ways and shown as XML.
#include "Movies.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    for (const bool keepRaw : {false, true}) {
        fuzz::refusable([&] {
            libswf::SwfMovieSafe movie;
            libswf::SwfWarnings warnings;
            fuzz::parse(movie, fuzz::Bytes(data, data + size), keepRaw, &warnings);
            fuzz::toXml(movie, keepRaw);
        });
    }
    return 0;
}
