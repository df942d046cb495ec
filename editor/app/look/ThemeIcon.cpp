#include "ThemeIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

#include "IconDrawing.h"

namespace zelk {

namespace {

class ThemeIconEngine : public QIconEngine {
public:
    explicit ThemeIconEngine(IconDrawing drawing) : _drawing(std::move(drawing)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::WindowText;
        _drawing.paint(*painter, rect, QGuiApplication::palette().color(group, role));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal) override {
        return pixmap(size, mode, state);
    }

    QIconEngine* clone() const override { return new ThemeIconEngine(_drawing); }

private:
    IconDrawing _drawing;
};

} // namespace

QIcon themeIcon(const QString& name) {
    const IconDrawing drawing(name);
    return drawing.isNull() ? QIcon() : QIcon(new ThemeIconEngine(drawing));
}

} // namespace zelk
