// A list that is gone through by keys while the field that filters it has the focus.
#pragma once

#include <QWidget>

namespace zelk {

/// Hands Up, Down and the page keys that are pressed in `field` to `list`. Lives as long as the field.
class FilterKeys : public QObject {
    Q_OBJECT
public:
    FilterKeys(QWidget& field, QWidget& list);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& _list;
};

} // namespace zelk
