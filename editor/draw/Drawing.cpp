#include "Drawing.h"

#include <QPainter>
#include <QPainterPathStroker>
#include <algorithm>
#include <array>
#include <cmath>

#include "DrawLimits.h"

namespace zelk {

namespace {

// How many pixels a twip has, in any direction.
double scaleOf(const QTransform& transform) { return std::sqrt(std::abs(transform.determinant())); }

// The image and, as far as `area` of its pixel space goes beyond, its rim drawn out. `origin` becomes the place of the
// result's first pixel.
QImage extended(const QImage& image, const QRectF& area, QPoint& origin) {
    const QRectF own(image.rect());
    const QRectF wanted = area.intersected(own.adjusted(-4096, -4096, 4096, 4096)).united(own);
    const QRect rect = wanted.toAlignedRect().adjusted(-1, -1, 1, 1);
    if (double(rect.width()) * rect.height() > DrawLimits::extendedPixels)
        return image;
    origin = rect.topLeft();
    QImage result(rect.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < rect.height(); ++y) {
        const int row = std::clamp(y + rect.top(), 0, image.height() - 1);
        const auto* from = reinterpret_cast<const QRgb*>(image.constScanLine(row));
        auto* to = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < rect.width(); ++x)
            to[x] = from[std::clamp(x + rect.left(), 0, image.width() - 1)];
    }
    return result;
}

void recolor(QImage& image, const ColorChange& change) {
    std::array<std::array<uint8_t, 256>, 4> table;
    for (size_t channel = 0; channel < table.size(); ++channel) {
        for (size_t value = 0; value < 256; ++value)
            table[channel][value] = change.channel(channel, static_cast<int>(value));
    }
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (QRgb* pixel = row; pixel != row + image.width(); ++pixel) {
            const QRgb before = qUnpremultiply(*pixel);
            *pixel = qPremultiply(
                qRgba(table[0][static_cast<size_t>(qRed(before))], table[1][static_cast<size_t>(qGreen(before))],
                      table[2][static_cast<size_t>(qBlue(before))], table[3][static_cast<size_t>(qAlpha(before))]));
        }
    }
}

// Qt takes four pixels into account at most: a bitmap that is drawn much smaller is made smaller before.
void shrink(QImage& image, QTransform& place, double scale) {
    if (scale >= 0.5 || scale <= 0)
        return;
    const QSize before = image.size();
    image = image.scaled((QSizeF(before) * scale).toSize().expandedTo({1, 1}), Qt::IgnoreAspectRatio,
                         Qt::SmoothTransformation);
    place =
        QTransform::fromScale(double(before.width()) / image.width(), double(before.height()) / image.height()) * place;
}

void fillWithBitmap(QPainter& painter, const QPainterPath& path, const Paint& paint, const BitmapLookup& bitmaps) {
    const QImage found = bitmaps ? bitmaps(paint.bitmapId) : QImage();
    QImage image = (found.isNull() ? missingBitmap() : found).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    bool canInvert = false;
    const QTransform toPixels = paint.matrix.inverted(&canInvert);
    if (!canInvert || image.isNull())
        return;
    QPoint origin;
    if (!paint.isTiled && !found.isNull())
        image = extended(image, toPixels.mapRect(path.boundingRect()), origin);
    QTransform place = QTransform::fromTranslate(origin.x(), origin.y()) * paint.matrix;
    shrink(image, place, scaleOf(place * painter.transform()));
    if (paint.change)
        recolor(image, *paint.change);
    QBrush brush(image);
    brush.setTransform(place);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, paint.isSmooth);
    painter.fillPath(path, brush);
}

void fill(QPainter& painter, const QPainterPath& path, const Paint& paint, const BitmapLookup& bitmaps) {
    if (paint.kind == Paint::Kind::bitmap)
        fillWithBitmap(painter, path, paint, bitmaps);
    else
        painter.fillPath(path, paint.brush());
}

void draw(QPainter& painter, const QPainterPath& path, const Stroke& stroke, const BitmapLookup& bitmaps) {
    const double scale = scaleOf(painter.transform());
    QPen pen = stroke.pen(scale > 0 ? 1 / scale : 1);
    if (stroke.paint.kind == Paint::Kind::bitmap) {
        QPainterPath line = QPainterPathStroker(pen).createStroke(path);
        line.setFillRule(Qt::WindingFill);
        fillWithBitmap(painter, line, stroke.paint, bitmaps);
        return;
    }
    pen.setBrush(stroke.paint.brush());
    painter.strokePath(path, pen);
}

} // namespace

void Drawing::add(DrawnPath piece) {
    if (_pieces.size() < DrawLimits::pieces && !piece.path.isEmpty())
        _pieces.push_back(std::move(piece));
}

void Drawing::add(const Drawing& other, const QTransform& transform, const std::optional<ColorChange>& change) {
    for (DrawnPath piece : other._pieces) {
        piece.path = transform.map(piece.path);
        piece.paint.matrix *= transform;
        if (piece.stroke) {
            piece.stroke->width *= scaleOf(transform);
            piece.stroke->paint.matrix *= transform;
        }
        if (change) {
            piece.paint.recolor(*change);
            if (piece.stroke)
                piece.stroke->paint.recolor(*change);
        }
        add(std::move(piece));
    }
}

QRectF Drawing::bounds() const {
    QRectF all;
    for (const DrawnPath& piece : _pieces) {
        const double rim = piece.stroke ? std::max(piece.stroke->width, 1.0) / 2 : 0;
        all = all.united(piece.path.boundingRect().adjusted(-rim, -rim, rim, rim));
    }
    return all;
}

void Drawing::paint(QPainter& painter, const BitmapLookup& bitmaps, const std::function<bool()>& goesOn) const {
    painter.setRenderHint(QPainter::Antialiasing);
    for (const DrawnPath& piece : _pieces) {
        if (goesOn && !goesOn())
            return;
        if (piece.stroke)
            draw(painter, piece.path, *piece.stroke, bitmaps);
        else
            fill(painter, piece.path, piece.paint, bitmaps);
    }
}

QImage imageOf(const Drawing& drawing, double scale, const BitmapLookup& bitmaps) {
    const QRectF bounds = drawing.bounds();
    if (bounds.isEmpty())
        return {};
    const double area = bounds.width() * bounds.height() * scale * scale;
    if (area > DrawLimits::pixels)
        scale *= std::sqrt(DrawLimits::pixels / area);
    const double longest = std::max(bounds.width(), bounds.height()) * scale;
    if (longest > INT16_MAX) // Qt's limit
        scale *= INT16_MAX / longest;
    QImage image((bounds.size() * scale).toSize().expandedTo({1, 1}), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.scale(scale, scale);
    painter.translate(-bounds.topLeft());
    drawing.paint(painter, bitmaps);
    return image;
}

QImage missingBitmap() {
    QImage image(16, 16, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, (x < 8) == (y < 8) ? 0xFFE080E0 : 0xFFFFFFFF);
    }
    return image;
}

} // namespace zelk
