#include "WrittenFiles.h"

#include <fstream>
#include <sstream>

#include "SwfException.h"
#include "SwfUtils.h"

namespace zelk {

namespace fs = std::filesystem;

namespace {

// The same file by whatever way to it.
std::string keyOf(const std::string& fileName) {
    std::error_code failure;
    const fs::path path = fs::weakly_canonical(libswf::pathOf(fileName), failure);
    const std::u8string key = path.u8string();
    return failure ? fileName : std::string(key.begin(), key.end());
}

} // namespace

// A line has size, hash, time and whether the time can be relied on, then the name.
void WrittenFiles::read() {
    std::ifstream file(_list, std::ios::binary); // there is none without a name
    std::deque<Entry> entries;
    for (std::string line; entries.size() < most && std::getline(file, line);) {
        std::istringstream fields(line);
        fields.imbue(std::locale::classic());
        Entry entry;
        FileStamp& stamp = entry.stamp;
        if (fields >> stamp.size >> stamp.hash >> stamp.time >> stamp.timeTells && fields.get() == ' ' &&
            std::getline(fields, entry.fileName))
            entries.push_back(std::move(entry));
    }
    if (!entries.empty())
        _entries = std::move(entries);
}

void WrittenFiles::add(const std::string& fileName, const FileStamp& stamp) {
    const std::string key = keyOf(fileName);
    if (key.find('\n') != key.npos)
        return;
    read();
    std::erase_if(_entries, [&](const Entry& entry) { return entry.fileName == key; });
    _entries.push_front({key, stamp});
    if (_entries.size() > most)
        _entries.resize(most);
    if (_list.empty())
        return;
    std::ostringstream text;
    text.imbue(std::locale::classic());
    for (const Entry& e : _entries)
        text << e.stamp.size << ' ' << e.stamp.hash << ' ' << e.stamp.time << ' ' << e.stamp.timeTells << ' '
             << e.fileName << '\n';
    try {
        std::error_code ignored;
        fs::create_directories(_list.parent_path(), ignored);
        const std::u8string name = _list.u8string();
        libswf::writeTextFile({name.begin(), name.end()}, text.str());
    } catch (const libswf::SwfFileException&) { // This run still knows.
    }
}

std::optional<FileStamp> WrittenFiles::find(const std::string& fileName) {
    read();
    const std::string key = keyOf(fileName);
    for (const Entry& entry : _entries) {
        if (entry.fileName == key)
            return entry.stamp;
    }
    return std::nullopt;
}

} // namespace zelk
