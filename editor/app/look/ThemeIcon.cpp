#include "ThemeIcon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

namespace zelk {

namespace {

class ThemeIconEngine : public QIconEngine {
public:
    explicit ThemeIconEngine(QByteArray drawing) : _drawing(std::move(drawing)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::WindowText;
        const QColor color = QGuiApplication::palette().color(group, role);
        QByteArray drawing = _drawing;
        drawing.replace("currentColor", color.name().toLatin1());
        QSvgRenderer(drawing).render(painter, rect);
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
    QByteArray _drawing;
};

} // namespace

QIcon themeIcon(const QString& name) {
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QIcon(new ThemeIconEngine(file.readAll()));
}

} // namespace zelk
