// Memory for small objects that come in millions.
#pragma once

#include <cstddef>

namespace libswf {

/// Base of small objects, of some hundred bytes at most, that are made one after the other and mostly let go together:
/// actions and their values, fill styles. They stand one behind the other in blocks; a block is freed when nothing in
/// it is left. The memory of the object made last is used again at once. Any thread may free what another one made.
class SwfPooled {
public:
    static void* operator new(size_t size);
    static void operator delete(void* object, size_t size) noexcept;
};

} // namespace libswf
