#include "Base64.h"

#include <array>

#include "SwfUtils.h"
#include "XmlErrors.h"

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

// Groups of four characters with nothing between them, as long as they last.
uint8_t* decodeRun(const char*& in, const char* end, uint8_t* out) {
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

void appendBase64(std::string& out, std::span<const uint8_t> bytes) {
    const size_t start = out.size();
    const size_t chars = (bytes.size() + 2) / 3 * 4;
    const size_t breaks = chars == 0 ? 0 : (chars - 1) / lineLength;
    out.resize(start + chars + breaks);
    char* place = out.data() + start;
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
