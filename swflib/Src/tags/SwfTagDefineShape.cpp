#include "SwfTagDefineShape.h"

#include "SwfShapePlace.h"
#include "SwfTagCodes.h"

namespace libswf {

static void setFlags(SwfContext& context, uint16_t code) {
    context.alpha = code == SwfTagCode::DefineShape3 || code == SwfTagCode::DefineShape4;
    context.extendedCounts = code != SwfTagCode::DefineShape;
    context.newStylesAllowed = code != SwfTagCode::DefineShape;
    context.lineStyle2Mode = code == SwfTagCode::DefineShape4;
    context.cutIndices = context.widenIndices = false;
}

namespace {

// The kind of line styles that is read is a tag's own: gives it back as it was before.
class LineStyleScope {
public:
    explicit LineStyleScope(SwfContext& context) : _context(context), _before(context.lineStyle2Mode) {}
    ~LineStyleScope() { _context.lineStyle2Mode = _before; }
    LineStyleScope(const LineStyleScope&) = delete;
    LineStyleScope& operator=(const LineStyleScope&) = delete;

private:
    SwfContext& _context;
    const bool _before;
};

} // namespace

void SwfShapeTag::read(SwfIStream& stream) {
    const LineStyleScope scope(stream.context);
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
