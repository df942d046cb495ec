#include "SwfDeflate.h"
#include "SwfStream.h"
#include "SwfStructs.h"
#include "SwfUtils.h"

namespace libswf {

SwfOStream::SwfOStream(uint64_t capacity) {
    if (capacity > UINT32_MAX)
        throw SwfException(SwfError::doesNotFit, "a movie of more than 4 GB");
    reserve(capacity);
    adviseBigPages(data(), capacity);
}

SwfOStream::SwfOStream(std::span<uint8_t> place) {
    attach(place.data(), static_cast<uint32_t>(place.size()), SwfAttach::borrow);
    _size = 0;
}

SwfOStream SwfOStream::counter(const SwfContext& context) {
    SwfOStream stream;
    stream._counting = true;
    stream.context = context;
    return stream;
}

void SwfOStream::overflow() { throw SwfAssertionFailure("Size <= Capacity"); }

void SwfOStream::writeEncodedU32(uint32_t v) {
    while (v >= 128) {
        writeUI8(static_cast<uint8_t>((v & 0x7F) | 0x80));
        v >>= 7;
    }
    writeUI8(static_cast<uint8_t>(v));
}

// A full byte stays pending until the next bit or flushBits: 1 to 8 bits are held back.
void SwfOStream::writeBits(uint32_t n, uint32_t v, uint32_t above) {
    for (; n > 32; n -= std::min(n - 32, 32u))
        writeBits(std::min(n - 32, 32u), above, above);
    if (n == 0)
        return;
    uint64_t bits = uint64_t(_bitBuffer) << n | (n == 32 ? v : v & ((1u << n) - 1));
    uint32_t held = _bitCount + n;
    for (; held > 8; held -= 8)
        writeUI8(static_cast<uint8_t>(bits >> (held - 8)));
    _bitCount = static_cast<uint8_t>(held);
    _bitBuffer = static_cast<uint8_t>(bits & ((1u << held) - 1));
}

void SwfOStream::flushBits() {
    if (_bitCount == 0)
        return;
    writeUI8(static_cast<uint8_t>(_bitBuffer << (8 - _bitCount)));
    _bitBuffer = _bitCount = 0;
}

void SwfOStream::writeBytes(uint64_t n, const uint8_t* source) {
    if (_counting)
        _count += n;
    else if (n != 0)
        std::memcpy(claim(n), source, static_cast<size_t>(n));
}

void SwfOStream::writeUI16Array(uint32_t count, const uint16_t* source) {
    for (uint32_t i = 0; i < count; ++i)
        writeUI16(source[i]);
}

void SwfOStream::writeString(const SwfString& text) {
    writeBytes(uint64_t(text.length()) + 1, reinterpret_cast<const uint8_t*>(text.c_str()));
}

void SwfOStream::compress(int level, uint32_t threads) {
    constexpr uint32_t start = 8;
    SwfVector<uint8_t> compressed;
    compressed.attach(data(), start, SwfAttach::copy);
    appendDeflated(compressed, {data() + start, size() - start}, level, threads);
    const uint32_t total = compressed.size();
    attach(compressed.detach(), total, SwfAttach::adopt);
}

} // namespace libswf
