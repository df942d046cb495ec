#include "PreviewCanvas.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QPromise>
#include <QStyleOption>
#include <QThreadPool>
#include <QWheelEvent>
#include <algorithm>
#include <chrono>

namespace zelk {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double rim = 12; // pixels around a fitted drawing
constexpr double mostZoom = 64, step = 1.25;
constexpr double mostPixels = 16'000; // of a side of the whole drawing: Qt's paths end at 32,767
constexpr double twips = 20;          // of a pixel
constexpr double mostEnlarged = 8;    // by fitting
constexpr auto longest = std::chrono::seconds(3);
constexpr QRgb markColor = 0xFF2A6DB8;

// [worker thread] Stops when it takes too long: the rest is left out.
QImage painted(const TagPreview& preview, double ratio, const QSize& size, double pixelRatio,
               const QTransform& transform, const std::atomic<bool>& isDropped) {
    QImage image(size * pixelRatio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(pixelRatio);
    image.fill(Qt::transparent);
    const auto end = Clock::now() + longest;
    const auto drawing = preview.drawing(ratio);
    QPainter painter(&image);
    painter.setTransform(transform, true);
    drawing->paint(
        painter, [&preview](uint16_t id) { return preview.bitmap(id); },
        [&] { return !isDropped && Clock::now() < end; });
    return image;
}

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
    auto* canvas = qobject_cast<PreviewCanvas*>(object);
    return canvas == nullptr ? nullptr : new QAccessibleWidget(canvas, QAccessible::Graphic);
}

} // namespace

PreviewCanvas::PreviewCanvas(QWidget* parent) : QWidget(parent) {
    static const bool isInstalled = (QAccessible::installFactory(makeAccessible), true);
    static_cast<void>(isInstalled);
    setMinimumSize(120, 100);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Picture of the tag"));
    connect(&_painting, &QFutureWatcherBase::finished, this, &PreviewCanvas::takePicture);
}

void PreviewCanvas::setPreview(std::shared_ptr<const TagPreview> preview, bool keepsView) {
    dropPicture();
    _preview = std::move(preview);
    if (!keepsView) {
        _picture = {};
        _ratio = 0;
        _zoom = 1;
        _offset = {};
    }
    _played = -1;
    repaintPicture();
}

void PreviewCanvas::setRatio(double ratio) {
    _ratio = ratio;
    repaintPicture();
}

void PreviewCanvas::setPlayed(double played) {
    _played = played;
    update();
}

void PreviewCanvas::showAll() {
    _zoom = 1;
    _offset = {};
    repaintPicture();
}

void PreviewCanvas::repaintPicture() {
    update();
    _isOutOfDate = _isPainting;
    if (_isOutOfDate || size().isEmpty())
        return;
    if (_preview == nullptr) {
        _picture = {};
        return;
    }
    _isPainting = true;
    auto promise = std::make_shared<QPromise<Picture>>();
    promise->start();
    _isDropped = std::make_shared<std::atomic<bool>>(false);
    QThreadPool::globalInstance()->start([promise, isDropped = _isDropped, preview = _preview, ratio = _ratio,
                                          size = size(), pixelRatio = devicePixelRatioF(), transform = transform()] {
        Picture picture;
        try {
            picture = {painted(*preview, ratio, size, pixelRatio, transform, *isDropped), transform};
        } catch (const std::exception&) { // out of memory
        }
        promise->addResult(picture);
        promise->finish();
    });
    _painting.setFuture(promise->future());
}

// Its thread may take some more time; a new picture does not wait for it.
void PreviewCanvas::dropPicture() {
    if (_isDropped != nullptr)
        *_isDropped = true;
    _isPainting = false;
}

void PreviewCanvas::takePicture() {
    _isPainting = false;
    if (!*_isDropped)
        _picture = _painting.future().result();
    update();
    if (*_isDropped || _isOutOfDate)
        repaintPicture();
}

QRectF PreviewCanvas::area() const { return _preview == nullptr ? QRectF() : _preview->area(); }

QTransform PreviewCanvas::transform() const {
    const QRectF all = area();
    const double width = std::max(all.width(), 1.0), height = std::max(all.height(), 1.0);
    const double fitted = std::min((this->width() - 2 * rim) / width, (this->height() - 2 * rim) / height);
    double scale = std::clamp(fitted, 1e-9, mostEnlarged / twips) * _zoom;
    scale = std::min(scale, mostPixels / std::max(width, height));
    const QPointF middle = QRectF(rect()).center() + _offset - all.center() * scale;
    return {scale, 0, 0, scale, middle.x(), middle.y()};
}

// Neither black nor white: drawings are both.
QPixmap PreviewCanvas::chequer() const {
    const bool isDark = palette().color(QPalette::Window).lightness() < 128;
    const QColor one(isDark ? 0x9C9C9C : 0xDEDEDE), other(isDark ? 0x868686 : 0xC4C4C4);
    QPixmap squares(16, 16);
    squares.fill(one);
    QPainter painter(&squares);
    painter.fillRect(0, 0, 8, 8, other);
    painter.fillRect(8, 8, 8, 8, other);
    return squares;
}

void PreviewCanvas::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), chequer());
    paintPicture(painter);
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.backgroundColor = Qt::lightGray;
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

void PreviewCanvas::paintPicture(QPainter& painter) const {
    if (_preview == nullptr)
        return;
    if (!_picture.image.isNull()) {
        painter.setTransform(_picture.transform.inverted() * transform());
        painter.drawImage(0, 0, _picture.image);
        painter.resetTransform();
    }
    paintMarks(painter);
}

void PreviewCanvas::paintMarks(QPainter& painter) const {
    const QTransform place = transform();
    if (const QRectF bounds = _preview->ownBounds(); !bounds.isNull()) {
        painter.setPen(QPen(QColor(markColor), 1, Qt::DashLine));
        painter.drawRect(place.mapRect(bounds).toAlignedRect());
    }
    if (_played >= 0) {
        const QRectF all = place.mapRect(area());
        const double x = all.left() + all.width() * std::min(_played, 1.0);
        painter.setPen(QPen(QColor(0xD0, 0x30, 0x20), 1));
        painter.drawLine(QPointF(x, 0), QPointF(x, height()));
    }
}

void PreviewCanvas::resizeEvent(QResizeEvent*) { repaintPicture(); }

void PreviewCanvas::zoomBy(double factor, const QPointF& fixed) {
    const double before = _zoom;
    _zoom = std::clamp(_zoom * factor, 1.0, mostZoom);
    const QPointF fromMiddle = fixed - QRectF(rect()).center();
    _offset = fromMiddle - (fromMiddle - _offset) * (_zoom / before);
    if (_zoom == 1)
        _offset = {};
    repaintPicture();
}

void PreviewCanvas::wheelEvent(QWheelEvent* event) {
    if (const int turned = event->angleDelta().y(); turned != 0)
        zoomBy(turned > 0 ? step : 1 / step, event->position());
    event->accept();
}

void PreviewCanvas::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal: zoomBy(step, QRectF(rect()).center()); break;
    case Qt::Key_Minus: zoomBy(1 / step, QRectF(rect()).center()); break;
    case Qt::Key_0: showAll(); break;
    default: QWidget::keyPressEvent(event);
    }
}

void PreviewCanvas::mousePressEvent(QMouseEvent* event) { _dragged = event->position(); }

void PreviewCanvas::mouseDoubleClickEvent(QMouseEvent*) { showAll(); }

void PreviewCanvas::mouseMoveEvent(QMouseEvent* event) {
    if ((event->buttons() & Qt::LeftButton) != 0) {
        _offset += event->position() - _dragged;
        _dragged = event->position();
        repaintPicture();
        return;
    }
    if (_preview == nullptr || _preview->glyphs().empty())
        return;
    const QPointF place = transform().inverted().map(event->position());
    const auto& cells = _preview->glyphs();
    const auto cell =
        std::find_if(cells.begin(), cells.end(), [&](const GlyphCell& c) { return c.place.contains(place); });
    Q_EMIT glyphHovered(cell == cells.end() ? nullptr : &*cell);
}

} // namespace zelk
