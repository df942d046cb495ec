#include "WindowSettings.h"

namespace zelk {

std::optional<std::string> WindowSettings::value(const std::string& key) const {
    const QVariant value = _settings.value(path(key));
    return value.isValid() ? std::optional(value.toString().toStdString()) : std::nullopt;
}

void WindowSettings::setValue(const std::string& key, const std::string& value) {
    _settings.setValue(path(key), QString::fromStdString(value));
}

} // namespace zelk
