#include "SwfStream.h"
#include "SwfStructs.h"

namespace libswf {

void SwfColor::read(SwfIStream& stream) {
    red = stream.readUI8("Red");
    green = stream.readUI8("Green");
    blue = stream.readUI8("Blue");
    if (stream.context.alpha)
        alpha = stream.readUI8("Alpha");
}

uint32_t SwfColor::getSize(SwfContext& context) { return size = context.alpha ? 4 : 3; }

void SwfColor::write(SwfOStream& stream) const {
    stream.writeUI8(red);
    stream.writeUI8(green);
    stream.writeUI8(blue);
    if (stream.context.alpha)
        stream.writeUI8(alpha);
}

void SwfColorTransform::read(SwfIStream& stream) {
    const bool withAlpha = stream.context.alpha;
    hasAddTerms = stream.readFlag("HasAddTerms");
    hasMultTerms = stream.readFlag("HasMultTerms");
    const uint32_t n = stream.readUB(4, "Nbits");
    auto term = [&](const char* field) { return static_cast<int16_t>(stream.readSB(n, field)); };
    if (hasMultTerms) {
        redMult = term("RedMultTerm");
        greenMult = term("GreenMultTerm");
        blueMult = term("BlueMultTerm");
        if (withAlpha)
            alphaMult = term("AlphaMultTerm");
    }
    if (hasAddTerms) {
        redAdd = term("RedAddTerm");
        greenAdd = term("GreenAddTerm");
        blueAdd = term("BlueAddTerm");
        if (withAlpha)
            alphaAdd = term("AlphaAddTerm");
    }
    stream.alignBits();
    bits.keep(stream.context, n, narrowest(stream.context));
}

uint32_t SwfColorTransform::width(const SwfContext& context) const {
    std::initializer_list<int32_t> terms = {redMult, greenMult, blueMult, context.alpha ? alphaMult : 0,
                                            redAdd,  greenAdd,  blueAdd,  context.alpha ? alphaAdd : 0};
    return bits ? bits.written(0, bitsNeeded(terms)) : narrowest(context);
}

uint32_t SwfColorTransform::narrowest(const SwfContext& context) const {
    const bool withAlpha = context.alpha;
    int32_t values[8];
    size_t n = 0;
    if (hasMultTerms) {
        for (int32_t v : {redMult, greenMult, blueMult})
            values[n++] = v;
        if (withAlpha)
            values[n++] = alphaMult;
    }
    if (hasAddTerms) {
        // Add terms alone, with alpha: only red and alpha widen the fields; green and blue are cut to that width.
        const bool redOnly = !hasMultTerms && withAlpha && !context.fullForm;
        for (int32_t v : {redAdd, redOnly ? redAdd : greenAdd, redOnly ? redAdd : blueAdd})
            values[n++] = v;
        if (withAlpha)
            values[n++] = alphaAdd;
    }
    const uint32_t needed = n == 0 ? 0 : bitsSignedMax(values, n);
    if (needed > 15 && context.fullForm)
        throw SwfException(SwfError::doesNotFit, "a colour transform with a term outside -16384 to 16383");
    return needed;
}

uint32_t SwfColorTransform::getSize(SwfContext& context) {
    const uint32_t groups = (hasMultTerms ? 1 : 0) + (hasAddTerms ? 1 : 0);
    return size = (6 + width(context) * (context.alpha ? 4 : 3) * groups + 7) / 8;
}

void SwfColorTransform::write(SwfOStream& stream) const {
    const bool withAlpha = stream.context.alpha;
    const uint32_t n = width(stream.context);
    auto group = [&](int16_t r, int16_t g, int16_t b, int16_t a) {
        stream.writeSB(n, r);
        stream.writeSB(n, g);
        stream.writeSB(n, b);
        if (withAlpha)
            stream.writeSB(n, a);
    };
    stream.writeUB(1, hasAddTerms);
    stream.writeUB(1, hasMultTerms);
    stream.writeUB(4, n);
    if (hasMultTerms)
        group(redMult, greenMult, blueMult, alphaMult);
    if (hasAddTerms)
        group(redAdd, greenAdd, blueAdd, alphaAdd);
    stream.flushBits();
}

void SwfString::write(SwfOStream& stream, bool withNul) const {
    stream.writeBytes(getSize(withNul), reinterpret_cast<const uint8_t*>(c_str()));
}

} // namespace libswf
