// Looking for the next byte of a class, sixteen at a time where the processor can.
#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <cstddef>
#include <cstdint>

namespace xml2swf {

#ifdef __SSE2__
using Bytes16 = __m128i;

inline Bytes16 load16(const char* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); }
inline Bytes16 equal16(Bytes16 bytes, char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); }
inline Bytes16 or16(Bytes16 a, Bytes16 b) { return _mm_or_si128(a, b); }
/// low <= byte <= high
inline Bytes16 between16(Bytes16 bytes, char low, char high) {
    const Bytes16 above = _mm_sub_epi8(bytes, _mm_set1_epi8(low));
    const Bytes16 width = _mm_set1_epi8(static_cast<char>(high - low));
    return _mm_cmpeq_epi8(_mm_min_epu8(above, width), above);
}
inline uint32_t bits16(Bytes16 found) { return static_cast<uint32_t>(_mm_movemask_epi8(found)); }
#endif

/// Asks for memory further behind, for a text that is gone over from its start to its end. It may lie behind the text.
inline void prefetch(const char* at) { __builtin_prefetch(at + 2048); }

/// What does not stand in a plain name: blanks, control characters and ASCII punctuation up to "?".
struct NameEnd {
    static bool test(char c) {
        const auto byte = static_cast<uint8_t>(c);
        return byte < '0' || (byte > '9' && byte <= '?');
    }
#ifdef __SSE2__
    static Bytes16 test(Bytes16 bytes) { return or16(between16(bytes, 0, '/'), between16(bytes, ':', '?')); }
#endif
};

/// What ends a plain value, or makes it none.
struct QuoteOrReference {
    static bool test(char c) { return c == '"' || c == '&'; }
#ifdef __SSE2__
    static Bytes16 test(Bytes16 bytes) { return or16(equal16(bytes, '"'), equal16(bytes, '&')); }
#endif
};

/// What does not stand as it is in a value that is written.
struct Escaped {
    static bool test(char c) {
        constexpr uint64_t characters = 1ull << '"' | 1ull << '&' | 1ull << '\'' | 1ull << '<' | 1ull << '>';
        const auto byte = static_cast<uint8_t>(c);
        return byte < 64 && (characters >> byte & 1) != 0;
    }
#ifdef __SSE2__
    static Bytes16 test(Bytes16 bytes) {
        return or16(or16(between16(bytes, '&', '\''), equal16(bytes, '"')),
                    or16(equal16(bytes, '<'), equal16(bytes, '>')));
    }
#endif
};

struct NotBlank {
    static bool test(char c) { return c != ' ' && c != '\n' && c != '\t' && c != '\r'; }
#ifdef __SSE2__
    static Bytes16 test(Bytes16 bytes) {
        const Bytes16 blank =
            or16(or16(equal16(bytes, ' '), equal16(bytes, '\n')), or16(equal16(bytes, '\t'), equal16(bytes, '\r')));
        return equal16(blank, 0);
    }
#endif
};

/// The first byte of a class in [at, end); `end` when there is none.
template <class Class>
[[gnu::always_inline]] inline const char* findFirst(const char* at, const char* end) {
#ifdef __SSE2__
    for (; end - at >= 16; at += 16) {
        if (const uint32_t found = bits16(Class::test(load16(at))))
            return at + std::countr_zero(found);
    }
#endif
    while (at != end && !Class::test(*at))
        ++at;
    return at;
}

/// The ">" that ends a tag, quoted values passed over; `end` when there is none.
inline const char* findTagEnd(const char* at, const char* end) {
#ifdef __SSE2__
    // While all quotes are double ones, a ">" behind an even number of them is the end.
    bool inQuotes = false;
    for (const char* block = at; end - block >= 32; block += 32) {
        auto find = [&](char c) {
            return bits16(equal16(load16(block), c)) | bits16(equal16(load16(block + 16), c)) << 16;
        };
        const uint32_t ends = find('>'), quotes = find('"'), before = (ends & -ends) - 1;
        if ((find('\'') & before) != 0)
            break;
        inQuotes ^= __builtin_parity(quotes & before) != 0;
        if (ends == 0)
            continue;
        if (inQuotes)
            break;
        return block + std::countr_zero(ends);
    }
#endif
    for (; at != end && *at != '>'; ++at) {
        if (*at != '"' && *at != '\'')
            continue;
        const char quote = *at;
        do
            ++at;
        while (at != end && *at != quote);
        if (at == end)
            return end;
    }
    return at;
}

} // namespace xml2swf
