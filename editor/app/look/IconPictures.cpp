// Where there is no Qt SVG: packaging/windows/icons.sh has made pictures of the drawings.
#include <QFile>
#include <QPainter>

#include "IconDrawing.h"

namespace zelk {

namespace {

constexpr int sizes[] = {16, 20, 24, 32, 40, 48, 64}; // as icons.sh makes them

QString pictureName(const QString& name, int size) { return QStringLiteral(":/icons/%1-%2.png").arg(name).arg(size); }

} // namespace

IconDrawing::IconDrawing(const QString& name) {
    if (QFile::exists(pictureName(name, sizes[0])))
        _source = name.toUtf8();
}

// The next bigger picture, made smaller; its shape is what counts.
void IconDrawing::paint(QPainter& painter, const QRect& rect, const QColor& color) const {
    const double wanted = rect.width() * painter.device()->devicePixelRatioF();
    const auto* size = std::ranges::find_if(sizes, [&](int size) { return size >= wanted; });
    size = size == std::end(sizes) ? size - 1 : size;
    QImage picture =
        QImage(pictureName(QString::fromUtf8(_source), *size)).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter ink(&picture);
    ink.setCompositionMode(QPainter::CompositionMode_SourceIn);
    ink.fillRect(picture.rect(), color);
    ink.end();
    const QPainter::RenderHints hints = painter.renderHints();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(rect, picture);
    painter.setRenderHints(hints);
}

QIcon programIcon() {
    QIcon icon;
    for (const int size : sizes)
        icon.addFile(pictureName(QStringLiteral("zelk"), size));
    return icon;
}

} // namespace zelk
