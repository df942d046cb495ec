// The files that were opened last, kept between runs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zelk {

/// Named values that outlive the program.
class ISettings {
public:
    virtual ~ISettings() = default;
    virtual std::optional<std::string> value(const std::string& key) const = 0;
    virtual void setValue(const std::string& key, const std::string& value) = 0;
    virtual void setNumber(const std::string& key, uint32_t value) = 0;
    virtual void remove(const std::string& key) = 0;
};

class IFileHistory {
public:
    virtual ~IFileHistory() = default;
    /// The latest first.
    virtual const std::vector<std::string>& files() const = 0;
    /// Puts a file first.
    virtual void add(const std::string& fileName) = 0;
    virtual void remove(const std::string& fileName) = 0;
};

/// Keeps "DocumentCount", the most entries there may be, and "Document1", "Document2" and so on. Saved at every change.
class FilesRecentList : public IFileHistory {
public:
    static constexpr uint32_t fewest = 2, most = 16; ///< bounds of "DocumentCount"
    static constexpr size_t longestName = 259;       ///< in characters; longer ones are not kept

    explicit FilesRecentList(ISettings& settings);

    const std::vector<std::string>& files() const override { return _files; }
    void add(const std::string& fileName) override;
    void remove(const std::string& fileName) override;

private:
    void save();

    ISettings& _settings;
    uint32_t _limit;
    std::vector<std::string> _files;
};

} // namespace zelk
