// Bit access in bulk, for records that come in millions: the streams check and keep their state once per list instead
// of once per value.
#pragma once

#include "SwfStream.h"

namespace libswf {

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
            std::memcpy(&bits, _stream.data() + byte, 8);
            bits = __builtin_bswap64(bits);
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

/// Collects bit fields and writes them to a stream in blocks. The stream must stand at a whole byte.
class SwfBitPacker {
public:
    static constexpr uint32_t most = 56; ///< bits that are put at once

    explicit SwfBitPacker(SwfOStream& stream) : _stream(stream) {}

    /// n bits, at most `most`; v has no others.
    void put(uint32_t n, uint64_t v) {
        _held += n;
        _bits |= v << 1 << (63 - _held);
        const uint64_t bytes = __builtin_bswap64(_bits);
        std::memcpy(_block + _used, &bytes, sizeof bytes); // what is no whole byte yet is written again
        _used += _held / 8;
        _bits <<= _held / 8 * 8;
        _held %= 8;
        if (_used > sizeof _block - sizeof bytes) [[unlikely]]
            flushBlock();
    }
    /// The same for up to 64 bits.
    void putLong(uint32_t n, uint64_t v) {
        if (n <= most)
            return put(n, v);
        put(n - 32, v >> 32);
        put(32, static_cast<uint32_t>(v));
    }

    /// Fills the last byte with 0 bits and hands everything to the stream.
    void finish() {
        flushBlock();
        if (_held != 0)
            _stream.writeUI8(static_cast<uint8_t>(_bits >> 56));
        _bits = _held = 0;
    }

private:
    void flushBlock() {
        _stream.writeBytes(_used, _block);
        _used = 0;
    }

    SwfOStream& _stream;
    uint64_t _bits = 0; // first one on top
    uint32_t _held = 0; // so many of them, fewer than 8
    uint32_t _used = 0;
    uint8_t _block[4096];
};

} // namespace libswf
