#include "Theme.h"

#include <QApplication>
#include <QPalette>
#include <QProxyStyle>

namespace zelk {

namespace {

class PlainButtons : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* more) const override {
        return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 0 : QProxyStyle::styleHint(hint, option, widget, more);
    }
};

QPalette palette(const QColor& window, const QColor& base, const QColor& text, const QColor& faint) {
    QPalette colors(text, window, window.lighter(130), window.darker(150), window.darker(120), text, base);
    colors.setColor(QPalette::BrightText, Qt::white);
    colors.setColor(QPalette::AlternateBase, window);
    colors.setColor(QPalette::ToolTipBase, base);
    colors.setColor(QPalette::ToolTipText, text);
    colors.setColor(QPalette::PlaceholderText, faint);
    colors.setColor(QPalette::Highlight, QColor(0x2A, 0x6D, 0xB8));
    colors.setColor(QPalette::HighlightedText, Qt::white);
    colors.setColor(QPalette::Link, QColor(0x4A, 0x90, 0xD9));
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        colors.setColor(QPalette::Disabled, role, faint);
    return colors;
}

} // namespace

void setPlainButtons() { QApplication::setStyle(new PlainButtons); }

void applyTheme(Theme theme) {
    switch (theme) {
    case Theme::system: QApplication::setPalette(QPalette()); break;
    case Theme::light:
        QApplication::setPalette(palette(QColor(0xEF, 0xEF, 0xEF), Qt::white, QColor(0x20, 0x20, 0x20), Qt::gray));
        break;
    case Theme::dark:
        QApplication::setPalette(palette(QColor(0x2D, 0x2D, 0x30), QColor(0x1F, 0x1F, 0x22), QColor(0xE6, 0xE6, 0xE6),
                                         QColor(0x80, 0x80, 0x84)));
        break;
    }
}

} // namespace zelk
