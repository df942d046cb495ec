#include "FilterKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace zelk {

FilterKeys::FilterKeys(QWidget& field, QWidget& list) : QObject(&field), _list(list) { field.installEventFilter(this); }

bool FilterKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown) {
            QCoreApplication::sendEvent(&_list, event);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace zelk
