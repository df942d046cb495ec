#include "XmlMarks.h"

#include <algorithm>
#include <bit>

#include "XmlBytes.h"
#include "XmlWords.h"

namespace xml2swf {

#ifdef __SSE2__

namespace {

constexpr ptrdiff_t blockSize = 64;

struct Masks {
    uint64_t starts, ends, quotes, others; // bit i for the block's byte i
};

// For any processor.
struct Usual {
    template <class Test>
    [[gnu::always_inline]] static uint64_t mask(const char* block, Test test) {
        uint64_t result = 0;
#pragma GCC unroll 4
        for (int i = 0; i < 4; ++i)
            result |= uint64_t(bits16(test(load16(block + 16 * i)))) << 16 * i;
        return result;
    }
    [[gnu::always_inline]] static Masks masksOf(const char* block) {
        return {mask(block, [](Bytes16 bytes) { return equal16(bytes, '<'); }),
                mask(block, [](Bytes16 bytes) { return equal16(bytes, '>'); }),
                mask(block, [](Bytes16 bytes) { return equal16(bytes, '"'); }),
                mask(block, [](Bytes16 bytes) { return or16(equal16(bytes, '\''), equal16(bytes, '\0')); })};
    }
    static size_t countOf(uint64_t bits) { return countOfBits(bits); }
};

// With 32 bytes at a time.
struct Wide {
    ZELK_WIDE static uint64_t equal32(__m256i bytes, char c) {
        return static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(bytes, _mm256_set1_epi8(c))));
    }
    ZELK_WIDE static uint64_t equal(__m256i low, __m256i high, char c) {
        return equal32(high, c) << 32 | equal32(low, c);
    }
    ZELK_WIDE static Masks masksOf(const char* block) {
        const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(block));
        const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(block + 32));
        return {equal(low, high, '<'), equal(low, high, '>'), equal(low, high, '"'),
                equal(low, high, '\'') | equal(low, high, '\0')};
    }
    ZELK_WIDE static size_t countOf(uint64_t bits) { return static_cast<size_t>(_mm_popcnt_u64(bits)); }
};

// Writes more than there is, so that no branch depends on how many there are.
template <class Processor>
[[gnu::always_inline]] inline uint32_t* append(uint32_t* to, uint32_t offset, uint64_t found) {
    uint32_t* end = to + Processor::countOf(found);
    do {
        for (int i = 0; i < 4; ++i) {
            *to++ = offset + static_cast<uint32_t>(std::countr_zero(found));
            found &= found - 1;
        }
    } while (to < end);
    return end;
}

template <class Processor>
[[gnu::always_inline]] inline const char* findMarks(const char* at, const char* stop, const char* textEnd,
                                                    uint32_t*& offsets) {
    uint64_t quoted = 0; // all ones where quotes are open
    for (const char* block = at; block < stop; block += blockSize) {
        if (textEnd - block <= blockSize) // whoever sees a mark may look at the byte behind it
            return block;
        prefetch(block);
        const Masks masks = Processor::masksOf(block);
        const uint64_t inQuotes = parities(masks.quotes) ^ quoted;
        if ((masks.others | (masks.starts & inQuotes)) != 0)
            return block;
        quoted = -(inQuotes >> 63);
        uint64_t found = masks.starts | (masks.ends & ~inQuotes);
        if (stop - block < blockSize)
            found &= (uint64_t(1) << (stop - block)) - 1;
        offsets = append<Processor>(offsets, static_cast<uint32_t>(block - at), found);
    }
    return stop;
}

ZELK_WIDE const char* findWide(const char* at, const char* stop, const char* textEnd, uint32_t*& offsets) {
    return findMarks<Wide>(at, stop, textEnd, offsets);
}

const char* findUsual(const char* at, const char* stop, const char* textEnd, uint32_t*& offsets) {
    return findMarks<Usual>(at, stop, textEnd, offsets);
}

} // namespace

#endif

bool canBeWide() {
#ifdef __SSE2__
    static const bool can =
        __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("popcnt");
    return can;
#else
    return false;
#endif
}

const char* XmlMarks::find(const char* at, const char* stop, const char* textEnd) {
    uint32_t* offsets = _offsets;
    stop = at + std::min<size_t>(static_cast<size_t>(stop - at), most);
#ifdef __SSE2__
    stop = _isWide ? findWide(at, stop, textEnd, offsets) : findUsual(at, stop, textEnd, offsets);
#else
    stop = at;
#endif
    _count = static_cast<size_t>(offsets - _offsets);
    return stop;
}

} // namespace xml2swf
