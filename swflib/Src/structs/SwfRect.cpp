#include "SwfStream.h"
#include "SwfStructs.h"

namespace libswf {

void SwfKeptWidth::keep(const SwfContext& context, uint32_t bits, uint32_t expected) {
    if (context.fullForm && bits != expected)
        set(bits);
}

uint32_t SwfKeptWidth::written(uint32_t expected, uint32_t needed) const {
    return _bits < 0 ? expected : std::max<uint32_t>(bits(), needed);
}

void SwfRect::read(SwfIStream& stream) {
    const uint32_t n = stream.readUB(5, "Nbits");
    Xmin = stream.readSB(n, "Xmin");
    Xmax = stream.readSB(n, "Xmax");
    Ymin = stream.readSB(n, "Ymin");
    Ymax = stream.readSB(n, "Ymax");
    stream.alignBits();
    bits.keep(stream.context, n, narrowest());
}

uint32_t SwfRect::narrowest() const {
    const int32_t values[] = {Xmin, Xmax, Ymin, Ymax};
    const uint32_t n = bitsSignedMax(values, 4);
    if (n > 31)
        throw SwfException(SwfError::doesNotFit, "a rectangle with a coordinate of 2^30 twips or more");
    return n;
}

uint32_t SwfRect::width() const { return bits.written(narrowest(), bitsNeeded({Xmin, Xmax, Ymin, Ymax})); }

uint32_t SwfRect::getSize(SwfContext&) { return size = (5 + 4 * width() + 7) / 8; }

void SwfRect::write(SwfOStream& stream) const {
    const uint32_t n = width();
    stream.writeUB(5, n);
    stream.writeSB(n, Xmin);
    stream.writeSB(n, Xmax);
    stream.writeSB(n, Ymin);
    stream.writeSB(n, Ymax);
    stream.flushBits();
}

} // namespace libswf
