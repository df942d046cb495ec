// Light, dark, or what the system says.
#pragma once

#include <QString>

namespace zelk {

enum class Theme : uint8_t { system, light, dark };

/// The style of the desktop, with words alone on the buttons of dialogs.
void setPlainButtons();

/// Gives all windows the colours of a theme.
void applyTheme(Theme theme);

} // namespace zelk
