#include "NumberField.h"

namespace zelk {

NumberField::NumberField(const std::string& text, double least, double most, int decimals, QWidget* parent)
    : QDoubleSpinBox(parent), _text(text) {
    const QString shown = QString::fromStdString(text);
    bool isNumber = false;
    const double value = shown.toDouble(&isNumber);
    QLocale plain = locale();
    plain.setNumberOptions(QLocale::OmitGroupSeparator);
    setLocale(plain);
    setDecimals(decimals);
    if (isNumber && value >= least && value <= most) {
        setRange(least, most);
        setValue(value);
    } else {
        setRange(least - 1, most);
        setSpecialValueText(shown);
        setValue(least - 1);
    }
    _before = this->value();
}

std::string NumberField::answer() const {
    if (value() == _before)
        return _text;
    return QString::number(value(), 'g', 12).toStdString();
}

QString NumberField::textFromValue(double value) const { return locale().toString(value, 'g', 12); }

} // namespace zelk
