#include "SessionLock.h"

#include <utility>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace zelk {

#ifdef _WIN32

static int lockedFile(const std::filesystem::path& file) {
    return _wsopen(file.c_str(), _O_RDWR | _O_CREAT | _O_NOINHERIT, _SH_DENYRW, _S_IREAD | _S_IWRITE);
}

static void closeFile(int handle) { _close(handle); }

#else

// Whether the name still leads there: whoever held the lock before may have removed the file.
static bool isStillThere(int handle, const std::filesystem::path& file) {
    struct stat locked = {}, named = {};
    return ::fstat(handle, &locked) == 0 && ::stat(file.c_str(), &named) == 0 && locked.st_ino == named.st_ino &&
           locked.st_dev == named.st_dev;
}

// Programs that are started from here do not hold it on.
static int lockedFile(const std::filesystem::path& file) {
    const int handle = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (handle < 0 || (::flock(handle, LOCK_EX | LOCK_NB) == 0 && isStillThere(handle, file)))
        return handle;
    ::close(handle);
    return -1;
}

static void closeFile(int handle) { ::close(handle); }

#endif

std::optional<SessionLock> SessionLock::take(const std::filesystem::path& file) {
    const int handle = lockedFile(file);
    return handle < 0 ? std::nullopt : std::optional(SessionLock(handle));
}

SessionLock::SessionLock(SessionLock&& other) noexcept : _handle(std::exchange(other._handle, -1)) {}

SessionLock::~SessionLock() {
    if (_handle >= 0)
        closeFile(_handle);
}

} // namespace zelk
