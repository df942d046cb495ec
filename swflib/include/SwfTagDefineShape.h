// DefineShape (2), DefineShape2 (22), DefineShape3 (32) and DefineShape4 (83).
#pragma once

#include "SwfShapeRecords.h"
#include "SwfTag.h"

namespace libswf {

/// What all versions share; characterId is the ShapeId. The versions differ in what the contents may be: version 1
/// holds at most 255 styles (254 in the classic form) and no new styles in records (code 2 on write), versions 1 and 2
/// have colours without alpha. A shape whose records or styles cannot be written again as they are is marked inexact on
/// reading.
class SwfShapeTag : public SwfDefinitionTag {
public:
    SwfRect bounds; ///< ShapeBounds: with the strokes
    SwfFillStyles fillStyles;
    SwfLineStyles lineStyles; ///< LINESTYLE, in version 4 LINESTYLE2
    SwfShapeRecords records;

protected:
    using SwfDefinitionTag::SwfDefinitionTag;

    void read(SwfIStream& stream);
    void writeBody(SwfOStream& stream) override;
    /// What stands between the bounds and the styles.
    virtual void readExtras(SwfIStream&) {}
    virtual void writeExtras(SwfOStream&) const {}
};

class SwfTagDefineShape : public SwfShapeTag {
public:
    SwfTagDefineShape() : SwfShapeTag(2) {}
    explicit SwfTagDefineShape(SwfIStream& stream) : SwfTagDefineShape() { read(stream); }
};

class SwfTagDefineShape2 : public SwfShapeTag {
public:
    SwfTagDefineShape2() : SwfShapeTag(22) {}
    explicit SwfTagDefineShape2(SwfIStream& stream) : SwfTagDefineShape2() { read(stream); }
};

class SwfTagDefineShape3 : public SwfShapeTag {
public:
    SwfTagDefineShape3() : SwfShapeTag(32) {}
    explicit SwfTagDefineShape3(SwfIStream& stream) : SwfTagDefineShape3() { read(stream); }
};

/// Bit 2 of the flags is UsesFillWindingRule from version 10 on; the classic XML form leaves it out, together with the
/// reserved bits, and only reads it back as "Reserved".
class SwfTagDefineShape4 : public SwfShapeTag {
public:
    SwfRect edgeBounds; ///< without the strokes
    uint8_t flags = 0;  ///< bit 0 UseScalingStrokes, 1 UseNonScalingStrokes, 2 UseFillWindingRule

    SwfTagDefineShape4() : SwfShapeTag(83) {}
    explicit SwfTagDefineShape4(SwfIStream& stream) : SwfTagDefineShape4() { read(stream); }

protected:
    void readExtras(SwfIStream& stream) override;
    void writeExtras(SwfOStream& stream) const override;
};

} // namespace libswf
