#include "SwfTagDefineShape.h"

#include "SwfShapePlace.h"
#include "SwfTagCodes.h"

namespace libswf {

static void setFlags(SwfContext& context, uint16_t code) {
    context.alpha = code == SwfTagCode::DefineShape3 || code == SwfTagCode::DefineShape4;
    context.extendedCounts = code != SwfTagCode::DefineShape;
    context.newStylesAllowed = code != SwfTagCode::DefineShape;
    context.lineStyle2Mode = code == SwfTagCode::DefineShape4;
    context.cutIndices = false;
}

void SwfShapeTag::read(SwfIStream& stream) {
    setFlags(stream.context, type);
    characterId = stream.readUI16("ShapeId");
    bounds.read(stream);
    readExtras(stream);
    fillStyles.read(stream);
    lineStyles.read(stream);
    setIndexWidths(stream, fillStyles.items.size(), lineStyles.items.size());
    records.read(stream);
}

void SwfShapeTag::writeBody(SwfOStream& stream) {
    setFlags(stream.context, type);
    namingShape(characterId, [&] {
        stream.writeUI16(characterId);
        bounds.write(stream);
        writeExtras(stream);
        fillStyles.write(stream);
        lineStyles.write(stream);
        setIndexWidths(stream.context, fillStyles.items.size(), lineStyles.items.size());
        records.write(stream);
    });
}

void SwfTagDefineShape4::readExtras(SwfIStream& stream) {
    edgeBounds.read(stream);
    flags = stream.readUI8("DefineShape4 flags");
}

void SwfTagDefineShape4::writeExtras(SwfOStream& stream) const {
    edgeBounds.write(stream);
    stream.writeUI8(flags);
}

} // namespace libswf
