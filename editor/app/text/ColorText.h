// Colours as attributes have them.
#pragma once

#include <QColor>

#include <optional>
#include <string>
#include <string_view>

namespace zelk {

/// Red, green, blue, alpha, two hexadecimal digits each, without leading zeros.
std::string colorText(const QColor& color);
/// None when the text is no colour.
std::optional<QColor> colorFromText(std::string_view text);

} // namespace zelk
