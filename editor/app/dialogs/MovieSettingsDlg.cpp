#include "MovieSettingsDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>

#include "NumberField.h"

namespace zelk {

namespace {

constexpr int mostPixels = 107'374'182; // in twips they fit into the header
constexpr double mostFrames = 255.99609375;

// A way on the stage, in pixels and twips.
NumberField* pixels(const std::string& text, QWidget* parent) {
    auto* field = new NumberField(text, 0, mostPixels, 0, parent);
    const auto showTwips = [field](double value) {
        field->setSuffix(value < 0 ? QString() : QObject::tr(" px = %1 twips").arg(value * 20, 0, 'f', 0));
    };
    QObject::connect(field, &QDoubleSpinBox::valueChanged, field, showTwips);
    showTwips(field->value());
    return field;
}

} // namespace

MovieSettingsDlg::MovieSettingsDlg(const MovieSettings& current, QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("Movie settings"));
    auto* layout = new QFormLayout(this);
    _version = addField(tr("SWF version:"), new NumberField(current.version, 1, 255, 0, this));
    _width = addField(tr("Width:"), pixels(current.width, this));
    _height = addField(tr("Height:"), pixels(current.height, this));
    _frameRate = addField(tr("Frame rate:"), new NumberField(current.frameRate, 0, mostFrames, 4, this));
    _frameRate->setSuffix(tr(" per second"));
    _compressed = new QCheckBox(tr("Compressed"), this);
    _compressed->setChecked(current.isCompressed);
    layout->addRow(QString(), _compressed);
    _form = new QComboBox(this);
    _form->addItem(tr("Classic"));
    _form->addItem(tr("Full"));
    _form->setCurrentIndex(current.fullForm ? 1 : 0);
    _form->setToolTip(
        tr("Full: every value as players read it. Changing the form compiles the movie and reads it again."));
    layout->addRow(tr("Form:"), _form);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addRow(buttons);
    setMinimumWidth(340);
    _version->selectAll();
    _version->setFocus();
}

NumberField* MovieSettingsDlg::addField(const QString& label, NumberField* field) {
    static_cast<QFormLayout*>(layout())->addRow(label, field);
    return field;
}

MovieSettings MovieSettingsDlg::settings() const {
    return {_version->answer(),   _width->answer(),         _height->answer(),
            _frameRate->answer(), _compressed->isChecked(), _form->currentIndex() == 1};
}

} // namespace zelk
