#include "Styles.h"

#include <algorithm>
#include <cmath>

namespace zelk {

using namespace libswf;

namespace {

constexpr uint32_t linearRgb = 1; // an interpolation mode

Paint colorPaint(const QColor& color) {
    Paint paint;
    paint.color = color;
    return paint;
}

Paint gradientPaint(uint32_t type, const QTransform& matrix, QGradientStops stops) {
    Paint paint;
    paint.matrix = matrix;
    paint.stops = std::move(stops);
    if (paint.stops.isEmpty())
        return paint;
    paint.color = paint.stops.last().second;
    if (matrix.isInvertible()) // Squashed to a line, it has no room for more than its last colour.
        paint.kind = type == SwfFillType::linearGradient ? Paint::Kind::linear : Paint::Kind::radial;
    return paint;
}

Paint bitmapPaint(uint32_t type, uint16_t id, const QTransform& matrix) {
    Paint paint;
    paint.kind = Paint::Kind::bitmap;
    paint.bitmapId = id;
    paint.isTiled = type == SwfFillType::tiledBitmap || type == SwfFillType::nonSmoothedTiledBitmap;
    paint.isSmooth = type == SwfFillType::tiledBitmap || type == SwfFillType::clippedBitmap;
    paint.matrix = matrix;
    return paint;
}

QColor mixed(const QColor& start, const QColor& end, double ratio) {
    const auto mix = [ratio](int a, int b) { return static_cast<int>(std::lround(between(a, b, ratio))); };
    return QColor(mix(start.red(), end.red()), mix(start.green(), end.green()), mix(start.blue(), end.blue()),
                  mix(start.alpha(), end.alpha()));
}

QColor mixed(const SwfColor& start, const SwfColor& end, double ratio) {
    return mixed(colorOf(start, true), colorOf(end, true), ratio);
}

QTransform mixed(const SwfMatrix& start, const SwfMatrix& end, double ratio) {
    const QTransform a = transformOf(start), b = transformOf(end);
    const auto mix = [ratio](double from, double to) { return between(from, to, ratio); };
    return {mix(a.m11(), b.m11()), mix(a.m12(), b.m12()), mix(a.m21(), b.m21()),
            mix(a.m22(), b.m22()), mix(a.dx(), b.dx()),   mix(a.dy(), b.dy())};
}

// Stops in the file may go back; they count from the furthest one before.
void addStop(QGradientStops& stops, double ratio, const QColor& color) {
    const double before = stops.isEmpty() ? 0 : stops.last().first;
    stops.append({std::max(before, ratio / 255), color});
}

// Colours mixed by light instead of by value: more stops in between, each where its colour is.
QGradientStops mixedByLight(const QGradientStops& stops) {
    constexpr int parts = 8;
    const auto light = [](int value) { return std::pow(value / 255.0, 2.2); };
    const auto mix = [&](int a, int b, double ratio) {
        return static_cast<int>(std::lround(255 * std::pow(between(light(a), light(b), ratio), 1 / 2.2)));
    };
    QGradientStops result;
    for (qsizetype i = 0; i + 1 < stops.size(); ++i) {
        const auto& [start, a] = stops[i];
        const auto& [end, b] = stops[i + 1];
        for (int part = 0; part < parts; ++part) {
            const double ratio = double(part) / parts;
            result.append(
                {between(start, end, ratio),
                 QColor(mix(a.red(), b.red(), ratio), mix(a.green(), b.green(), ratio), mix(a.blue(), b.blue(), ratio),
                        static_cast<int>(between(a.alpha(), b.alpha(), ratio)))});
        }
    }
    if (!stops.isEmpty())
        result.append(stops.last());
    return result;
}

QGradientStops stopsOf(const SwfGradientFlags& flags, const SwfVector<SwfGradientRecord>& records, bool hasAlpha) {
    QGradientStops stops;
    for (const SwfGradientRecord& record : records)
        addStop(stops, record.ratio, colorOf(record.color, hasAlpha));
    return flags.interpolationMode() == linearRgb ? mixedByLight(stops) : stops;
}

QGradient::Spread spreadOf(const SwfGradientFlags& flags) {
    constexpr QGradient::Spread spreads[] = {QGradient::PadSpread, QGradient::ReflectSpread, QGradient::RepeatSpread,
                                             QGradient::PadSpread};
    return spreads[flags.spreadMode()];
}

double fixed8(uint8_t low, uint8_t high) { return static_cast<int16_t>(low | high << 8) / 256.0; }

Paint gradientOf(const SwfGradientFillStyle& style, bool hasAlpha) {
    const SwfGradientFlags flags = style.isFocal() ? style.focal.flags : style.gradients.flags;
    const auto& records = style.isFocal() ? style.focal.records : style.gradients.records;
    Paint paint = gradientPaint(style.type, transformOf(style.matrix), stopsOf(flags, records, hasAlpha));
    paint.spread = spreadOf(flags);
    if (style.isFocal())
        paint.focus = std::clamp(fixed8(style.focal.focalPoint[0], style.focal.focalPoint[1]), -1.0, 1.0);
    return paint;
}

void setLook(Stroke& stroke, const SwfLineFlags& flags, double miterLimit) {
    constexpr Qt::PenCapStyle caps[] = {Qt::RoundCap, Qt::FlatCap, Qt::SquareCap, Qt::RoundCap};
    constexpr Qt::PenJoinStyle joins[] = {Qt::RoundJoin, Qt::BevelJoin, Qt::SvgMiterJoin, Qt::RoundJoin};
    stroke.cap = caps[flags.paint >> 6];
    stroke.join = joins[flags.joinStyle()];
    stroke.miterLimit = std::max(1.0, miterLimit);
    stroke.closes = (flags.ends & 0x04) == 0;
}

} // namespace

QColor colorOf(const SwfColor& color, bool hasAlpha) {
    return QColor(color.red, color.green, color.blue, hasAlpha ? color.alpha : 255);
}

QTransform transformOf(const SwfMatrix& matrix) {
    // Edited XML can hold numbers that no file can.
    const auto finite = [](double value, double otherwise) { return std::isfinite(value) ? value : otherwise; };
    return {matrix.hasScale ? finite(matrix.scaleX, 1) : 1,
            matrix.hasRotate ? finite(matrix.rotateSkew0, 0) : 0,
            matrix.hasRotate ? finite(matrix.rotateSkew1, 0) : 0,
            matrix.hasScale ? finite(matrix.scaleY, 1) : 1,
            static_cast<double>(matrix.translateX),
            static_cast<double>(matrix.translateY)};
}

Paint paintOf(const SwfFillStyle& style, bool hasAlpha) {
    if (const auto* solid = dynamic_cast<const SwfSolidFillStyle*>(&style))
        return colorPaint(colorOf(solid->color, hasAlpha));
    if (const auto* gradient = dynamic_cast<const SwfGradientFillStyle*>(&style))
        return gradientOf(*gradient, hasAlpha);
    if (const auto* bitmap = dynamic_cast<const SwfBitmapFillStyle*>(&style))
        return bitmapPaint(bitmap->type, bitmap->bitmapId, transformOf(bitmap->matrix));
    return {};
}

Paint paintOf(const SwfMorphFillStyle& style, double ratio) {
    if (const auto* solid = dynamic_cast<const SwfMorphSolidFillStyle*>(&style))
        return colorPaint(mixed(solid->startColor, solid->endColor, ratio));
    if (const auto* bitmap = dynamic_cast<const SwfMorphBitmapFillStyle*>(&style))
        return bitmapPaint(bitmap->type, bitmap->bitmapId, mixed(bitmap->startMatrix, bitmap->endMatrix, ratio));
    const auto* gradient = dynamic_cast<const SwfMorphGradientFillStyle*>(&style);
    if (gradient == nullptr)
        return {};
    QGradientStops stops;
    for (const SwfMorphGradientRecord& record : gradient->gradients.records)
        addStop(stops, between(record.startRatio, record.endRatio, ratio),
                mixed(record.startColor, record.endColor, ratio));
    return gradientPaint(gradient->type, mixed(gradient->startMatrix, gradient->endMatrix, ratio), std::move(stops));
}

Stroke strokeOf(const SwfLineStyleGeneric& style, bool hasAlpha) {
    Stroke stroke;
    stroke.width = style.width;
    stroke.paint = colorPaint(colorOf(style.color, hasAlpha));
    if (const auto* style2 = dynamic_cast<const SwfLineStyle2*>(&style)) {
        setLook(stroke, style2->flags, style2->miterLimitFactor / 256.0);
        if (style2->flags.hasFill() && style2->fillType != nullptr)
            stroke.paint = paintOf(*style2->fillType, hasAlpha);
    }
    return stroke;
}

Stroke strokeOf(const SwfMorphLineStyleGeneric& style, double ratio) {
    Stroke stroke;
    stroke.width = between(style.startWidth, style.endWidth, ratio);
    stroke.paint = colorPaint(mixed(style.startColor, style.endColor, ratio));
    if (const auto* style2 = dynamic_cast<const SwfMorphLineStyle2*>(&style)) {
        setLook(stroke, style2->flags, fixed8(style2->miterLimitFactor[0], style2->miterLimitFactor[1]));
        if (style2->flags.hasFill() && style2->fillType != nullptr)
            stroke.paint = paintOf(*style2->fillType, ratio);
    }
    return stroke;
}

uint8_t ColorChange::channel(size_t index, int value) const {
    return static_cast<uint8_t>(std::clamp(value * mult[index] + add[index], 0.0, 255.0));
}

QColor ColorChange::of(const QColor& color) const {
    return QColor(channel(0, color.red()), channel(1, color.green()), channel(2, color.blue()),
                  channel(3, color.alpha()));
}

ColorChange ColorChange::then(const ColorChange& other) const {
    ColorChange both;
    for (size_t i = 0; i < mult.size(); ++i) {
        both.mult[i] = mult[i] * other.mult[i];
        both.add[i] = add[i] * other.mult[i] + other.add[i];
    }
    return both;
}

void Paint::recolor(const ColorChange& by) {
    color = by.of(color);
    for (QGradientStop& stop : stops)
        stop.second = by.of(stop.second);
    if (kind == Kind::bitmap)
        change = change ? change->then(by) : by;
}

QBrush Paint::brush() const {
    if (kind == Kind::color)
        return color;
    QLinearGradient linear(-gradientExtent, 0, gradientExtent, 0);
    // A focus on the rim itself would leave the colours outside of it open.
    QRadialGradient radial(QPointF(), gradientExtent, QPointF(focus * 0.99 * gradientExtent, 0));
    QGradient& gradient = kind == Kind::linear ? static_cast<QGradient&>(linear) : static_cast<QGradient&>(radial);
    gradient.setStops(stops);
    gradient.setSpread(spread);
    QBrush brush(gradient);
    brush.setTransform(matrix);
    return brush;
}

QPen Stroke::pen(double thinnest) const {
    QPen pen;
    constexpr double thickest = 32767; // of Qt's pens
    pen.setWidthF(std::min(std::max(width, thinnest), thickest));
    pen.setCapStyle(cap);
    pen.setJoinStyle(join);
    pen.setMiterLimit(miterLimit);
    return pen;
}

} // namespace zelk
