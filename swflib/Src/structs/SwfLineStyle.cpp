#include "SwfLineStyle.h"

#include "StyleArrays.h"

namespace libswf {

uint32_t SwfLineStyleGeneric::getSize(SwfContext& context) {
    return size = measure(context, [&](SwfOStream& stream) { write(stream); });
}

void SwfLineStyle::read(SwfIStream& stream) {
    width = stream.readUI16("Width");
    color.read(stream);
}

void SwfLineStyle::write(SwfOStream& stream) {
    stream.writeUI16(width);
    color.write(stream);
}

void SwfLineStyle2::read(SwfIStream& stream) {
    width = stream.readUI16("Width");
    flags.paint = stream.readUI8("LineStyle2 flags");
    flags.ends = stream.readUI8("LineStyle2 flags");
    if (flags.hasMiter())
        miterLimitFactor = stream.readUI16("MiterLimitFactor");
    if (flags.hasFill())
        fillType = SwfFillStyle::read(stream);
    else
        color.read(stream);
}

void SwfLineStyle2::write(SwfOStream& stream) {
    stream.writeUI16(width);
    stream.writeUI8(flags.paint);
    stream.writeUI8(flags.ends);
    if (flags.hasMiter())
        stream.writeUI16(miterLimitFactor);
    if (!flags.hasFill())
        color.write(stream);
    else if (fillType != nullptr)
        fillType->write(stream);
    else
        throw SwfException(SwfError::doesNotFit, "a line style whose HasFill is set has no FillStyle");
}

void SwfLineStyles::read(SwfIStream& stream) {
    items.clear();
    readStyles(stream, "LineStyleCount", stream.context.extendedCounts, [&] {
        std::unique_ptr<SwfLineStyleGeneric> item;
        if (stream.context.lineStyle2Mode)
            item = std::make_unique<SwfLineStyle2>();
        else
            item = std::make_unique<SwfLineStyle>();
        items.add(std::move(item)).read(stream);
    });
}

uint32_t SwfLineStyles::getSize(SwfContext& context) {
    return size = measure(context, [&](SwfOStream& stream) { write(stream); });
}

void SwfLineStyles::write(SwfOStream& stream) {
    writeStyleCount(stream, "line styles", items.size(), stream.context.extendedCounts);
    for (SwfLineStyleGeneric* item : items)
        item->write(stream);
}

} // namespace libswf
