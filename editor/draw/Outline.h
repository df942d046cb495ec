// Edges with a fill on each side, as shape records give them, joined to paths.
#pragma once

#include <QPointF>
#include <unordered_map>
#include <vector>

#include "Drawing.h"

namespace zelk {

/// The styles that shape records choose from, by index from 1.
struct StyleTable {
    std::vector<Paint> fills;
    std::vector<Stroke> lines;
};

/// Takes records one by one and turns each run of them that has the same style table into paths: first its areas, in
/// the order of their styles, then its lines.
class Outline {
public:
    /// Takes at most `edges` edges, and lowers it by those taken; further ones only move the position.
    Outline(Drawing& target, size_t& edges) : _target(target), _left(edges) {}

    /// Begins a run. No style is chosen then.
    void setStyles(StyleTable styles);
    void setFill0(uint32_t index) { _fill0 = index; } ///< to the left of the edges
    void setFill1(uint32_t index) { _fill1 = index; } ///< to the right
    void setLine(uint32_t index);

    void moveTo(QPointF point);
    void lineTo(QPointF end);
    void curveTo(QPointF control, QPointF end);
    QPointF position() const { return _position; }

    /// How areas that overlap themselves are filled.
    void setFillRule(Qt::FillRule rule) { _fillRule = rule; }

    /// Ends the last run.
    void finish();

private:
    struct Edge {
        QPointF start, control, end;
        bool isCurve = false;

        Edge reversed() const { return {end, control, start, isCurve}; }
    };
    using Edges = std::vector<Edge>;

    void add(Edge edge);
    void addToLine(const Edge& edge);
    void endLine();
    static void append(QPainterPath& path, const Edge& edge);
    QPainterPath joined(const Edges& edges) const;

    Drawing& _target;
    size_t& _left;
    StyleTable _styles;
    Qt::FillRule _fillRule = Qt::OddEvenFill;
    uint32_t _fill0 = 0, _fill1 = 0, _line = 0;
    QPointF _position;
    QPointF _lineStart;
    bool _isLineOpen = false;
    std::vector<Edges> _areas;
    std::vector<QPainterPath> _lines;
};

} // namespace zelk
