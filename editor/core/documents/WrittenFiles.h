// Which files Zelk wrote last, and what: such a version needs no backup when it is written again.
#pragma once

#include <deque>
#include <filesystem>
#include <optional>
#include <string>

#include "FileStamp.h"

namespace zelk {

/// Remembers the latest files over all runs. Lives on the GUI thread. A list that is lost or cannot be written costs a
/// backup too many and is no error.
class WrittenFiles {
public:
    static constexpr size_t most = 1000;

    /// From now on the list is kept in a file, with what other runs put there.
    void keepIn(std::filesystem::path list) { _list = std::move(list); }

    void add(const std::string& fileName, const FileStamp& stamp);
    std::optional<FileStamp> find(const std::string& fileName);

private:
    struct Entry {
        std::string fileName;
        FileStamp stamp;
    };
    void read();

    std::filesystem::path _list; // empty: nothing outlives this run
    std::deque<Entry> _entries;  // the latest first
};

} // namespace zelk
