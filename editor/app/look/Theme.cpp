#include "Theme.h"

#include <QApplication>
#include <QPalette>
#include <QProxyStyle>
#include <QScreen>
#include <QWidget>

namespace zelk {

namespace {

class PlainButtons : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* more) const override {
        return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 0 : QProxyStyle::styleHint(hint, option, widget, more);
    }
};

struct Colors {
    QColor window, base, text, faint, hint, link;
};

QPalette palette(const Colors& theme) {
    const auto& [window, base, text, faint, hint, link] = theme;
    QPalette colors(text, window, window.lighter(130), window.darker(150), window.darker(120), text, base);
    colors.setColor(QPalette::BrightText, Qt::white);
    colors.setColor(QPalette::AlternateBase, window);
    colors.setColor(QPalette::ToolTipBase, base);
    colors.setColor(QPalette::ToolTipText, text);
    colors.setColor(QPalette::PlaceholderText, hint);
    colors.setColor(QPalette::Highlight, QColor(0x2A, 0x6D, 0xB8));
    colors.setColor(QPalette::HighlightedText, Qt::white);
    colors.setColor(QPalette::Link, link);
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        colors.setColor(QPalette::Disabled, role, faint);
    return colors;
}

} // namespace

void setPlainButtons() { QApplication::setStyle(new PlainButtons); }

void resizeOnScreen(QWidget& window, const QSize& wanted) {
    constexpr QSize frame(16, 48);
    window.resize(wanted.boundedTo(window.screen()->availableSize() - frame));
}

void applyTheme(Theme theme) {
    switch (theme) {
    case Theme::system: QApplication::setPalette(QPalette()); break;
    case Theme::light:
        QApplication::setPalette(palette({0xFFEFEFEF, Qt::white, 0xFF202020, Qt::gray, 0xFF66666A, 0xFF1F66B0}));
        break;
    case Theme::dark:
        QApplication::setPalette(palette({0xFF2D2D30, 0xFF1F1F22, 0xFFE6E6E6, 0xFF808084, 0xFFA0A0A4, 0xFF6AAEF0}));
        break;
    }
}

} // namespace zelk
