#include "SettingsDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontComboBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QLineEdit>
#include <QSpinBox>

#include "FileTypes.h"

namespace zelk {

namespace {

const QString fontKey = QStringLiteral("Text/font"), sizeKey = QStringLiteral("Text/size"),
              tabKey = QStringLiteral("Text/tabWidth"), wrapKey = QStringLiteral("Text/wrap"),
              copiesKey = QStringLiteral("Recovery/copies"), backupsKey = QStringLiteral("Recovery/backups"),
              playerKey = QStringLiteral("Player/kind"), commandKey = QStringLiteral("Player/command");
constexpr int smallest = 6, biggest = 72, widestTab = 16;

const QString ownPlayer = QStringLiteral("ruffle"), programPlayer = QStringLiteral("command"),
              noPlayer = QStringLiteral("none");

QSpinBox* numberField(QWidget* parent, int least, int most, int value) {
    auto* field = new QSpinBox(parent);
    field->setRange(least, most);
    field->setValue(value);
    return field;
}

QCheckBox* tick(QWidget* parent, const QString& text, bool isOn) {
    auto* box = new QCheckBox(text, parent);
    box->setChecked(isOn);
    return box;
}

QComboBox* choice(QWidget* parent, const QStringList& texts, int chosen) {
    auto* box = new QComboBox(parent);
    box->addItems(texts);
    box->setCurrentIndex(chosen);
    return box;
}

} // namespace

TextEditorView::Look textLook(const QSettings& settings) {
    TextEditorView::Look look;
    look.family = settings.value(fontKey).toString();
    const int size = settings.value(sizeKey).toInt(), tab = settings.value(tabKey).toInt();
    look.size = size == 0 ? 0 : std::clamp(size, smallest, biggest);
    look.tabWidth = tab == 0 ? look.tabWidth : std::clamp(tab, 1, widestTab);
    look.wraps = settings.value(wrapKey).toBool();
    return look;
}

bool keepsBackups(const QSettings& settings) { return settings.value(backupsKey, true).toBool(); }

void keepTextLook(QSettings& settings, const TextEditorView::Look& look) {
    settings.setValue(fontKey, look.family);
    settings.setValue(sizeKey, look.size);
    settings.setValue(tabKey, look.tabWidth);
    settings.setValue(wrapKey, look.wraps);
}

SettingsDlg::SettingsDlg(const QSettings& settings, int theme, bool fullForm, bool hasOwnPlayer, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(tr("Settings"));
    const TextEditorView::Look look = textLook(settings);
    const QFont usual = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    _form = choice(this, {tr("Classic"), tr("Full")}, fullForm ? 1 : 0);
    _theme = choice(this, {tr("System"), tr("Light"), tr("Dark")}, theme);
    _font = new QFontComboBox(this);
    _font->setFontFilters(QFontComboBox::MonospacedFonts);
    _font->setCurrentFont(look.family.isEmpty() ? usual : QFont(look.family));
    _size = numberField(this, smallest, biggest, look.size > 0 ? look.size : std::max(10, usual.pointSize()));
    _size->setSuffix(tr(" pt"));
    _tabWidth = numberField(this, 1, widestTab, look.tabWidth);
    _wraps = tick(this, tr("&Break long lines at the edge of the window"), look.wraps);
    _player = choice(this, {tr("A program"), tr("None")}, 1);
    _player->setItemData(0, programPlayer);
    _player->setItemData(1, noPlayer);
    if (hasOwnPlayer)
        _player->insertItem(0, tr("Built in"), ownPlayer);
    if (const int kind = _player->findData(settings.value(playerKey, ownPlayer)); kind >= 0)
        _player->setCurrentIndex(kind);
    _command = new QLineEdit(settings.value(commandKey).toString(), this);
    _copies = tick(this, tr("&Keep copies of unsaved changes for the case of a crash"),
                   settings.value(copiesKey, true).toBool());
    _copies->setToolTip(tr("From the next start on."));
    _backups = tick(this, tr("Keep a b&ackup of each file as it was before its first save"), keepsBackups(settings));
    _backups->setToolTip(tr("As NAME.swf.bak beside the file. A version that another program made since, and that is "
                            "saved over, becomes NAME.swf.2.bak."));
    const auto enableCommand = [this] { _command->setEnabled(_player->currentData() == programPlayer); };
    connect(_player, &QComboBox::currentIndexChanged, _command, enableCommand);
    enableCommand();

    auto* layout = new QFormLayout(this);
    layout->addRow(tr("&Form of movies:"), _form);
    layout->addRow(tr("&Theme:"), _theme);
    layout->addRow(tr("F&ont of texts:"), _font);
    layout->addRow(tr("&Size:"), _size);
    layout->addRow(tr("Tab &width:"), _tabWidth);
    layout->addRow(QString(), _wraps);
    layout->addRow(tr("&Player:"), _player);
    layout->addRow(tr("&Command:"), _command);
    layout->addRow(QString(), _copies);
    layout->addRow(QString(), _backups);
    if (canSetFileTypes()) {
        _types = tick(this, tr("Offer Zelk for &movies in the file manager"), hasFileTypes());
        layout->addRow(QString(), _types);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addRow(buttons);
    setMinimumWidth(420);
}

int SettingsDlg::theme() const { return _theme->currentIndex(); }

bool SettingsDlg::fullForm() const { return _form->currentIndex() == 1; }

// What was not touched stays the system's.
void SettingsDlg::keepIn(QSettings& settings) const {
    const QFont usual = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    TextEditorView::Look look;
    look.family = _font->currentFont().family() == usual.family() ? QString() : _font->currentFont().family();
    look.size = _size->value() == std::max(10, usual.pointSize()) ? 0 : _size->value();
    look.tabWidth = _tabWidth->value();
    look.wraps = _wraps->isChecked();
    keepTextLook(settings, look);
    settings.setValue(playerKey, _player->currentData());
    settings.setValue(commandKey, _command->text());
    settings.setValue(copiesKey, _copies->isChecked());
    settings.setValue(backupsKey, _backups->isChecked());
    if (_types != nullptr && _types->isChecked() != hasFileTypes())
        setFileTypes(_types->isChecked());
}

} // namespace zelk
