#include "Theme.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QScreen>
#include <QStyleOption>
#include <QWidget>

namespace zelk {

namespace {

// Qt's own style shows faintly where the keyboard is, on dark ground neither that nor boxes to tick, and nothing in
// empty lists.
class ProgramStyle : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* more) const override {
        return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 0 : QProxyStyle::styleHint(hint, option, widget, more);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        if (element != PE_FrameFocusRect || !_isQtsOwn) {
            QProxyStyle::drawPrimitive(element, option, painter, widget);
            if (_isQtsOwn && (element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton))
                drawTickFrame(*option, element == PE_IndicatorRadioButton, *painter);
            return;
        }
        if (!option->state.testFlag(State_KeyboardFocusChange))
            return;
        const auto* focus = qstyleoption_cast<const QStyleOptionFocusRect*>(option);
        const bool hasGround = focus != nullptr && focus->backgroundColor.isValid();
        drawFocus(*option, hasGround ? focus->backgroundColor : option->palette.color(QPalette::Window), option->rect,
                  2, *painter);
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        QProxyStyle::drawControl(element, option, painter, widget);
        if (!_isQtsOwn || !option->state.testFlag(State_HasFocus))
            return;
        const bool isByKeys = option->state.testFlag(State_KeyboardFocusChange);
        if (element == CE_ShapedFrame && showsInFrame(widget))
            drawFocus(*option, option->palette.color(QPalette::Base), option->rect, 0, *painter);
        else if (isByKeys && (element == CE_PushButton || element == CE_TabBarTabLabel))
            drawFocus(*option, option->palette.color(QPalette::Button), option->rect.adjusted(3, 3, -3, -3), 2,
                      *painter);
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        if (_isQtsOwn && control == CC_ToolButton && option->state.testFlag(State_HasFocus) &&
            option->state.testFlag(State_KeyboardFocusChange))
            drawFocus(*option, option->palette.color(QPalette::Button), option->rect, 2, *painter);
    }

private:
    // Where something is typed the caret shows it.
    static bool showsInFrame(const QWidget* widget) {
        return qobject_cast<const QAbstractItemView*>(widget) != nullptr ||
               (qobject_cast<const QAbstractScrollArea*>(widget) != nullptr &&
                !widget->testAttribute(Qt::WA_InputMethodEnabled));
    }

    // A dark theme's is as dark as the ground.
    static void drawTickFrame(const QStyleOption& option, bool isRound, QPainter& painter) {
        if (option.palette.color(QPalette::Base).lightness() >= 128)
            return;
        painter.save();
        painter.setBrush(Qt::NoBrush);
        painter.setPen(option.palette.color(QPalette::PlaceholderText));
        const QRect frame = option.rect.adjusted(0, 0, -1, -1);
        if (isRound) {
            painter.setRenderHint(QPainter::Antialiasing);
            painter.drawEllipse(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5));
        } else {
            painter.drawRect(frame);
        }
        painter.restore();
    }

    static void drawFocus(const QStyleOption& option, const QColor& ground, const QRect& rect, double radius,
                          QPainter& painter) {
        const QColor highlight = option.palette.color(QPalette::Highlight);
        const bool isDark = ground.lightness() < 128;
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(ground == highlight ? option.palette.color(QPalette::HighlightedText)
                       : isDark            ? highlight.lighter(160)
                                           : highlight.darker(110));
        painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
        painter.restore();
    }

    const bool _isQtsOwn = baseStyle()->name() == u"fusion";
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

void applyStyle() { QApplication::setStyle(new ProgramStyle); }

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
