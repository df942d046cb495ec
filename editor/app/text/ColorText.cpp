#include "ColorText.h"

#include <charconv>

namespace zelk {

std::string colorText(const QColor& color) {
    const uint32_t value = static_cast<uint32_t>(color.red()) << 24 | static_cast<uint32_t>(color.green()) << 16 |
                           static_cast<uint32_t>(color.blue()) << 8 | static_cast<uint32_t>(color.alpha());
    char digits[8];
    return {digits, std::to_chars(digits, std::end(digits), value, 16).ptr};
}

std::optional<QColor> colorFromText(std::string_view text) {
    uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return QColor(static_cast<int>(value >> 24), static_cast<int>(value >> 16 & 255),
                  static_cast<int>(value >> 8 & 255), static_cast<int>(value & 255));
}

} // namespace zelk
