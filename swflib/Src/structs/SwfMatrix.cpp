#include "SwfStream.h"
#include "SwfStructs.h"

namespace libswf {

void SwfMatrix::read(SwfIStream& stream) {
    hasScale = stream.readFlag("HasScale");
    if (hasScale) {
        const uint32_t n = stream.readUB(5, "NScaleBits");
        scaleX = stream.readFB(n, "ScaleX");
        scaleY = stream.readFB(n, "ScaleY");
    }
    hasRotate = stream.readFlag("HasRotate");
    if (hasRotate) {
        const uint32_t n = stream.readUB(5, "NRotateBits");
        rotateSkew0 = stream.readFB(n, "RotateSkew0");
        rotateSkew1 = stream.readFB(n, "RotateSkew1");
    }
    const uint32_t n = stream.readUB(5, "NTranslateBits");
    translateX = stream.readSB(n, "TranslateX");
    translateY = stream.readSB(n, "TranslateY");
    stream.alignBits();
}

static void writePair(SwfOStream& stream, int32_t a, int32_t b) {
    const uint32_t n = bitsSigned2(a, b);
    if (n > 31)
        throw SwfException(SwfError::doesNotFit, "a matrix with a scale of 16384 or a translation of 2^30 or more");
    stream.writeUB(5, n);
    stream.writeSB(n, a);
    stream.writeSB(n, b);
}

uint32_t SwfMatrix::getSize(SwfContext& context) {
    return size = measure(context, [&](SwfOStream& stream) { write(stream); });
}

void SwfMatrix::write(SwfOStream& stream) const {
    stream.writeUB(1, hasScale);
    if (hasScale)
        writePair(stream, floatToFixed16(scaleX), floatToFixed16(scaleY));
    stream.writeUB(1, hasRotate);
    if (hasRotate)
        writePair(stream, floatToFixed16(rotateSkew0), floatToFixed16(rotateSkew1));
    writePair(stream, translateX, translateY);
    stream.flushBits();
}

} // namespace libswf
