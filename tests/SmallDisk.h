// Disks that are full or take nothing.
#pragma once

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
