// Shows a drawing on a chequered ground, fitted or zoomed.
#pragma once

#include <QFutureWatcher>
#include <QImage>
#include <QWidget>
#include <atomic>
#include <memory>

#include "TagPreview.h"

namespace zelk {

/// Paints beside the GUI thread; until that is done, the picture before is moved and enlarged.
class PreviewCanvas : public QWidget {
    Q_OBJECT
public:
    explicit PreviewCanvas(QWidget* parent = nullptr);
    ~PreviewCanvas() override { dropPicture(); }

    /// Null for nothing. A new preview is fitted unless `keepsView`.
    void setPreview(std::shared_ptr<const TagPreview> preview, bool keepsView = false);
    /// Of a morph shape, from 0 to 1.
    void setRatio(double ratio);
    /// How far a sound has been played, from 0 to 1; below 0 for not at all.
    void setPlayed(double played);
    bool isPainting() const { return _isPainting; }
    /// 1 for the drawing as large as it fits.
    void zoomBy(double factor, const QPointF& fixed);
    QSize sizeHint() const override { return {260, 260}; }

Q_SIGNALS:
    /// Of a glyph table; null when there is none under the mouse.
    void glyphHovered(const zelk::GlyphCell* cell);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    struct Picture {
        QImage image; // null when it has been given up
        QTransform transform;
    };

    QRectF area() const;
    /// From twips to pixels of the widget.
    QTransform transform() const;
    QPixmap chequer() const;
    void paintPicture(QPainter& painter) const;
    void paintMarks(QPainter& painter) const;
    void showAll();
    void repaintPicture();
    void dropPicture();
    void takePicture();

    std::shared_ptr<const TagPreview> _preview;
    double _ratio = 0, _played = -1;
    double _zoom = 1;
    QPointF _offset; // pixels from the middle
    QPointF _dragged;
    Picture _picture;
    QFutureWatcher<Picture> _painting;
    std::shared_ptr<std::atomic<bool>> _isDropped; // what is being painted
    bool _isPainting = false;                      // and has not been taken
    bool _isOutOfDate = false;                     // as soon as it is painted
};

} // namespace zelk
