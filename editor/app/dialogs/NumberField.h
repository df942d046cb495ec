// A number in a dialog, with its range and unit.
#pragma once

#include <QDoubleSpinBox>

#include <string>

namespace zelk {

/// A text that is no number of the range is shown as it is, and stays until another number is chosen.
class NumberField : public QDoubleSpinBox {
    Q_OBJECT
public:
    NumberField(const std::string& text, double least, double most, int decimals, QWidget* parent);

    /// What the document gets: the text from before when the number is the same.
    std::string answer() const;

protected:
    QString textFromValue(double value) const override;

private:
    const std::string _text;
    double _before = 0;
};

} // namespace zelk
