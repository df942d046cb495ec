// Bit access in bulk, for records that come in millions: the streams check and keep their state once per list instead
// of once per value.
#pragma once

#include "SwfStream.h"

namespace libswf {

/// 8 bytes as 64 bits, the first one on top.
inline uint64_t loadBits(const uint8_t* bytes) {
    uint64_t bits;
    std::memcpy(&bits, bytes, sizeof bits);
    return __builtin_bswap64(bits);
}

/// The low n bits.
inline uint64_t lowBits(uint32_t n, int32_t v) { return static_cast<uint32_t>(v) & ((uint64_t(1) << n) - 1); }

/// Two fields of n bits.
inline uint64_t bitPair(uint32_t n, int32_t a, int32_t b) { return lowBits(n, a) << n | lowBits(n, b); }

/// Reads bit fields from a stream's buffer. It starts at the stream's position; sync() hands the position back.
class SwfBitCursor {
public:
    explicit SwfBitCursor(SwfIStream& stream) : _stream(stream) { restart(); }

    /// n bits, at most 32, unsigned.
    uint32_t take(uint32_t n, const char* field) { return static_cast<uint32_t>(next(n, field) >> 1 >> (63 - n)); }
    /// n bits, at most 32, two's complement.
    int32_t takeSigned(uint32_t n, const char* field) {
        return n == 0 ? 0 : static_cast<int32_t>(static_cast<int64_t>(next(n, field)) >> (64 - n));
    }

    /// For records that are read in one go: the next 64 bits, of which at least `wide` hold, and none behind the end of
    /// the data. Not there near that end.
    static constexpr uint32_t wide = 57;
    bool hasWide() const { return _bit / 8 + 8 <= _stream.size(); }
    uint64_t peekWide() const { return loadBits(_stream.data() + _bit / 8) << _bit % 8; }
    void pass(uint32_t n) { _bit += n; }

    /// True at or after the end of the tag's body, or of the data.
    bool atLimit() const { return _bit >= _limit; }

    /// Moves the stream to the first whole byte that was not touched.
    void sync() {
        _stream.seek((_bit + 7) / 8);
        _stream.alignBits();
    }
    /// Goes on where the stream is now.
    void restart() {
        _stream.alignBits();
        _bit = _stream.position() * 8;
        _end = uint64_t(_stream.size()) * 8;
        _limit = _stream.limit() * 8;
    }
    [[noreturn]] void fail(const char* field, const char* problem) {
        sync();
        _stream.fail(field, problem);
    }

private:
    // The next bits, first one on top; at least n of them are valid.
    uint64_t next(uint32_t n, const char* field) {
        if (_bit + n > _end) [[unlikely]]
            fail(field, "data ends here");
        const uint64_t byte = _bit / 8;
        uint64_t bits = 0;
        if (byte + 8 <= _stream.size()) {
            bits = loadBits(_stream.data() + byte);
        } else {
            for (uint64_t i = byte; i < _stream.size(); ++i)
                bits |= uint64_t(_stream.data()[i]) << (56 - 8 * (i - byte));
        }
        bits <<= _bit % 8;
        _bit += n;
        return bits;
    }

    SwfIStream& _stream;
    uint64_t _bit = 0, _end = 0, _limit = 0;
};

/// Bit fields that are put one behind the other.
class SwfBitFields {
public:
    static constexpr uint32_t most = 56; ///< bits that are put at once

    /// n bits; v has no others. Writes 8 bytes, and returns the place of the first one that is not whole yet: it is
    /// where the next ones are put.
    uint8_t* put(uint8_t* place, uint32_t n, uint64_t v) {
        _held += n;
        _bits |= v << 1 << (63 - _held);
        const uint64_t bytes = __builtin_bswap64(_bits);
        std::memcpy(place, &bytes, sizeof bytes);
        place += _held / 8;
        _bits <<= _held / 8 * 8;
        _held %= 8;
        return place;
    }
    /// Bits of the byte that is not whole yet, fewer than 8.
    uint32_t held() const { return _held; }

private:
    uint64_t _bits = 0; // first one on top
    uint32_t _held = 0;
};

/// Puts up to 64 bits.
template <class Bits>
void putBits(Bits& bits, uint32_t n, uint64_t v) {
    if (n <= SwfBitFields::most)
        return bits.put(n, v);
    bits.put(n - 32, v >> 32);
    bits.put(32, static_cast<uint32_t>(v));
}

/// Collects bit fields and writes them to a stream in blocks. The stream must stand at a whole byte.
class SwfBitPacker {
public:
    explicit SwfBitPacker(SwfOStream& stream) : _stream(stream) {}

    /// n bits, at most SwfBitFields::most; v has no others.
    void put(uint32_t n, uint64_t v) {
        _place = _fields.put(_place, n, v);
        if (_place > std::end(_block) - sizeof(uint64_t)) [[unlikely]]
            flushBlock();
    }
    void putLong(uint32_t n, uint64_t v) { putBits(*this, n, v); }

    /// Fills the last byte with 0 bits and hands everything to the stream.
    void finish() {
        _place += _fields.held() != 0;
        flushBlock();
        _fields = {};
    }

private:
    void flushBlock() {
        _stream.writeBytes(static_cast<uint64_t>(_place - _block), _block);
        _block[0] = *_place; // the byte that is not whole yet
        _place = _block;
    }

    SwfOStream& _stream;
    SwfBitFields _fields;
    uint8_t* _place = _block;
    uint8_t _block[4096];
};

} // namespace libswf
