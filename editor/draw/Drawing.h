// What a tag looks like: paths in painting order. Coordinates are twips.
#pragma once

#include <QImage>
#include <QPainterPath>
#include <functional>
#include <optional>
#include <vector>

#include "Styles.h"

class QPainter;

namespace zelk {

/// Straight or premultiplied pixels of a bitmap character; null when there is none that can be shown.
using BitmapLookup = std::function<QImage(uint16_t characterId)>;

/// A filled path, or with `stroke` a line along it.
struct DrawnPath {
    QPainterPath path;
    Paint paint; ///< of the area
    std::optional<Stroke> stroke;
};

class Drawing {
public:
    /// At most DrawLimits::pieces; further ones are left out.
    void add(DrawnPath piece);
    /// Another drawing, moved and coloured.
    void add(const Drawing& other, const QTransform& transform, const std::optional<ColorChange>& change = {});

    bool isEmpty() const { return _pieces.empty(); }
    const std::vector<DrawnPath>& pieces() const { return _pieces; }
    /// With the lines' widths. Null for an empty drawing.
    QRectF bounds() const;

    /// With the painter's transform; hairlines are a pixel wide in it. Bitmaps that are missing are chequered.
    /// Stops between two pieces when `goesOn` says so.
    void paint(QPainter& painter, const BitmapLookup& bitmaps, const std::function<bool()>& goesOn = nullptr) const;

private:
    std::vector<DrawnPath> _pieces;
};

/// Straight pixels at this many pixels for a twip, as large as the drawing (at most DrawLimits::pixels).
QImage imageOf(const Drawing& drawing, double scale, const BitmapLookup& bitmaps);

/// What stands for a bitmap that is not there.
QImage missingBitmap();

} // namespace zelk
