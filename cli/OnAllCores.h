// Work that is the same on every core.
#pragma once

#include <algorithm>
#include <cstddef>
#include <system_error>
#include <thread>
#include <vector>

namespace zelkc {

/// Runs `work` on all cores, this thread among them; on fewer when threads run out.
template <class Work>
void onAllCores(size_t mostThreads, const Work& work) {
    const size_t cores = std::max(1u, std::thread::hardware_concurrency());
    std::vector<std::thread> helpers;
    try {
        while (helpers.size() + 1 < std::min(cores, mostThreads))
            helpers.emplace_back(work);
    } catch (const std::system_error&) {
    }
    work();
    for (std::thread& helper : helpers)
        helper.join();
}

} // namespace zelkc
