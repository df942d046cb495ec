#include "Shapes.h"

#include "Outline.h"

namespace zelk {

using namespace libswf;

namespace {

constexpr uint8_t windingRule = 0x04; // UsesFillWindingRule

StyleTable tableOf(const SwfFillStyles& fills, const SwfLineStyles& lines, bool hasAlpha) {
    StyleTable table;
    for (const SwfFillStyle* style : fills.items)
        table.fills.push_back(paintOf(*style, hasAlpha));
    for (const SwfLineStyleGeneric* style : lines.items)
        table.lines.push_back(strokeOf(*style, hasAlpha));
    return table;
}

StyleTable tableOf(const SwfMorphShapeTag& shape, double ratio) {
    StyleTable table;
    for (const SwfMorphFillStyle* style : shape.fillStyles.items)
        table.fills.push_back(paintOf(*style, ratio));
    for (const SwfMorphLineStyleGeneric* style : shape.lineStyles.items)
        table.lines.push_back(strokeOf(*style, ratio));
    return table;
}

// New styles come last in the file, but the indices in front of them are into the new ones.
void chooseStyles(Outline& outline, const SwfStyleChange& change, bool hasAlpha) {
    if (change.newStyles != nullptr)
        outline.setStyles(tableOf(change.newStyles->fillStyles, change.newStyles->lineStyles, hasAlpha));
    if (change.stateFillStyle0)
        outline.setFill0(change.fillStyle0);
    if (change.stateFillStyle1)
        outline.setFill1(change.fillStyle1);
    if (change.stateLineStyle)
        outline.setLine(change.lineStyle);
}

QPointF control(const SwfCurve& curve) { return QPointF(curve.controlDeltaX, curve.controlDeltaY); }
QPointF anchor(const SwfCurve& curve) { return QPointF(curve.anchorDeltaX, curve.anchorDeltaY); }
QPointF target(const SwfStyleChange& change) { return QPointF(change.moveDeltaX, change.moveDeltaY); }

void addEdge(Outline& outline, const SwfShapeRecord& record) {
    const QPointF start = outline.position();
    if (record.kind == SwfShapeRecord::Kind::straightEdge) {
        const auto& line = static_cast<const SwfLine&>(record);
        outline.lineTo(start + QPointF(line.deltaX, line.deltaY));
    } else {
        const auto& curve = static_cast<const SwfCurve&>(record);
        outline.curveTo(start + control(curve), start + control(curve) + anchor(curve));
    }
}

const SwfStyleChange* styleChange(const SwfShapeRecord& record) {
    return record.kind == SwfShapeRecord::Kind::styleChange ? static_cast<const SwfStyleChange*>(&record) : nullptr;
}

// The two lists of a morph shape side by side: each has a pen of its own, the outline follows a point between them.
class MorphPens {
public:
    MorphPens(Outline& outline, double ratio) : _outline(outline), _ratio(ratio) {}

    void change(const SwfStyleChange* start, const SwfStyleChange* end) {
        const bool moves = (start != nullptr && start->stateMoveTo) || (end != nullptr && end->stateMoveTo);
        if (start != nullptr && start->stateMoveTo)
            _start = target(*start);
        if (end != nullptr && end->stateMoveTo)
            _end = target(*end);
        if (start != nullptr)
            chooseStyles(_outline, *start, true);
        if (moves)
            _outline.moveTo(between(_start, _end));
    }

    void edge(const SwfShapeRecord& start, const SwfShapeRecord& end) {
        const Edge a = edgeFrom(_start, start), b = edgeFrom(_end, end);
        if (a.isCurve || b.isCurve)
            _outline.curveTo(between(a.control, b.control), between(a.end, b.end));
        else
            _outline.lineTo(between(a.end, b.end));
        _start = a.end;
        _end = b.end;
    }

private:
    struct Edge {
        QPointF control, end;
        bool isCurve;
    };

    static Edge edgeFrom(const QPointF& from, const SwfShapeRecord& record) {
        if (record.kind == SwfShapeRecord::Kind::straightEdge) {
            const auto& line = static_cast<const SwfLine&>(record);
            const QPointF delta(line.deltaX, line.deltaY);
            return {from + delta / 2, from + delta, false};
        }
        const auto& curve = static_cast<const SwfCurve&>(record);
        return {from + control(curve), from + control(curve) + anchor(curve), true};
    }

    QPointF between(const QPointF& start, const QPointF& end) const { return start + (end - start) * _ratio; }

    Outline& _outline;
    double _ratio;
    QPointF _start, _end;
};

bool choosesFill(const SwfShapeRecords& records) {
    for (const SwfShapeRecord* record : records.items()) {
        const SwfStyleChange* change = styleChange(*record);
        if (change != nullptr && ((change->stateFillStyle0 && change->fillStyle0 != 0) ||
                                  (change->stateFillStyle1 && change->fillStyle1 != 0)))
            return true;
    }
    return false;
}

} // namespace

void addShape(Drawing& drawing, const SwfShapeTag& shape, size_t& edges) {
    const bool hasAlpha = shape.type == SwfTagCode::DefineShape3 || shape.type == SwfTagCode::DefineShape4;
    Outline outline(drawing, edges);
    if (const auto* shape4 = dynamic_cast<const SwfTagDefineShape4*>(&shape); shape4 && (shape4->flags & windingRule))
        outline.setFillRule(Qt::WindingFill);
    outline.setStyles(tableOf(shape.fillStyles, shape.lineStyles, hasAlpha));
    for (const SwfShapeRecord* record : shape.records.items()) {
        if (const SwfStyleChange* change = styleChange(*record)) {
            chooseStyles(outline, *change, hasAlpha);
            if (change->stateMoveTo)
                outline.moveTo(target(*change));
        } else {
            addEdge(outline, *record);
        }
    }
    outline.finish();
}

void addMorphShape(Drawing& drawing, const SwfMorphShapeTag& shape, double ratio, size_t& edges) {
    Outline outline(drawing, edges);
    outline.setStyles(tableOf(shape, ratio));
    MorphPens pens(outline, ratio);
    const auto& starts = shape.startEdges.items();
    const auto& ends = shape.endEdges.items();
    // Edges belong together one by one; changes of style and moves may stand in either list alone.
    for (uint32_t i = 0, j = 0; i < starts.size();) {
        const SwfStyleChange* start = styleChange(*starts[i]);
        const SwfStyleChange* end = j < ends.size() ? styleChange(*ends[j]) : nullptr;
        if (start != nullptr || end != nullptr) {
            pens.change(start, end);
            i += start != nullptr;
            j += end != nullptr;
        } else if (j < ends.size()) {
            pens.edge(*starts[i++], *ends[j++]);
        } else {
            break;
        }
    }
    outline.finish();
}

QPainterPath glyphPath(const SwfShapeRecords& glyph, size_t& edges) {
    Drawing drawing;
    Outline outline(drawing, edges);
    outline.setStyles({{Paint()}, {}});
    if (!choosesFill(glyph))
        outline.setFill1(1);
    for (const SwfShapeRecord* record : glyph.items()) {
        if (const SwfStyleChange* change = styleChange(*record)) {
            if (change->stateFillStyle0)
                outline.setFill0(change->fillStyle0 != 0 ? 1 : 0);
            if (change->stateFillStyle1)
                outline.setFill1(change->fillStyle1 != 0 ? 1 : 0);
            if (change->stateMoveTo)
                outline.moveTo(target(*change));
        } else {
            addEdge(outline, *record);
        }
    }
    outline.finish();
    return drawing.isEmpty() ? QPainterPath() : drawing.pieces().front().path;
}

} // namespace zelk
