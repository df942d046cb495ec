#include "Glyphs.h"

#include <algorithm>
#include <cmath>

#include "DrawLimits.h"
#include "Shapes.h"

namespace zelk {

using namespace libswf;

double emSize(const SwfGlyphFont& font) { return font.type == SwfTagCode::DefineFont3 ? 20 * 1024 : 1024; }

const QPainterPath& Glyphs::at(uint32_t index) {
    const auto [found, isNew] = _paths.try_emplace(index);
    if (isNew)
        found->second = glyphPath(*_font->glyphs.items[index], _edges);
    else
        _edges -= std::min(_edges, static_cast<size_t>(found->second.elementCount()));
    return found->second;
}

GlyphTable glyphTable(const std::shared_ptr<const SwfGlyphFont>& font) {
    constexpr double cell = 800, line = 480, baseline = 560; // twips
    GlyphTable table;
    size_t edges = DrawLimits::edges;
    Glyphs glyphs(font, edges);
    const auto count = static_cast<uint32_t>(std::min<size_t>(font->glyphs.count(), DrawLimits::glyphs));
    const auto columns = std::max(1U, static_cast<uint32_t>(std::ceil(std::sqrt(count * 1.25))));
    const auto* named = dynamic_cast<const SwfTagDefineFont2*>(font.get());
    Paint black;
    black.color = Qt::black;
    for (uint32_t i = 0; i < count && edges > 0; ++i) {
        const QRectF place(i % columns * cell, i / columns * cell, cell, cell);
        const QPainterPath& path = glyphs.at(i);
        const double scale = glyphs.scale(line);
        const double left = place.center().x() - path.boundingRect().center().x() * scale;
        const QTransform toCell(scale, 0, 0, scale, left, place.top() + baseline);
        table.drawing.add({toCell.map(path), black, {}});
        std::optional<uint16_t> code;
        if (named != nullptr && i < named->codes.size())
            code = named->codes[i];
        table.cells.push_back({place, i, code});
    }
    return table;
}

} // namespace zelk
