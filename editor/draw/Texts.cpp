#include "Texts.h"

#include <algorithm>
#include <optional>

#include "DrawLimits.h"
#include "Glyphs.h"

namespace zelk {

using namespace libswf;

namespace {

Paint plain(const QColor& color) {
    Paint paint;
    paint.color = color;
    return paint;
}

QPainterPath box(double x, double y, double advance, double height) {
    QPainterPath path;
    path.addRect(x + advance * 0.1, y - height * 0.7, advance * 0.8, height * 0.7);
    return path;
}

// The pen and the choices that hold from one record of a text to the next.
class TextPen {
public:
    TextPen(Drawing& drawing, const QTransform& transform, const FontLookup& fonts, bool hasAlpha, size_t& edges)
        : _drawing(drawing), _transform(transform), _fonts(fonts), _hasAlpha(hasAlpha), _edges(edges) {}

    void write(const SwfTextRecord& record) {
        choose(record);
        for (const SwfGlyphEntry& entry : record.glyphs) {
            if (_edges == 0 || ++_count > DrawLimits::glyphs)
                return;
            add(entry);
            _x += entry.advance;
        }
    }

private:
    void choose(const SwfTextRecord& record) {
        if ((record.flags & SwfTextRecord::fontBit) != 0) {
            _glyphs.emplace(_fonts ? _fonts(record.fontId) : nullptr, _edges);
            _height = record.height;
        }
        if ((record.flags & SwfTextRecord::colorBit) != 0)
            _color = colorOf(record.color, _hasAlpha);
        if ((record.flags & SwfTextRecord::xOffsetBit) != 0)
            _x = record.xOffset;
        if ((record.flags & SwfTextRecord::yOffsetBit) != 0)
            _y = record.yOffset;
    }

    void add(const SwfGlyphEntry& entry) {
        if (!_glyphs || !_glyphs->has(entry.index)) {
            _drawing.add({_transform.map(box(_x, _y, entry.advance, _height)), plain(_color), {}});
            return;
        }
        const double scale = _glyphs->scale(_height);
        const QTransform place = QTransform(scale, 0, 0, scale, _x, _y) * _transform;
        _drawing.add({place.map(_glyphs->at(entry.index)), plain(_color), {}});
    }

    Drawing& _drawing;
    QTransform _transform;
    const FontLookup& _fonts;
    bool _hasAlpha;
    size_t& _edges;
    std::optional<Glyphs> _glyphs;
    QColor _color = Qt::black;
    double _x = 0, _y = 0, _height = 0;
    size_t _count = 0;
};

} // namespace

void addText(Drawing& drawing, const SwfTagDefineText& text, const FontLookup& fonts, size_t& edges) {
    TextPen pen(drawing, transformOf(text.matrix), fonts, text.hasAlpha(), edges);
    for (const SwfTextRecord& record : text.records)
        pen.write(record);
}

} // namespace zelk
