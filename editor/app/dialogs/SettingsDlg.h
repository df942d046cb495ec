// Asks how the editor is to look and what it is to keep.
#pragma once

#include <QDialog>
#include <QSettings>

#include "TextEditorView.h"

class QCheckBox;
class QComboBox;
class QFontComboBox;
class QLineEdit;
class QSpinBox;

namespace zelk {

/// What the settings say of texts.
TextEditorView::Look textLook(const QSettings& settings);
/// Whether a file that is saved over is kept as it was.
bool keepsBackups(const QSettings& settings);
void keepTextLook(QSettings& settings, const TextEditorView::Look& look);

class SettingsDlg : public QDialog {
    Q_OBJECT
public:
    /// `theme` counts from 0: the system's, light, dark. The player that is built in is offered where there is one.
    SettingsDlg(const QSettings& settings, int theme, bool fullForm, bool hasOwnPlayer, QWidget* parent);

    int theme() const;
    bool fullForm() const;
    /// All that is not said by the above.
    void keepIn(QSettings& settings) const;

private:
    QComboBox *_form, *_theme, *_player;
    QFontComboBox* _font;
    QSpinBox *_size, *_tabWidth;
    QCheckBox *_wraps, *_copies, *_backups;
    QCheckBox* _types = nullptr; // where the program can set them
    QLineEdit* _command;
};

} // namespace zelk
