#include "Base64.h"

#include <array>

#include "SwfUtils.h"
#include "XmlErrors.h"
#include "XmlWide.h"

namespace xml2swf {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr size_t lineLength = 1024;
constexpr size_t lineBytes = lineLength / 4 * 3;

// Two characters for every 12 bits.
constexpr auto pairs = [] {
    std::array<std::array<char, 2>, 4096> table{};
    for (size_t i = 0; i < table.size(); ++i)
        table[i] = {alphabet[i >> 6], alphabet[i & 63]};
    return table;
}();

constexpr uint8_t foreign = 0xFF, blank = 0xFE;

constexpr auto values = [] {
    std::array<uint8_t, 256> table{};
    table.fill(foreign);
    for (size_t i = 0; i < alphabet.size(); ++i)
        table[static_cast<uint8_t>(alphabet[i])] = static_cast<uint8_t>(i);
    for (char c : {' ', '\t', '\r', '\n'})
        table[static_cast<uint8_t>(c)] = blank;
    return table;
}();

char* encodeTriples(char* out, const uint8_t* in, size_t triples) {
    for (; triples != 0; --triples, in += 3, out += 4) {
        const uint32_t bits = uint32_t(in[0]) << 16 | uint32_t(in[1]) << 8 | in[2];
        const auto& high = pairs[bits >> 12];
        const auto& low = pairs[bits & 0xFFF];
        out[0] = high[0];
        out[1] = high[1];
        out[2] = low[0];
        out[3] = low[1];
    }
    return out;
}

char* encodeTail(char* out, const uint8_t* in, size_t left) {
    const uint32_t bits = uint32_t(in[0]) << 16 | (left == 2 ? uint32_t(in[1]) << 8 : 0);
    *out++ = alphabet[bits >> 18];
    *out++ = alphabet[bits >> 12 & 63];
    *out++ = left == 2 ? alphabet[bits >> 6 & 63] : '=';
    *out++ = '=';
    return out;
}

uint8_t value(char c) { return values[static_cast<uint8_t>(c)]; }

#ifdef __SSE2__
// Bytes by the low or high half of another byte, in both halves of a register.
ZELK_WIDE __m256i byHalf(char a, char b, char c, char d, char e, char f, char g, char h, char i, char j, char k, char l,
                         char m, char n, char o, char p) {
    return _mm256_broadcastsi128_si256(_mm_setr_epi8(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p));
}

// 32 characters at a time, as long as more follow and all are of the alphabet. Writes 8 bytes more than it gives.
ZELK_WIDE uint8_t* decodeWide(const char*& in, const char* end, uint8_t* out) {
    // A character is foreign when its two halves share a bit.
    const __m256i lowClass =
        byHalf(0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13, 0x1A, 0x1B, 0x1B, 0x1B, 0x1A);
    const __m256i highClass =
        byHalf(0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10);
    // What takes a character to its value, by its high half; "/" has a place of its own.
    const __m256i toValue = byHalf(0, 16, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0);
    const __m256i bytesOfGroups = byHalf(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    const __m256i slash = _mm256_set1_epi8('/');
    for (; end - in >= 48; in += 32, out += 24) {
        const __m256i chars = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in));
        const __m256i high = _mm256_and_si256(_mm256_srli_epi32(chars, 4), slash); // its bit 5 does not count
        const __m256i low = _mm256_and_si256(chars, slash);
        if (!_mm256_testz_si256(_mm256_shuffle_epi8(lowClass, low), _mm256_shuffle_epi8(highClass, high)))
            break;
        const __m256i place = _mm256_add_epi8(_mm256_cmpeq_epi8(chars, slash), high);
        const __m256i values = _mm256_add_epi8(chars, _mm256_shuffle_epi8(toValue, place));
        const __m256i twos = _mm256_maddubs_epi16(values, _mm256_set1_epi32(0x01400140));
        const __m256i groups = _mm256_madd_epi16(twos, _mm256_set1_epi32(0x00011000));
        const __m256i bytes = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(groups, bytesOfGroups),
                                                          _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), bytes);
    }
    return out;
}
#endif

// Groups of four characters with nothing between them, as long as they last.
uint8_t* decodeRun(const char*& in, const char* end, uint8_t* out) {
#ifdef __SSE2__
    if (canBeWide())
        out = decodeWide(in, end, out);
#endif
    for (; end - in >= 4; in += 4, out += 3) {
        const uint32_t a = value(in[0]), b = value(in[1]), c = value(in[2]), d = value(in[3]);
        if (((a | b | c | d) & 0xC0) != 0)
            break;
        const uint32_t bits = a << 18 | b << 12 | c << 6 | d;
        out[0] = static_cast<uint8_t>(bits >> 16);
        out[1] = static_cast<uint8_t>(bits >> 8);
        out[2] = static_cast<uint8_t>(bits);
    }
    return out;
}

const char* skipBlanks(const char* in, const char* end) {
    while (in != end && value(*in) == blank)
        ++in;
    return in;
}

// The next group of four characters, blanks between them passed over.
struct Group {
    char chars[4];
    size_t count = 0;

    void take(const char*& in, const char* end) {
        for (in = skipBlanks(in, end); in != end && count < 4; in = skipBlanks(in, end))
            chars[count++] = *in++;
    }
};

// Decodes a group that may be padded; the number of bytes, or 0 when it is not base64.
size_t decodeGroup(const Group& group, uint8_t* out) {
    size_t padding = 0;
    if (group.chars[3] == '=')
        padding = group.chars[2] == '=' ? 2 : 1;
    uint32_t bits = 0;
    for (size_t i = 0; i < 4; ++i) {
        const uint8_t v = i < 4 - padding ? value(group.chars[i]) : 0;
        if (v >= 64)
            return 0;
        bits = bits << 6 | v;
    }
    for (size_t i = 0; i < 3 - padding; ++i)
        *out++ = static_cast<uint8_t>(bits >> (16 - 8 * i));
    return 3 - padding;
}

} // namespace

void appendBase64(XmlText& out, std::span<const uint8_t> bytes) {
    const size_t chars = (bytes.size() + 2) / 3 * 4;
    const size_t breaks = chars == 0 ? 0 : (chars - 1) / lineLength;
    char* place = out.room(chars + breaks);
    out.finish(place + chars + breaks);
    const uint8_t* in = bytes.data();
    size_t left = bytes.size();
    for (; left > lineBytes; in += lineBytes, left -= lineBytes) {
        place = encodeTriples(place, in, lineBytes / 3);
        *place++ = '\n';
    }
    place = encodeTriples(place, in, left / 3);
    if (left % 3 != 0)
        encodeTail(place, in + left / 3 * 3, left % 3);
}

std::vector<uint8_t> decodeBase64(std::string_view text) {
    std::vector<uint8_t> bytes;
    bytes.reserve(text.size() / 4 * 3 + 3);
    libswf::adviseBigPages(bytes.data(), bytes.capacity());
    bytes.resize(text.size() / 4 * 3 + 3);
    uint8_t* out = bytes.data();
    const char* in = text.data();
    const char* end = in + text.size();
    for (;;) {
        out = decodeRun(in, end, out);
        const char* groupStart = in = skipBlanks(in, end);
        if (in == end)
            break;
        Group group;
        group.take(in, end);
        const size_t count = group.count == 4 ? decodeGroup(group, out) : 0;
        if (count == 0 || (count < 3 && in != end))
            throw Base64Error(static_cast<size_t>(groupStart - text.data()));
        out += count;
    }
    bytes.resize(static_cast<size_t>(out - bytes.data()));
    return bytes;
}

} // namespace xml2swf
