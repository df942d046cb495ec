// Light, dark, or what the system says.
#pragma once

#include <QString>

namespace zelk {

enum class Theme : uint8_t { system, light, dark };

/// Gives all windows the colours of a theme.
void applyTheme(Theme theme);

} // namespace zelk
