// Asks for a row of the text.
#pragma once

#include <QDialog>

class QSpinBox;

namespace zelk {

class GotoLineDlg : public QDialog {
    Q_OBJECT
public:
    /// Rows count from 1.
    GotoLineDlg(uint32_t current, uint32_t rows, QWidget* parent);
    uint32_t line() const;

private:
    QSpinBox* _line;
};

} // namespace zelk
