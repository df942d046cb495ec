#include "SwfMorphStyles.h"

#include "StyleArrays.h"

namespace libswf {

void SwfMorphGradientRecord::read(SwfIStream& stream) {
    startRatio = stream.readUI8("StartRatio");
    startColor.read(stream);
    endRatio = stream.readUI8("EndRatio");
    endColor.read(stream);
}

void SwfMorphGradientRecord::write(SwfOStream& stream) const {
    stream.writeUI8(startRatio);
    startColor.write(stream);
    stream.writeUI8(endRatio);
    endColor.write(stream);
}

void SwfMorphGradientRecords::read(SwfIStream& stream) {
    records.clear();
    const uint8_t byte = stream.readUI8("NumGradients");
    if (stream.context.fullForm)
        flags.raw = byte;
    for (uint32_t left = stream.context.fullForm ? flags.numGradients() : byte; left != 0; --left) {
        SwfMorphGradientRecord record;
        record.read(stream);
        records.append(record);
    }
}

void SwfMorphGradientRecords::write(SwfOStream& stream) const {
    const uint32_t most = stream.context.fullForm ? 15 : 255;
    if (records.size() > most)
        throw SwfException(SwfError::doesNotFit,
                           "a gradient of " + std::to_string(records.size()) + " records, at most 255 fit");
    SwfGradientFlags written;
    written.set(records.size(), flags.interpolationMode(), flags.spreadMode());
    stream.writeUI8(stream.context.fullForm ? written.raw : static_cast<uint8_t>(records.size()));
    for (const SwfMorphGradientRecord& record : records)
        record.write(stream);
}

uint32_t SwfMorphFillStyle::getSize(SwfContext& context) {
    return size = measure(context, [&](SwfOStream& stream) { write(stream); });
}

std::unique_ptr<SwfMorphFillStyle> SwfMorphFillStyle::read(SwfIStream& stream) {
    const uint8_t type = stream.readUI8("FillStyleType");
    if (type == SwfFillType::focalRadialGradient && stream.context.fullForm)
        return std::make_unique<SwfMorphGradientFillStyle>(stream, type);
    switch (type) {
    case SwfFillType::solid: return std::make_unique<SwfMorphSolidFillStyle>(stream);
    case SwfFillType::linearGradient:
    case SwfFillType::radialGradient: return std::make_unique<SwfMorphGradientFillStyle>(stream, type);
    case SwfFillType::tiledBitmap:
    case SwfFillType::clippedBitmap:
    case SwfFillType::nonSmoothedTiledBitmap:
    case SwfFillType::nonSmoothedClippedBitmap: return std::make_unique<SwfMorphBitmapFillStyle>(stream, type);
    default: failForFillType(stream, type);
    }
}

SwfMorphSolidFillStyle::SwfMorphSolidFillStyle(SwfIStream& stream) : SwfMorphSolidFillStyle() {
    startColor.read(stream);
    endColor.read(stream);
}

void SwfMorphSolidFillStyle::write(SwfOStream& stream) {
    stream.writeUI8(static_cast<uint8_t>(type));
    startColor.write(stream);
    endColor.write(stream);
}

SwfMorphGradientFillStyle::SwfMorphGradientFillStyle(SwfIStream& stream, uint32_t fillType)
    : SwfMorphFillStyle(fillType) {
    startMatrix.read(stream);
    endMatrix.read(stream);
    gradients.read(stream);
    if (isFocal()) {
        stream.readBytes(sizeof startFocalPoint, startFocalPoint, "StartFocalPoint");
        stream.readBytes(sizeof endFocalPoint, endFocalPoint, "EndFocalPoint");
    }
}

void SwfMorphGradientFillStyle::write(SwfOStream& stream) {
    stream.writeUI8(static_cast<uint8_t>(type));
    startMatrix.write(stream);
    endMatrix.write(stream);
    gradients.write(stream);
    if (isFocal()) {
        stream.writeBytes(startFocalPoint);
        stream.writeBytes(endFocalPoint);
    }
}

SwfMorphBitmapFillStyle::SwfMorphBitmapFillStyle(SwfIStream& stream, uint32_t fillType) : SwfMorphFillStyle(fillType) {
    bitmapId = stream.readUI16("BitmapId");
    startMatrix.read(stream);
    endMatrix.read(stream);
}

void SwfMorphBitmapFillStyle::write(SwfOStream& stream) {
    stream.writeUI8(static_cast<uint8_t>(type));
    stream.writeUI16(bitmapId);
    startMatrix.write(stream);
    endMatrix.write(stream);
}

void SwfMorphFillStyles::read(SwfIStream& stream) {
    items.clear();
    readStyles(stream, "FillStyleCount", true, [&] { items.add(SwfMorphFillStyle::read(stream)); });
}

uint32_t SwfMorphFillStyles::getSize(SwfContext& context) {
    return size = measure(context, [&](SwfOStream& stream) { write(stream); });
}

void SwfMorphFillStyles::write(SwfOStream& stream) {
    writeStyleCount(stream, "fill styles", items.size(), true);
    for (SwfMorphFillStyle* item : items)
        item->write(stream);
}

uint32_t SwfMorphLineStyleGeneric::getSize(SwfContext& context) {
    return size = measure(context, [&](SwfOStream& stream) { write(stream); });
}

void SwfMorphLineStyle::read(SwfIStream& stream) {
    startWidth = stream.readUI16("StartWidth");
    endWidth = stream.readUI16("EndWidth");
    startColor.read(stream);
    endColor.read(stream);
}

void SwfMorphLineStyle::write(SwfOStream& stream) {
    stream.writeUI16(startWidth);
    stream.writeUI16(endWidth);
    startColor.write(stream);
    endColor.write(stream);
}

void SwfMorphLineStyle2::read(SwfIStream& stream) {
    startWidth = stream.readUI16("StartWidth");
    endWidth = stream.readUI16("EndWidth");
    const uint8_t first = stream.readUI8("MorphLineStyle2 flags"), second = stream.readUI8("MorphLineStyle2 flags");
    flags.paint = stream.context.fullForm ? first : second;
    flags.ends = stream.context.fullForm ? second : first;
    if (flags.hasMiter())
        stream.readBytes(sizeof miterLimitFactor, miterLimitFactor, "MiterLimitFactor");
    if (flags.hasFill()) {
        fillType = SwfMorphFillStyle::read(stream);
    } else {
        startColor.read(stream);
        endColor.read(stream);
    }
}

void SwfMorphLineStyle2::write(SwfOStream& stream) {
    stream.writeUI16(startWidth);
    stream.writeUI16(endWidth);
    stream.writeUI8(stream.context.fullForm ? flags.paint : flags.ends);
    stream.writeUI8(stream.context.fullForm ? flags.ends : flags.paint);
    if (flags.hasMiter())
        stream.writeBytes(miterLimitFactor);
    if (!flags.hasFill()) {
        startColor.write(stream);
        endColor.write(stream);
    } else if (fillType != nullptr) {
        fillType->write(stream);
    } else {
        throw SwfException(SwfError::doesNotFit, "a line style whose HasFill is set has no MorphFillStyle");
    }
}

template <class Style>
void SwfMorphLineStyles::read(SwfIStream& stream) {
    items.clear();
    readStyles(stream, "LineStyleCount", true, [&] { items.add(std::make_unique<Style>()).read(stream); });
}

template void SwfMorphLineStyles::read<SwfMorphLineStyle>(SwfIStream&);
template void SwfMorphLineStyles::read<SwfMorphLineStyle2>(SwfIStream&);

uint32_t SwfMorphLineStyles::getSize(SwfContext& context) {
    return size = measure(context, [&](SwfOStream& stream) { write(stream); });
}

void SwfMorphLineStyles::write(SwfOStream& stream) {
    writeStyleCount(stream, "line styles", items.size(), true);
    for (SwfMorphLineStyleGeneric* item : items)
        item->write(stream);
}

} // namespace libswf
