#include "GotoLineDlg.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QSpinBox>

namespace zelk {

GotoLineDlg::GotoLineDlg(uint32_t current, uint32_t rows, QWidget* parent)
    : QDialog(parent), _line(new QSpinBox(this)) {
    setWindowTitle(tr("Go To Line"));
    _line->setRange(1, static_cast<int>(rows));
    _line->setValue(static_cast<int>(current));
    _line->setCorrectionMode(QAbstractSpinBox::CorrectToNearestValue);
    _line->selectAll();
    _line->setFocus();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QFormLayout(this);
    layout->addRow(tr("Line:"), _line);
    layout->addRow(new QLabel(tr("From 1 to %1").arg(rows), this));
    layout->addRow(buttons);
    setMinimumWidth(260);
}

uint32_t GotoLineDlg::line() const { return static_cast<uint32_t>(_line->value()); }

} // namespace zelk
