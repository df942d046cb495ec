#include "SwfFilters.h"

namespace libswf {

namespace {

SwfColor readRgba(SwfIStream& stream, const char* field) {
    SwfColor color;
    color.red = stream.readUI8(field);
    color.green = stream.readUI8(field);
    color.blue = stream.readUI8(field);
    color.alpha = stream.readUI8(field);
    return color;
}

void writeRgba(SwfOStream& stream, const SwfColor& color) {
    stream.writeUI8(color.red);
    stream.writeUI8(color.green);
    stream.writeUI8(color.blue);
    stream.writeUI8(color.alpha);
}

SwfFilterFixed readFixed(SwfIStream& stream, const char* field) {
    const uint16_t high = stream.readUI16(field);
    return {high, stream.readUI16(field)};
}

SwfFilterFixed8 readFixed8(SwfIStream& stream, const char* field) {
    const uint8_t high = stream.readUI8(field);
    return {high, stream.readUI8(field)};
}

void writeFixed(SwfOStream& stream, SwfFilterFixed value) {
    stream.writeUI16(value.high);
    stream.writeUI16(value.low);
}

void writeFixed8(SwfOStream& stream, SwfFilterFixed8 value) {
    stream.writeUI8(value.high);
    stream.writeUI8(value.low);
}

void needBody(const SwfIStream& stream, const char* field) {
    if (stream.position() >= stream.limit())
        stream.fail(field, "the body ends inside the list");
}

} // namespace

uint32_t SwfGenericFilter::getSize(SwfContext& context) {
    return size = measure(context, [&](SwfOStream& stream) { write(stream); });
}

void SwfDirectedFilter::readDirected(SwfIStream& stream) {
    blurX = readFixed(stream, "BlurX");
    blurY = readFixed(stream, "BlurY");
    angle = readFixed(stream, "Angle");
    distance = readFixed(stream, "Distance");
    strength = readFixed8(stream, "Strength");
    flags = stream.readUI8("Flags");
}

void SwfDirectedFilter::writeDirected(SwfOStream& stream) const {
    writeFixed(stream, blurX);
    writeFixed(stream, blurY);
    writeFixed(stream, angle);
    writeFixed(stream, distance);
    writeFixed8(stream, strength);
    stream.writeUI8(flags);
}

SwfDropShadowFilter::SwfDropShadowFilter(SwfIStream& stream) {
    dropShadowColor = readRgba(stream, "DropShadowColor");
    readDirected(stream);
}

void SwfDropShadowFilter::write(SwfOStream& stream) const {
    writeRgba(stream, dropShadowColor);
    writeDirected(stream);
}

SwfBlurFilter::SwfBlurFilter(SwfIStream& stream) {
    blurX = readFixed(stream, "BlurX");
    blurY = readFixed(stream, "BlurY");
    flags = stream.readUI8("Flags");
}

void SwfBlurFilter::write(SwfOStream& stream) const {
    writeFixed(stream, blurX);
    writeFixed(stream, blurY);
    stream.writeUI8(flags);
}

SwfGlowFilter::SwfGlowFilter(SwfIStream& stream) {
    glowColor = readRgba(stream, "GlowColor");
    blurX = readFixed(stream, "BlurX");
    blurY = readFixed(stream, "BlurY");
    strength = readFixed8(stream, "Strength");
    flags = stream.readUI8("Flags");
}

void SwfGlowFilter::write(SwfOStream& stream) const {
    writeRgba(stream, glowColor);
    writeFixed(stream, blurX);
    writeFixed(stream, blurY);
    writeFixed8(stream, strength);
    stream.writeUI8(flags);
}

SwfBevelFilter::SwfBevelFilter(SwfIStream& stream) {
    shadowColor = readRgba(stream, "ShadowColor");
    highlightColor = readRgba(stream, "HighlightColor");
    readDirected(stream);
}

void SwfBevelFilter::write(SwfOStream& stream) const {
    writeRgba(stream, shadowColor);
    writeRgba(stream, highlightColor);
    writeDirected(stream);
}

void SwfGradientFilter::read(SwfIStream& stream) {
    numColors = stream.readUI8("NumColors");
    for (uint32_t i = 0; i < numColors; ++i) {
        needBody(stream, "GradientColors");
        gradientColors.append(readRgba(stream, "GradientColors"));
    }
    for (uint32_t i = 0; i < numColors; ++i) {
        needBody(stream, "GradientRatio");
        gradientRatio.append(stream.readUI8("GradientRatio"));
    }
    readDirected(stream);
}

void SwfGradientFilter::write(SwfOStream& stream) const {
    stream.writeUI8(numColors);
    for (uint32_t i = 0; i < numColors; ++i)
        writeRgba(stream, i < gradientColors.size() ? gradientColors[i] : SwfColor());
    for (uint32_t i = 0; i < numColors; ++i)
        stream.writeUI8(i < gradientRatio.size() ? gradientRatio[i] : 0);
    writeDirected(stream);
}

SwfConvolutionFilter::SwfConvolutionFilter(SwfIStream& stream) {
    matrixX = stream.readUI8("MatrixX");
    matrixY = stream.readUI8("MatrixY");
    divisor = stream.readFloat("Divisor");
    bias = stream.readFloat("Bias");
    for (uint32_t i = 0; i < entries(); ++i) {
        needBody(stream, "Matrix");
        matrix.append(stream.readFloat("Matrix"));
    }
    defaultColor = readRgba(stream, "DefaultColor");
    if (stream.context.fullForm)
        flags = stream.readUI8("Flags");
}

uint32_t SwfConvolutionFilter::getSize(SwfContext& context) {
    size = SwfGenericFilter::getSize(context);
    if (!context.fullForm)
        ++size; // the flags byte, which is counted and not written
    return size;
}

void SwfConvolutionFilter::write(SwfOStream& stream) const {
    stream.writeUI8(matrixX);
    stream.writeUI8(matrixY);
    stream.writeFloat(divisor);
    stream.writeFloat(bias);
    for (uint32_t i = 0; i < entries(); ++i)
        stream.writeFloat(i < matrix.size() ? matrix[i] : 0.0f);
    writeRgba(stream, defaultColor);
    if (stream.context.fullForm)
        stream.writeUI8(flags);
}

SwfColorMatrixFilter::SwfColorMatrixFilter(SwfIStream& stream) {
    for (float& value : matrix)
        value = stream.readFloat("Matrix");
}

void SwfColorMatrixFilter::write(SwfOStream& stream) const {
    for (float value : matrix)
        stream.writeFloat(value);
}

SwfFilter::SwfFilter(SwfIStream& stream) {
    switch (stream.readUI8("FilterId")) {
#define SWF_FILTER(id, type, element)                                                                                  \
    case id:                                                                                                           \
        filter = std::make_shared<Swf##type>(stream);                                                                  \
        break;
#include "SwfFilters.def"
    default: stream.fail("FilterId", "an unknown filter");
    }
}

void SwfFilterList::read(SwfIStream& stream) {
    filters.clear();
    const uint32_t numberOfFilters = stream.readUI8("NumberOfFilters");
    for (uint32_t i = 0; i < numberOfFilters; ++i) {
        needBody(stream, "FilterId");
        filters.append(SwfFilter(stream));
    }
}

uint32_t SwfFilterList::count(const SwfContext& context) const {
    const uint32_t most = context.fullForm ? 255 : 256;
    const auto written =
        std::count_if(filters.begin(), filters.end(), [](const SwfFilter& entry) { return entry.filter != nullptr; });
    if (written > most)
        throw SwfException(SwfError::doesNotFit, "a list of more than " + std::to_string(most) + " filters");
    return static_cast<uint32_t>(written);
}

uint32_t SwfFilterList::measured(SwfContext& context) const {
    uint64_t total = 1 + count(context);
    for (const SwfFilter& entry : filters) {
        if (entry.filter)
            total += entry.filter->getSize(context);
    }
    return static_cast<uint32_t>(total); // 256 filters of at most 260 KB
}

uint32_t SwfFilterList::getSize(SwfContext& context) { return size = measured(context); }

void SwfFilterList::write(SwfOStream& stream) const {
    if (stream.isCounter()) {
        stream.count(measured(stream.context));
        return;
    }
    stream.writeUI8(static_cast<uint8_t>(count(stream.context)));
    for (const SwfFilter& entry : filters) {
        if (!entry.filter)
            continue;
        stream.writeUI8(entry.filter->filterId());
        entry.filter->write(stream);
    }
}

} // namespace libswf
