#include "NoticeBar.h"

#include <QAccessible>
#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QStyle>
#include <QVBoxLayout>

namespace zelk {

namespace {

QColor mix(const QColor& a, const QColor& b, double part) {
    const auto channel = [part](int from, int to) { return static_cast<int>(from + (to - from) * part); };
    return {channel(a.red(), b.red()), channel(a.green(), b.green()), channel(a.blue(), b.blue())};
}

QLabel* wrappedLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

NoticeBar::NoticeBar(QWidget* parent)
    : QFrame(parent), _icon(new QLabel(this)), _text(wrappedLabel(this)), _details(wrappedLabel(this)),
      _buttons(new QHBoxLayout) {
    setAutoFillBackground(true);
    setFocusPolicy(Qt::NoFocus);
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
    _icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size));
    auto* words = new QVBoxLayout;
    words->setSpacing(1);
    words->addWidget(_text);
    words->addWidget(_details);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 5, 8, 5);
    layout->addWidget(_icon, 0, Qt::AlignTop);
    layout->addLayout(words, 1);
    layout->addLayout(_buttons);
    setColors();
}

void NoticeBar::setText(const QString& text, const QString& details) {
    if (text == this->text() && details == this->details())
        return;
    _text->setText(text);
    _details->setText(details);
    _details->setVisible(!details.isEmpty());
    setAccessibleName(text);
    setAccessibleDescription(details);
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

QString NoticeBar::text() const { return _text->text(); }

QString NoticeBar::details() const { return _details->text(); }

QPushButton* NoticeBar::addButton(const QString& text) {
    auto* button = new QPushButton(text, this);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAutoDefault(false);
    _buttons->addWidget(button);
    return button;
}

void NoticeBar::changeEvent(QEvent* event) {
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !_setsColors)
        setColors();
}

// The window's own colour with some amber, so that its text colour stays readable in light and dark.
void NoticeBar::setColors() {
    const QScopedValueRollback guard(_setsColors, true);
    const QPalette theme = QApplication::palette();
    const QColor window = theme.color(QPalette::Window), text = theme.color(QPalette::WindowText);
    QPalette colors;
    colors.setColor(QPalette::Window, mix(window, QColor(0xF0, 0xA0, 0x10), 0.25));
    setPalette(colors);
    QPalette fainter;
    fainter.setColor(QPalette::WindowText, mix(text, window, 0.25));
    _details->setPalette(fainter);
}

} // namespace zelk
