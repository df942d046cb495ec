// Shapes, morph shapes and glyphs as drawings.
#pragma once

#include "Drawing.h"
#include "SwfTagDefineMorphShape.h"
#include "SwfTagDefineShape.h"

namespace zelk {

/// `edges` is how many edges may be taken, and is lowered by those that are.
void addShape(Drawing& drawing, const libswf::SwfShapeTag& shape, size_t& edges);

/// `ratio` from 0 to 1. Edges of both ends belong together in their order; of a line and a curve it draws a curve.
void addMorphShape(Drawing& drawing, const libswf::SwfMorphShapeTag& shape, double ratio, size_t& edges);

/// In the font's units, the baseline at 0, y downwards.
QPainterPath glyphPath(const libswf::SwfShapeRecords& glyph, size_t& edges);

} // namespace zelk
