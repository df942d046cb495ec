// What the program remembers between runs.
#pragma once

#include <QSettings>

#include "RecentFiles.h"

namespace zelk {

/// A group of the program's settings as named values.
class WindowSettings : public ISettings {
public:
    WindowSettings(QSettings& settings, QString group) : _settings(settings), _group(std::move(group)) {}

    std::optional<std::string> value(const std::string& key) const override;
    void setValue(const std::string& key, const std::string& value) override;
    void setNumber(const std::string& key, uint32_t value) override { _settings.setValue(path(key), value); }
    void remove(const std::string& key) override { _settings.remove(path(key)); }

private:
    QString path(const std::string& key) const { return _group + u'/' + QString::fromStdString(key); }

    QSettings& _settings;
    QString _group;
};

} // namespace zelk
