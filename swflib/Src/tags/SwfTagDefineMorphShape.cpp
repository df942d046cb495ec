#include "SwfTagDefineMorphShape.h"

#include "SwfShapePlace.h"

namespace libswf {

static void setFlags(SwfContext& context) {
    context.alpha = true;
    context.extendedCounts = true;
    context.newStylesAllowed = true;
    context.lineStyle2Mode = false;
    context.cutIndices = false;
}

template <class LineStyle>
void SwfMorphShapeTag::readShape(SwfIStream& stream) {
    fillStyles.read(stream);
    lineStyles.read<LineStyle>(stream);
    setIndexWidths(stream, fillStyles.items.size(), lineStyles.items.size());
    startEdges.read(stream);
    setIndexWidths(stream, fillStyles.items.size(), lineStyles.items.size());
    endEdges.read(stream);
}

void SwfMorphShapeTag::writeStart(SwfOStream& stream) {
    fillStyles.write(stream);
    lineStyles.write(stream);
    setIndexWidths(stream.context, fillStyles.items.size(), lineStyles.items.size());
    startEdges.write(stream);
}

void SwfMorphShapeTag::writeEnd(SwfOStream& stream) {
    setIndexWidths(stream.context, fillStyles.items.size(), lineStyles.items.size());
    endEdges.write(stream);
}

SwfTagDefineMorphShape::SwfTagDefineMorphShape(SwfIStream& stream) : SwfTagDefineMorphShape() {
    setFlags(stream.context);
    characterId = stream.readUI16("ShapeId");
    startBounds.read(stream);
    endBounds.read(stream);
    stream.readUI32("Offset");
    readShape<SwfMorphLineStyle>(stream);
}

void SwfTagDefineMorphShape::writeBody(SwfOStream& stream) {
    setFlags(stream.context);
    namingShape(characterId, [&] {
        stream.writeUI16(characterId);
        startBounds.write(stream);
        endBounds.write(stream);
        const uint64_t offsetPlace = stream.written();
        stream.writeUI32(0);
        const uint64_t start = stream.written();
        writeStart(stream);
        // Put in afterwards, since only now it is known without measuring all of it again.
        const auto offset = static_cast<uint32_t>(stream.written() - start);
        if (!stream.isCounter())
            std::memcpy(stream.data() + offsetPlace, &offset, sizeof offset);
        writeEnd(stream);
    });
}

SwfTagDefineMorphShape2::SwfTagDefineMorphShape2(SwfIStream& stream) : SwfTagDefineMorphShape2() {
    setFlags(stream.context);
    characterId = stream.readUI16("ShapeId");
    startBounds.read(stream);
    endBounds.read(stream);
    startEdgeBounds.read(stream);
    endEdgeBounds.read(stream);
    flags = stream.readUI8("DefineMorphShape2 flags");
    offset = stream.readUI32("Offset");
    readShape<SwfMorphLineStyle2>(stream);
}

void SwfTagDefineMorphShape2::writeBody(SwfOStream& stream) {
    setFlags(stream.context);
    namingShape(characterId, [&] {
        stream.writeUI16(characterId);
        startBounds.write(stream);
        endBounds.write(stream);
        startEdgeBounds.write(stream);
        endEdgeBounds.write(stream);
        stream.writeUI8(flags);
        stream.writeUI32(offset);
        writeStart(stream);
        writeEnd(stream);
    });
}

} // namespace libswf
