// A folder for files that live as long as one operation.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zelk {

/// A new folder "~!" + six random characters in the system's temporary folder, which only this user can enter.
/// It stays with what it holds unless it is removed: what went wrong can be looked at.
class ScratchFolder {
public:
    /// Throws std::filesystem::filesystem_error.
    ScratchFolder();

    const std::filesystem::path& path() const { return _path; }
    /// The path for a file to make. The name is one of ours, never one from a file.
    std::filesystem::path newFile(const std::string& name);
    /// Removes the files of newFile, links not followed, and the folder if nothing else is in it. A failure is ignored.
    void removeFiles();
    void remove();

private:
    std::filesystem::path _path;
    std::vector<std::filesystem::path> _files;
};

} // namespace zelk
