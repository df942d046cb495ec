#include "SwfFillStyle.h"

#include "StyleArrays.h"

namespace libswf {

uint32_t SwfFillStyle::getSize(SwfContext& context) {
    return size = measure(context, [&](SwfOStream& stream) { write(stream); });
}

std::unique_ptr<SwfFillStyle> SwfFillStyle::read(SwfIStream& stream) {
    const uint8_t type = stream.readUI8("FillStyleType");
    switch (type) {
    case SwfFillType::solid: return std::make_unique<SwfSolidFillStyle>(stream);
    case SwfFillType::linearGradient:
    case SwfFillType::radialGradient:
    case SwfFillType::focalRadialGradient: return std::make_unique<SwfGradientFillStyle>(stream, type);
    case SwfFillType::tiledBitmap:
    case SwfFillType::clippedBitmap:
    case SwfFillType::nonSmoothedTiledBitmap:
    case SwfFillType::nonSmoothedClippedBitmap: return std::make_unique<SwfBitmapFillStyle>(stream, type);
    default: failForFillType(stream, type);
    }
}

SwfSolidFillStyle::SwfSolidFillStyle(SwfIStream& stream) : SwfSolidFillStyle() { color.read(stream); }

void SwfSolidFillStyle::write(SwfOStream& stream) {
    stream.writeUI8(static_cast<uint8_t>(type));
    color.write(stream);
}

SwfGradientFillStyle::SwfGradientFillStyle(SwfIStream& stream, uint32_t fillType) : SwfFillStyle(fillType) {
    matrix.read(stream);
    if (isFocal())
        focal.read(stream);
    else
        gradients.read(stream);
}

void SwfGradientFillStyle::write(SwfOStream& stream) {
    stream.writeUI8(static_cast<uint8_t>(type));
    matrix.write(stream);
    if (isFocal())
        focal.write(stream);
    else
        gradients.write(stream);
}

SwfBitmapFillStyle::SwfBitmapFillStyle(SwfIStream& stream, uint32_t fillType) : SwfFillStyle(fillType) {
    bitmapId = stream.readUI16("BitmapId");
    matrix.read(stream);
}

void SwfBitmapFillStyle::write(SwfOStream& stream) {
    stream.writeUI8(static_cast<uint8_t>(type));
    stream.writeUI16(bitmapId);
    matrix.write(stream);
}

void SwfFillStyles::read(SwfIStream& stream) {
    items.clear();
    readStyles(stream, "FillStyleCount", stream.context.extendedCounts, [&] { items.add(SwfFillStyle::read(stream)); });
}

uint32_t SwfFillStyles::getSize(SwfContext& context) {
    return size = measure(context, [&](SwfOStream& stream) { write(stream); });
}

void SwfFillStyles::write(SwfOStream& stream) {
    writeStyleCount(stream, "fill styles", items.size(), stream.context.extendedCounts);
    for (SwfFillStyle* item : items)
        item->write(stream);
}

} // namespace libswf
