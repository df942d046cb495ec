// Disks that are full or take nothing.
#pragma once

#ifndef _WIN32

#include <csignal>
#include <functional>

#include <sys/resource.h>

// Runs with files that cannot grow past `most` bytes, as on a disk that is full.
inline void onFullDisk(rlim_t most, const std::function<void()>& act) {
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    rlimit limit = old;
    limit.rlim_cur = most;
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
    act();
    setrlimit(RLIMIT_FSIZE, &old);
    signal(SIGXFSZ, handler);
}

#endif

#ifdef __linux__

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

// Mounts an empty disk on a folder and works there, in a process whose mounts nobody else sees. The options are those
// of tmpfs. False where that cannot be done.
inline bool onDisk(const std::filesystem::path& folder, const std::string& options, const std::function<void()>& work) {
    constexpr int unable = 77;
    const pid_t child = fork();
    if (child == 0) {
        if (unshare(geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS) != 0 ||
            mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("tmpfs", folder.c_str(), "tmpfs", 0, options.c_str()) != 0)
            _exit(unable);
        work();
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && (WEXITSTATUS(status) == 0 || WEXITSTATUS(status) == unable)) << status;
    return WEXITSTATUS(status) != unable;
}

#endif
