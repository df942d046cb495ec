// Reading and writing settle: what was written once comes back as it is, in the binary way and through XML, in both
// forms.
#include "Movies.h"

namespace {

using fuzz::Bytes;

Bytes binaryTrip(Bytes file, bool fullForm) {
    libswf::SwfMovieSafe movie;
    fuzz::parse(movie, std::move(file), true, nullptr, false, fullForm);
    return fuzz::serialise(movie);
}

Bytes xmlTrip(Bytes file, bool fullForm) {
    libswf::SwfMovieSafe movie;
    fuzz::parse(movie, std::move(file), true, nullptr, false, fullForm);
    xml2swf::MovieTarget target;
    if (!xmlToSwf(fuzz::toXml(movie, true), target, {}))
        __builtin_trap();
    return fuzz::serialise(target.movie);
}

// A tag that the end of the file cuts is kept as its bytes. Written anew they are a whole tag, which may be readable;
// then the bits that fill up a byte are lost, and in XML what has no name there (an alignment). A tag that others are
// read by (a font) can have the same done to them on the next trip.
constexpr uint32_t lateChanges = 3;

// A first trip may be refused: text that is not XML (a control character), a value that does not fit. What came out of
// one never is, and a few trips later it comes back as it is.
void settles(Bytes (*trip)(Bytes, bool), bool fullForm, const uint8_t* data, size_t size) {
    Bytes before;
    fuzz::refusable([&] { before = trip(Bytes(data, data + size), fullForm); });
    if (before.empty())
        return;
    uint32_t changes = lateChanges;
    for (Bytes after = trip(before, fullForm); after != before; after = trip(before, fullForm)) {
        if (changes-- == 0)
            __builtin_trap();
        before = std::move(after);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > 8 && data[0] == 'C')
        return 0; // inflating is the other target's work
    for (const bool fullForm : {false, true}) {
        settles(binaryTrip, fullForm, data, size);
        settles(xmlTrip, fullForm, data, size);
    }
    return 0;
}
