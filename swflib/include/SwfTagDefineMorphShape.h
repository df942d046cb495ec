// DefineMorphShape (46) and DefineMorphShape2 (84): a shape that changes into another.
#pragma once

#include <optional>

#include "SwfMorphStyles.h"
#include "SwfShapeRecords.h"
#include "SwfTag.h"

namespace libswf {

/// What both versions share; characterId is the ShapeId. The two record lists use the same styles. New styles in a
/// record are those of a DefineShape3.
class SwfMorphShapeTag : public SwfDefinitionTag {
public:
    SwfRect startBounds, endBounds;
    SwfMorphFillStyles fillStyles;
    SwfMorphLineStyles lineStyles;
    SwfShapeRecords startEdges, endEdges;

protected:
    using SwfDefinitionTag::SwfDefinitionTag;

    template <class LineStyle>
    void readShape(SwfIStream& stream);
    /// The offset field and what follows it.
    void writeShape(SwfOStream& stream, std::optional<uint32_t> offset);
};

/// The offset in the file is skipped on reading and worked out on writing.
class SwfTagDefineMorphShape : public SwfMorphShapeTag {
public:
    SwfTagDefineMorphShape() : SwfMorphShapeTag(46) {}
    explicit SwfTagDefineMorphShape(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// In the full form the offset is worked out on writing. In the classic one it is kept as it was read, on purpose, even
/// when the styles or edges in front of the end edges have changed: whoever edits them has to set it.
class SwfTagDefineMorphShape2 : public SwfMorphShapeTag {
public:
    SwfRect startEdgeBounds, endEdgeBounds; ///< without the strokes
    uint8_t flags = 0;                      ///< bit 0 UseScalingStrokes, 1 UseNonScalingStrokes, 2-7 reserved
    uint32_t offset = 0;                    ///< bytes from behind this field to the end edges

    SwfTagDefineMorphShape2() : SwfMorphShapeTag(84) {}
    explicit SwfTagDefineMorphShape2(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
