#include "IconDrawing.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace zelk {

IconDrawing::IconDrawing(const QString& name) {
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (file.open(QIODevice::ReadOnly))
        _source = file.readAll();
}

void IconDrawing::paint(QPainter& painter, const QRect& rect, const QColor& color) const {
    QByteArray drawing = _source;
    drawing.replace("currentColor", color.name().toLatin1());
    QSvgRenderer(drawing).render(&painter, rect);
}

QIcon programIcon() { return QIcon(QStringLiteral(":/icons/zelk.svg")); }

} // namespace zelk
