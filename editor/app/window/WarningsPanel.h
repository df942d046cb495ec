// The warnings of the last conversion, in a list that jumps to their places.
#pragma once

#include <QDockWidget>

#include "Document.h"

class QListWidget;

namespace zelk {

class WarningsPanel : public QDockWidget {
    Q_OBJECT
public:
    explicit WarningsPanel(QWidget* parent = nullptr);

    void setWarnings(const DocumentWarnings& warnings);
    /// Shows the list and gives it the keyboard.
    void open();

Q_SIGNALS:
    void placeChosen(uint32_t row, uint32_t column);

private:
    QListWidget* _list;
    DocumentWarnings _warnings;
};

} // namespace zelk
