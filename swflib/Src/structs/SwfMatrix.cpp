#include "SwfStream.h"
#include "SwfStructs.h"

namespace libswf {

namespace {

// A pair in the fields of its width.
struct Pair {
    int32_t a = 0, b = 0;
};

Pair readPair(SwfIStream& stream, SwfKeptWidth& kept, const char* bitsField, const char* fieldA, const char* fieldB) {
    const uint32_t n = stream.readUB(5, bitsField);
    Pair pair;
    pair.a = stream.readSB(n, fieldA);
    pair.b = stream.readSB(n, fieldB);
    kept.keep(stream.context, n, bitsSigned2(pair.a, pair.b));
    return pair;
}

void writePair(SwfOStream& stream, const SwfKeptWidth& kept, int32_t a, int32_t b) {
    const uint32_t n = kept.written(bitsSigned2(a, b), bitsNeeded({a, b}));
    if (n > 31)
        throw SwfException(SwfError::doesNotFit, "a matrix with a scale of 16384 or a translation of 2^30 or more");
    stream.writeUB(5, n);
    stream.writeSB(n, a);
    stream.writeSB(n, b);
}

double fromFixed(const SwfContext& context, int32_t fixed) {
    return context.fullForm ? fixed / 65536.0 : fixed16ToFloat(fixed);
}

int32_t toFixed(const SwfContext& context, double value) {
    return context.fullForm ? nearestFixed16(value) : floatToFixed16(static_cast<float>(value));
}

} // namespace

void SwfMatrix::read(SwfIStream& stream) {
    hasScale = stream.readFlag("HasScale");
    if (hasScale) {
        const Pair scale = readPair(stream, scaleBits, "NScaleBits", "ScaleX", "ScaleY");
        scaleX = fromFixed(stream.context, scale.a);
        scaleY = fromFixed(stream.context, scale.b);
    }
    hasRotate = stream.readFlag("HasRotate");
    if (hasRotate) {
        const Pair rotate = readPair(stream, rotateBits, "NRotateBits", "RotateSkew0", "RotateSkew1");
        rotateSkew0 = fromFixed(stream.context, rotate.a);
        rotateSkew1 = fromFixed(stream.context, rotate.b);
    }
    const Pair translate = readPair(stream, translateBits, "NTranslateBits", "TranslateX", "TranslateY");
    translateX = translate.a;
    translateY = translate.b;
    stream.alignBits();
}

uint32_t SwfMatrix::getSize(SwfContext& context) {
    return size = measure(context, [&](SwfOStream& stream) { write(stream); });
}

void SwfMatrix::write(SwfOStream& stream) const {
    const auto fixed = [&](double value) { return toFixed(stream.context, value); };
    stream.writeUB(1, hasScale);
    if (hasScale)
        writePair(stream, scaleBits, fixed(scaleX), fixed(scaleY));
    stream.writeUB(1, hasRotate);
    if (hasRotate)
        writePair(stream, rotateBits, fixed(rotateSkew0), fixed(rotateSkew1));
    writePair(stream, translateBits, translateX, translateY);
    stream.flushBits();
}

} // namespace libswf
