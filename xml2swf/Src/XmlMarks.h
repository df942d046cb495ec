// Finding the tags of a text, many at a time.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

#include "XmlBytes.h"

namespace xml2swf {

/// Where tags start and end in a stretch of text: the "<" and ">" that stand in no double quotes. Only a guess about
/// what stands between them: quotes may have no meaning there.
class XmlMarks {
public:
    static constexpr size_t most = 4096; ///< bytes of a stretch

    /// Goes over the text from a place outside of tags on, up to `stop` and `most` bytes. Ends earlier where quotes
    /// could be misread (single ones, "<" in double ones), at a NUL, and before the last bytes of the text. Gives the
    /// place where it ended.
    const char* find(const char* at, const char* stop, const char* textEnd) {
        _count = 0;
        stop = at + std::min<size_t>(static_cast<size_t>(stop - at), most);
#ifdef __SSE2__
        uint64_t quoted = 0; // all ones where quotes are open
        for (const char* block = at; block < stop; block += blockSize) {
            if (textEnd - block < blockSize)
                return block;
            __builtin_prefetch(block + ahead);
            const Masks masks = masksOf(block);
            const uint64_t inQuotes = parities(masks.quotes) ^ quoted;
            if ((masks.others | (masks.starts & inQuotes)) != 0)
                return block;
            quoted = -(inQuotes >> 63);
            uint64_t found = masks.starts | (masks.ends & ~inQuotes);
            if (stop - block < blockSize)
                found &= (uint64_t(1) << (stop - block)) - 1;
            append(static_cast<uint32_t>(block - at), found);
        }
        return stop;
#else
        return at;
#endif
    }
    /// Offsets from where find began, in order.
    const uint32_t* begin() const { return _offsets; }
    const uint32_t* end() const { return _offsets + _count; }

private:
    static constexpr ptrdiff_t blockSize = 64, ahead = 2048;

#ifdef __SSE2__
    struct Masks {
        uint64_t starts = 0, ends = 0, quotes = 0, others = 0; // bit i for the block's byte i
    };

    [[gnu::always_inline]] static Masks masksOf(const char* block) {
        Masks masks;
#pragma GCC unroll 4
        for (int i = 0; i < 4; ++i) {
            const Bytes16 bytes = load16(block + 16 * i);
            masks.starts |= uint64_t(bits16(equal16(bytes, '<'))) << 16 * i;
            masks.ends |= uint64_t(bits16(equal16(bytes, '>'))) << 16 * i;
            masks.quotes |= uint64_t(bits16(equal16(bytes, '"'))) << 16 * i;
            masks.others |= uint64_t(bits16(or16(equal16(bytes, '\''), equal16(bytes, '\0')))) << 16 * i;
        }
        return masks;
    }

    // Each bit is set when the number of set bits up to and with it is odd.
    static uint64_t parities(uint64_t bits) {
        for (int shift = 1; shift < 64; shift *= 2)
            bits ^= bits << shift;
        return bits;
    }

    // Of set bits; std::popcount is a call where the processor's own instruction cannot be taken for granted.
    static size_t countOf(uint64_t bits) {
        bits -= bits >> 1 & 0x5555555555555555;
        bits = (bits & 0x3333333333333333) + (bits >> 2 & 0x3333333333333333);
        return ((bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0F) * 0x0101010101010101 >> 56;
    }

    // Writes more than there is, so that no branch depends on how many there are.
    [[gnu::always_inline]] void append(uint32_t offset, uint64_t found) {
        uint32_t* to = _offsets + _count;
        _count += countOf(found);
        const uint32_t* end = _offsets + _count;
        do {
            for (int i = 0; i < 4; ++i) {
                *to++ = offset + static_cast<uint32_t>(std::countr_zero(found));
                found &= found - 1;
            }
        } while (to < end);
    }
#endif

    size_t _count = 0;
    uint32_t _offsets[most + 8];
};

} // namespace xml2swf
