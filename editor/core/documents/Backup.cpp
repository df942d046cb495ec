#include "Backup.h"

#include <algorithm>
#include <charconv>

#include "Exceptions.h"
#include "SwfException.h"
#include "SwfUtils.h"

namespace zelk {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view suffix = ".bak";
constexpr int mostBackups = 999;

std::string backupName(const std::string& fileName, int number) {
    return fileName + (number == 1 ? std::string() : "." + std::to_string(number)) + std::string(suffix);
}

bool isSame(const std::string& backup, const FileStamp& version) {
    return stateOf(backup).size == version.size && stampOf(backup).value_or(FileStamp()).sameContent(version);
}

// The first name that is free; empty when an older backup has the same content.
std::string freeName(const std::string& fileName, const FileStamp& version) {
    for (int number = 1; number <= mostBackups; ++number) {
        const std::string name = backupName(fileName, number);
        std::error_code failure;
        if (fs::symlink_status(libswf::pathOf(name), failure).type() == fs::file_type::not_found)
            return name;
        if (isSame(name, version))
            return {};
    }
    throw FileSaveException(fileName, "There are " + std::to_string(mostBackups) + " backups of it already.");
}

} // namespace

void backUp(const std::string& fileName, std::span<const FileStamp> known) {
    if (stateOf(fileName).size == 0)
        return; // Nothing is lost.
    if (std::ranges::any_of(known,
                            [&](const FileStamp& k) { return lookAgain(k, fileName).change == FileChange::none; }))
        return;
    try {
        const std::string content = libswf::readTextFile(fileName);
        FileStamp version;
        version.setContent(content);
        const std::string name = freeName(fileName, version);
        if (name.empty())
            return;
        libswf::writeTextFile(name, content);
        std::error_code ignored; // A file that others may not read has no backup that they may.
        const fs::path path = libswf::pathOf(fileName);
        fs::permissions(libswf::pathOf(name), fs::status(path, ignored).permissions(), ignored);
    } catch (const libswf::SwfFileException& error) {
        throw FileSaveException(fileName, "No backup can be made, so the file stays as it is: " + error.problem());
    }
}

std::string backedUpName(const std::string& backup) {
    if (!backup.ends_with(suffix))
        return {};
    std::string name = backup.substr(0, backup.size() - suffix.size());
    const size_t dot = name.rfind('.');
    if (dot == name.npos)
        return {};
    int number = 0;
    const char* end = name.data() + name.size();
    if (std::from_chars(name.data() + dot + 1, end, number).ptr == end &&
        backupName(name.substr(0, dot), number) == backup)
        name.resize(dot);
    return name;
}

} // namespace zelk
