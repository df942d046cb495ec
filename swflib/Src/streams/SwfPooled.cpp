#include "SwfPooled.h"

#include <atomic>
#include <cstdint>
#include <new>

namespace libswf {

#if defined(__SANITIZE_ADDRESS__)
#define ZELK_PLAIN_HEAP
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZELK_PLAIN_HEAP
#endif
#endif

#ifdef ZELK_PLAIN_HEAP // where every object is watched by itself

void* SwfPooled::operator new(size_t size) { return ::operator new(size); }
void SwfPooled::operator delete(void* object, size_t) noexcept { ::operator delete(object); }

#else

namespace {

constexpr size_t blockSize = 64 * 1024; // and its alignment, so that an object's address tells its block

struct Block {
    // Objects freed, counted down, until the maker is done with the block and adds how many it made in all: from then
    // on the objects left. Zero is seen once.
    std::atomic<int64_t> balance{0};
};

void add(Block* block, int64_t count) {
    if (block != nullptr && block->balance.fetch_add(count, std::memory_order_acq_rel) + count == 0) {
        block->~Block();
        ::operator delete(block, std::align_val_t(blockSize));
    }
}

// What one thread makes and frees. Objects of one block are mostly freed in a row: they are counted here first.
struct Pool {
    char* at;
    size_t left;
    Block* block;
    int64_t made;
    Block* freedFrom;
    int64_t freed;

    void settle() {
        add(freedFrom, -freed);
        freedFrom = nullptr;
        freed = 0;
    }
    void letGo() {
        add(block, made);
        block = nullptr;
        at = nullptr;
        made = 0;
        left = 0;
    }
};

constinit thread_local Pool pool{};

void settleAtThreadEnd() {
    struct ThreadEnd {
        ~ThreadEnd() {
            pool.settle();
            pool.letGo();
        }
    };
    static thread_local ThreadEnd atEnd;
}

[[gnu::noinline]] void startBlock() {
    settleAtThreadEnd();
    pool.letGo();
    pool.block = new (::operator new(blockSize, std::align_val_t(blockSize))) Block;
    pool.at = reinterpret_cast<char*>(pool.block + 1);
    pool.left = blockSize - sizeof(Block);
}

size_t aligned(size_t size) {
    constexpr size_t alignment = alignof(double);
    return (size + alignment - 1) / alignment * alignment;
}

} // namespace

void* SwfPooled::operator new(size_t size) {
    size = aligned(size);
    if (size > pool.left)
        startBlock();
    char* object = pool.at;
    pool.at += size;
    pool.left -= size;
    ++pool.made;
    return object;
}

void SwfPooled::operator delete(void* object, size_t size) noexcept {
    if (object == nullptr)
        return;
    size = aligned(size);
    if (static_cast<char*>(object) + size == pool.at) {
        pool.at -= size;
        pool.left += size;
        --pool.made;
        return;
    }
    auto* block = reinterpret_cast<Block*>(reinterpret_cast<uintptr_t>(object) & ~uintptr_t(blockSize - 1));
    if (block != pool.freedFrom) {
        settleAtThreadEnd();
        pool.settle();
        pool.freedFrom = block;
    }
    ++pool.freed;
}

#endif

} // namespace libswf
