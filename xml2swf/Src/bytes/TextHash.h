// The hash of short texts in tables of this library's own.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace xml2swf {

template <class Word>
uint64_t wordAt(const char* at) {
    Word word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

/// The last 8 bytes, or all that there are, by loads of fixed sizes.
inline uint64_t lastWord(std::string_view text) {
    const char* start = text.data();
    const char* end = start + text.size();
    if (text.size() >= 8)
        return wordAt<uint64_t>(end - 8);
    if (text.size() >= 4)
        return wordAt<uint32_t>(start) << 32 | wordAt<uint32_t>(end - 4);
    if (text.empty())
        return 0;
    return wordAt<uint8_t>(start) << 16 | wordAt<uint8_t>(start + text.size() / 2) << 8 | wordAt<uint8_t>(end - 1);
}

/// Of all bytes, 8 at a time; the last 8 may overlap those before.
inline uint32_t hashOfText(std::string_view text) {
    constexpr uint64_t factor = 0x9E3779B97F4A7C15;
    const char* at = text.data();
    const size_t size = text.size();
    uint64_t hash = size * factor;
    for (size_t left = size; left > 8; left -= 8, at += 8) {
        hash = (hash ^ wordAt<uint64_t>(at)) * factor;
        hash ^= hash >> 32;
    }
    hash = (hash ^ lastWord(text)) * factor;
    return static_cast<uint32_t>(hash >> 32);
}

} // namespace xml2swf
