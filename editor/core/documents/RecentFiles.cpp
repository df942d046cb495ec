#include "RecentFiles.h"

#include <algorithm>
#include <charconv>

namespace zelk {

namespace {

constexpr const char* countKey = "DocumentCount";

// UTF-8: bytes that begin no character are not counted.
bool isTooLong(std::string_view name) {
    const auto begins = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
    return static_cast<size_t>(std::ranges::count_if(name, begins)) > FilesRecentList::longestName;
}

std::string entryKey(size_t number) { return "Document" + std::to_string(number); }

uint32_t limitFrom(const std::optional<std::string>& text) {
    uint32_t limit = FilesRecentList::most;
    if (text)
        std::from_chars(text->data(), text->data() + text->size(), limit);
    return std::clamp(limit, FilesRecentList::fewest, FilesRecentList::most);
}

} // namespace

FilesRecentList::FilesRecentList(ISettings& settings)
    : _settings(settings), _limit(limitFrom(settings.value(countKey))) {
    for (size_t i = 1; i <= _limit; ++i) {
        const std::optional<std::string> name = settings.value(entryKey(i));
        if (name && !name->empty() && !isTooLong(*name))
            _files.push_back(*name);
    }
}

void FilesRecentList::add(const std::string& fileName) {
    if (isTooLong(fileName))
        return;
    std::erase(_files, fileName);
    _files.insert(_files.begin(), fileName);
    if (_files.size() > _limit)
        _files.resize(_limit);
    save();
}

void FilesRecentList::remove(const std::string& fileName) {
    std::erase(_files, fileName);
    save();
}

void FilesRecentList::save() {
    _settings.setNumber(countKey, _limit);
    for (size_t i = _files.size(); i >= 1; --i)
        _settings.setValue(entryKey(i), _files[i - 1]);
    for (size_t i = _files.size() + 1; i <= most; ++i)
        _settings.remove(entryKey(i));
}

} // namespace zelk
