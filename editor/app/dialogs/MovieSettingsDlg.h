// Asks for the settings of a movie.
#pragma once

#include <QDialog>

#include "MovieSettings.h"

class QCheckBox;
class QComboBox;

namespace zelk {

class NumberField;

class MovieSettingsDlg : public QDialog {
    Q_OBJECT
public:
    MovieSettingsDlg(const MovieSettings& current, QWidget* parent);
    MovieSettings settings() const;

private:
    NumberField* addField(const QString& label, NumberField* field);

    NumberField *_version, *_width, *_height, *_frameRate;
    QCheckBox* _compressed;
    QComboBox* _form;
};

} // namespace zelk
