#include "LongPaths.h"

#ifdef _WIN32
#include <windows.h>

#include <winternl.h>

#include <cstdint>
#endif

namespace zelk {

#ifdef _WIN32

// The compiler takes what lies at an offset of a segment register for an array of no size.
#pragma GCC diagnostic ignored "-Warray-bounds"

// The loader sets a flag in the process's own block when both say so, and that flag is all that is looked at later.
void takeLongPaths() {
    constexpr DWORD firstMajor = 10, firstBuild = 15063; // which knows the flag
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (GetVersionExW(&version) == 0 || version.dwMajorVersion < firstMajor || version.dwBuildNumber < firstBuild)
        return;
    constexpr size_t flags = 3;
    constexpr uint8_t isLongPathAware = 0x80;
    reinterpret_cast<uint8_t*>(NtCurrentTeb()->ProcessEnvironmentBlock)[flags] |= isLongPathAware;
}

#else

void takeLongPaths() {}

#endif

} // namespace zelk
