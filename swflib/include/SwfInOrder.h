// Work that several threads do in parts while one thread takes the results in order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace libswf {

/// What is done in parts, numbered from 0.
struct SwfPartedWork {
    size_t count = 0;
    /// Does one part; on any thread, the calling one among them. Parts are begun in order.
    std::function<void(size_t part)> work;
    /// Takes one part that is done, or as far as it came when `work` threw; on the calling thread, in order.
    std::function<void(size_t part)> take;
};

/// Does all parts on so many threads, the calling one among them; on fewer when threads run out. No more than a few
/// parts are ahead of the one that is taken next. What `work` throws is thrown here once its part has been taken; then,
/// and when `take` throws, the parts that were not begun are left out. All threads have ended when this returns or
/// throws.
void workInOrder(const SwfPartedWork& parts, uint32_t threads);

/// Bytes of text, and of a movie's body, that are a few milliseconds of work to convert.
constexpr uint64_t bigText = 1000000, bigBody = 300000;

/// How many threads are worth their start: as many as are asked for; for 0 as the machine has cores, four at most; one
/// for an input that is not big.
uint32_t threadsFor(bool isBig, uint32_t asked);

} // namespace libswf
