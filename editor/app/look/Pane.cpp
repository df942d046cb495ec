#include "Pane.h"

#include <QApplication>
#include <QKeyEvent>

namespace zelk {

Pane::Pane(const QString& title, QWidget* parent) : QDockWidget(title, parent) {
    // To Qt it is still visible when another one is in front, and Tab would lead into it.
    connect(this, &QDockWidget::visibilityChanged, this, [this](bool isShown) {
        const bool isBehind = !isShown && isVisible() && !window()->isMinimized();
        if (widget() != nullptr)
            widget()->setEnabled(!isBehind);
    });
}

void Pane::open() {
    show();
    raise();
    widget()->setEnabled(true);
}

void Pane::toggle() {
    if (isVisible() && !visibleRegion().isEmpty())
        leave();
    else
        open();
}

void Pane::leave() {
    const bool hadKeyboard = isAncestorOf(QApplication::focusWidget());
    hide();
    if (hadKeyboard)
        Q_EMIT left();
}

void Pane::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        leave();
    else
        QDockWidget::keyPressEvent(event);
}

} // namespace zelk
