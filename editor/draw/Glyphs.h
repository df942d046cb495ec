// The outlines of a font, each built once.
#pragma once

#include <QPainterPath>
#include <QRectF>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "Drawing.h"
#include "SwfTagDefineFont.h"

namespace zelk {

/// Units of the font for the height of a line: 1024, for DefineFont3 20 times as many.
double emSize(const libswf::SwfGlyphFont& font);

class Glyphs {
public:
    /// The font may be null. Outlines take from `edges`, again each time that they are used.
    Glyphs(std::shared_ptr<const libswf::SwfGlyphFont> font, size_t& edges) : _font(std::move(font)), _edges(edges) {}

    bool has(uint32_t index) const { return _font != nullptr && index < _font->glyphs.count(); }
    const QPainterPath& at(uint32_t index);
    /// From the font's units to a line of this height.
    double scale(double height) const { return height / emSize(*_font); }

private:
    std::shared_ptr<const libswf::SwfGlyphFont> _font;
    size_t& _edges;
    std::unordered_map<uint32_t, QPainterPath> _paths;
};

/// One glyph in a table of them.
struct GlyphCell {
    QRectF place; ///< in the drawing's coordinates
    uint32_t index = 0;
    std::optional<uint16_t> code; ///< the character, where the font tells it
};

struct GlyphTable {
    Drawing drawing;
    std::vector<GlyphCell> cells; ///< row by row
};

/// At most DrawLimits::glyphs of them.
GlyphTable glyphTable(const std::shared_ptr<const libswf::SwfGlyphFont>& font);

} // namespace zelk
