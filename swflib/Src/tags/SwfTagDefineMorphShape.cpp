#include "SwfTagDefineMorphShape.h"

#include "SwfShapePlace.h"

namespace libswf {

static void setFlags(SwfContext& context) {
    context.alpha = true;
    context.extendedCounts = true;
    context.newStylesAllowed = true;
    context.lineStyle2Mode = false;
    context.cutIndices = false;
    context.widenIndices = false;
}

// End edges use the styles of the start edges: they mostly choose none, and files give their indices no width. The
// classic form gives them that of the start edges.
template <class Stream>
static void setEndWidths(Stream& stream, const SwfMorphFillStyles& fills, const SwfMorphLineStyles& lines) {
    SwfContext& context = stream.context;
    context.widenIndices = context.fullForm;
    if (context.fullForm)
        context.numFillBits = context.numLineBits = 0;
    else if constexpr (std::is_same_v<Stream, SwfIStream>)
        setIndexWidths(stream, fills.items.size(), lines.items.size());
    else
        setIndexWidths(context, fills.items.size(), lines.items.size());
}

template <class LineStyle>
void SwfMorphShapeTag::readShape(SwfIStream& stream) {
    fillStyles.read(stream);
    lineStyles.read<LineStyle>(stream);
    setIndexWidths(stream, fillStyles.items.size(), lineStyles.items.size());
    startEdges.read(stream);
    setEndWidths(stream, fillStyles, lineStyles);
    endEdges.read(stream);
}

void SwfMorphShapeTag::writeShape(SwfOStream& stream, std::optional<uint32_t> offset) {
    const uint64_t offsetPlace = stream.written();
    stream.writeUI32(offset.value_or(0));
    const uint64_t start = stream.written();
    fillStyles.write(stream);
    lineStyles.write(stream);
    setIndexWidths(stream.context, fillStyles.items.size(), lineStyles.items.size());
    startEdges.write(stream);
    // Put in afterwards, since only now it is known without measuring all of it again.
    const auto workedOut = static_cast<uint32_t>(stream.written() - start);
    if (!offset && !stream.isCounter())
        std::memcpy(stream.data() + offsetPlace, &workedOut, sizeof workedOut);
    setEndWidths(stream, fillStyles, lineStyles);
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
        writeShape(stream, {});
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
        writeShape(stream, stream.context.fullForm ? std::nullopt : std::optional(offset));
    });
}

} // namespace libswf
