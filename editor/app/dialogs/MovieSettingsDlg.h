// Asks for the settings of a movie.
#pragma once

#include <QDialog>

#include "MovieSettings.h"

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace zelk {

class MovieSettingsDlg : public QDialog {
    Q_OBJECT
public:
    MovieSettingsDlg(const MovieSettings& current, QWidget* parent);
    MovieSettings settings() const;

private:
    QLineEdit* addField(const QString& label, const std::string& text);

    QLineEdit *_version, *_width, *_height, *_frameRate;
    QCheckBox* _compressed;
    QComboBox* _form;
};

} // namespace zelk
