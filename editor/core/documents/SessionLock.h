// Tells whether the run of the program that made a file is still alive.
#pragma once

#include <filesystem>
#include <optional>

namespace zelk {

/// A file that is locked as long as its owner lives: the system lets go of it however the program ends, so that neither
/// a crash nor a process number that is given again misleads.
class SessionLock {
public:
    /// None while another run holds it, or when the file cannot be made.
    static std::optional<SessionLock> take(const std::filesystem::path& file);

    SessionLock(SessionLock&& other) noexcept;
    SessionLock& operator=(SessionLock&& other) = delete;
    /// The file stays.
    ~SessionLock();

private:
    explicit SessionLock(int handle) : _handle(handle) {}
    int _handle;
};

} // namespace zelk
