// Fill and line styles as Qt paints them. Lengths are in twips.
#pragma once

#include <QBrush>
#include <QPen>
#include <QTransform>
#include <array>
#include <optional>

#include "SwfFillStyle.h"
#include "SwfLineStyle.h"
#include "SwfMorphStyles.h"

namespace zelk {

/// Multiplies straight colours, then adds to them; red, green, blue, alpha from 0 to 255.
struct ColorChange {
    std::array<double, 4> mult{1, 1, 1, 1};
    std::array<double, 4> add{};

    uint8_t channel(size_t index, int value) const;
    QColor of(const QColor& color) const;
    /// This one and then the other. What goes beyond a colour's range in between counts.
    ColorChange then(const ColorChange& other) const;
};

/// What an area is filled with.
struct Paint {
    enum class Kind : uint8_t { color, linear, radial, bitmap };

    Kind kind = Kind::color;
    QColor color = Qt::transparent;
    QGradientStops stops; ///< of gradients
    QGradient::Spread spread = QGradient::PadSpread;
    double focus = 0;                  ///< -1 to 1, of radial gradients
    uint16_t bitmapId = 0;             ///< of bitmaps, as are the next two
    bool isTiled = false;              ///< otherwise the pixels at its rim go on outside of it
    bool isSmooth = true;              ///< when enlarged
    QTransform matrix;                 ///< from the gradient's square or the bitmap's pixels
    std::optional<ColorChange> change; ///< of the bitmap's pixels

    static constexpr double gradientExtent = 16384; ///< half a side of the gradient's square

    /// The brush of a colour or gradient.
    QBrush brush() const;
    void recolor(const ColorChange& by);
};

struct Stroke {
    double width = 0;
    Paint paint;
    Qt::PenCapStyle cap = Qt::RoundCap;
    Qt::PenJoinStyle join = Qt::RoundJoin;
    double miterLimit = 3;
    bool closes = true; ///< a path that ends where it began has a join there

    /// Without its brush. A line is at least `thinnest` wide.
    QPen pen(double thinnest) const;
};

/// `ratio` goes from 0 for the start of a morph shape to 1 for its end; colours without alpha are opaque.
QColor colorOf(const libswf::SwfColor& color, bool hasAlpha);
QTransform transformOf(const libswf::SwfMatrix& matrix);
Paint paintOf(const libswf::SwfFillStyle& style, bool hasAlpha);
Paint paintOf(const libswf::SwfMorphFillStyle& style, double ratio);
Stroke strokeOf(const libswf::SwfLineStyleGeneric& style, bool hasAlpha);
Stroke strokeOf(const libswf::SwfMorphLineStyleGeneric& style, double ratio);

inline double between(double start, double end, double ratio) { return start + (end - start) * ratio; }

} // namespace zelk
