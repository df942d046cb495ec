#include "Outline.h"

#include <algorithm>

#include "DrawLimits.h"

namespace zelk {

namespace {

struct PointHash {
    size_t operator()(const QPointF& point) const { return qHashMulti(0, point.x(), point.y()); }
};
// Exact, unlike that of QPointF: the coordinates that have to meet are the same sums.
struct PointEqual {
    bool operator()(const QPointF& a, const QPointF& b) const { return a.x() == b.x() && a.y() == b.y(); }
};

// The edges that leave each point, each handed out once.
template <class Edges>
class Departures {
public:
    explicit Departures(const Edges& edges) : _next(edges.size(), none), _isUsed(edges.size()) {
        _heads.reserve(edges.size());
        for (size_t i = edges.size(); i-- > 0;) {
            size_t& head = _heads.try_emplace(edges[i].start, none).first->second;
            _next[i] = head;
            head = i;
        }
    }

    static constexpr size_t none = SIZE_MAX;

    bool isUsed(size_t edge) const { return _isUsed[edge]; }
    void use(size_t edge) { _isUsed[edge] = true; }
    /// The first unused one in the order of the edges; `none` when there is none.
    size_t from(const QPointF& point) {
        const auto found = _heads.find(point);
        if (found == _heads.end())
            return none;
        while (found->second != none && _isUsed[found->second])
            found->second = _next[found->second];
        return found->second;
    }

private:
    std::unordered_map<QPointF, size_t, PointHash, PointEqual> _heads;
    std::vector<size_t> _next;
    std::vector<bool> _isUsed;
};

// Edges that start where fewer end: open chains have to be followed from there.
template <class Edges>
std::vector<size_t> chainStarts(const Edges& edges) {
    std::unordered_map<QPointF, int, PointHash, PointEqual> balance;
    for (const auto& edge : edges) {
        ++balance[edge.start];
        --balance[edge.end];
    }
    std::vector<size_t> starts;
    for (size_t i = 0; i < edges.size(); ++i) {
        int& open = balance[edges[i].start];
        if (open > 0) {
            --open;
            starts.push_back(i);
        }
    }
    return starts;
}

QPointF bounded(const QPointF& point) {
    return {std::clamp(point.x(), -DrawLimits::coordinate, DrawLimits::coordinate),
            std::clamp(point.y(), -DrawLimits::coordinate, DrawLimits::coordinate)};
}

} // namespace

void Outline::setStyles(StyleTable styles) {
    finish();
    _styles = std::move(styles);
    _areas.resize(_styles.fills.size());
    _lines.resize(_styles.lines.size());
}

void Outline::setLine(uint32_t index) {
    endLine();
    _line = index;
}

void Outline::moveTo(QPointF point) {
    endLine();
    _position = bounded(point);
}

void Outline::lineTo(QPointF end) {
    end = bounded(end);
    add({_position, end, end, false});
}

void Outline::curveTo(QPointF control, QPointF end) { add({_position, bounded(control), bounded(end), true}); }

void Outline::add(Edge edge) {
    _position = edge.end;
    if (_left == 0)
        return;
    --_left;
    if (_fill0 != _fill1) { // Otherwise nothing ends here.
        if (_fill1 != 0 && _fill1 <= _areas.size())
            _areas[_fill1 - 1].push_back(edge);
        if (_fill0 != 0 && _fill0 <= _areas.size())
            _areas[_fill0 - 1].push_back(edge.reversed());
    }
    if (_line != 0 && _line <= _lines.size())
        addToLine(edge);
}

void Outline::addToLine(const Edge& edge) {
    QPainterPath& path = _lines[_line - 1];
    if (!_isLineOpen) {
        path.moveTo(edge.start);
        _lineStart = edge.start;
    }
    _isLineOpen = true;
    append(path, edge);
}

void Outline::endLine() {
    if (_isLineOpen && _position == _lineStart && _styles.lines[_line - 1].closes)
        _lines[_line - 1].closeSubpath();
    _isLineOpen = false;
}

void Outline::append(QPainterPath& path, const Edge& edge) {
    if (edge.isCurve)
        path.quadTo(edge.control, edge.end);
    else
        path.lineTo(edge.end);
}

QPainterPath Outline::joined(const Edges& edges) const {
    QPainterPath path;
    path.setFillRule(_fillRule);
    Departures<Edges> departures(edges);
    const auto follow = [&](size_t i) {
        if (departures.isUsed(i))
            return;
        path.moveTo(edges[i].start);
        for (; i != departures.none; i = departures.from(edges[i].end)) {
            departures.use(i);
            append(path, edges[i]);
        }
    };
    for (size_t start : chainStarts(edges))
        follow(start);
    for (size_t i = 0; i < edges.size(); ++i)
        follow(i);
    return path;
}

void Outline::finish() {
    endLine();
    for (size_t i = 0; i < _areas.size(); ++i) {
        if (!_areas[i].empty())
            _target.add({joined(_areas[i]), _styles.fills[i], {}});
    }
    for (size_t i = 0; i < _lines.size(); ++i)
        _target.add({_lines[i], {}, _styles.lines[i]});
    _areas.clear();
    _lines.clear();
    _styles = {};
    _fill0 = _fill1 = _line = 0;
}

} // namespace zelk
