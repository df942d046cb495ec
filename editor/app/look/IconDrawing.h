// How the drawings in icons/ come onto the screen: as what they are, or as pictures that the build made of them.
#pragma once

#include <QIcon>

class QPainter;

namespace zelk {

/// The drawing icons/NAME.svg, in one colour.
class IconDrawing {
public:
    explicit IconDrawing(const QString& name);

    bool isNull() const { return _source.isEmpty(); }
    void paint(QPainter& painter, const QRect& rect, const QColor& color) const;

private:
    QByteArray _source; // the drawing; where there are pictures, the start of their names
};

/// The program's sign, in its own colours.
QIcon programIcon();

} // namespace zelk
