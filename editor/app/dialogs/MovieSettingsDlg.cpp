#include "MovieSettingsDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>

namespace zelk {

MovieSettingsDlg::MovieSettingsDlg(const MovieSettings& current, QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("Movie settings"));
    auto* layout = new QFormLayout(this);
    _version = addField(tr("SWF version:"), current.version);
    _width = addField(tr("Width:"), current.width);
    _height = addField(tr("Height:"), current.height);
    _frameRate = addField(tr("Frame rate:"), current.frameRate);
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
    setMinimumWidth(300);
    _version->selectAll();
    _version->setFocus();
}

QLineEdit* MovieSettingsDlg::addField(const QString& label, const std::string& text) {
    auto* field = new QLineEdit(QString::fromStdString(text), this);
    static_cast<QFormLayout*>(layout())->addRow(label, field);
    return field;
}

MovieSettings MovieSettingsDlg::settings() const {
    const auto text = [](const QLineEdit* field) { return field->text().trimmed().toStdString(); };
    return {text(_version),
            text(_width),
            text(_height),
            text(_frameRate),
            _compressed->isChecked(),
            _form->currentIndex() == 1};
}

} // namespace zelk
