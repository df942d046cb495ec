// What all windows have in common: light, dark, or what the system says; buttons; sizes.
#pragma once

#include <QSize>
#include <QString>

class QWidget;

namespace zelk {

enum class Theme : uint8_t { system, light, dark };

/// The style of the desktop, with words alone on the buttons of dialogs and, where it is Qt's own, a frame around what
/// has the keyboard.
void applyStyle();

/// Makes a window that is not shown yet this big, or as big as its screen and a frame allow.
void resizeOnScreen(QWidget& window, const QSize& wanted);

/// Gives all windows the colours of a theme.
void applyTheme(Theme theme);

} // namespace zelk
