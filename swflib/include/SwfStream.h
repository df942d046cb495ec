// Bit-level streams over a byte buffer. Multi-byte values are little-endian, bit fields most significant bit first.
#pragma once

#include <array>
#include <cstring>
#include <span>

#include "SwfBits.h"
#include "SwfBytes.h"
#include "SwfContext.h"
#include "SwfException.h"
#include "SwfVector.h"

namespace libswf {

class SwfString;

/// Byte buffer plus the context record.
class SwfStream : public SwfVector<uint8_t> {
public:
    SwfContext context;
};

/// Reads a movie held in memory. Every read takes the name of its field, which the error text shows; a read past the
/// end throws SwfException code 3 and leaves position and bit state as they were.
class SwfIStream : public SwfStream {
public:
    static constexpr uint64_t noEnd = UINT64_MAX;

    SwfIStream() = default;
    /// Borrows the caller's buffer.
    SwfIStream(const uint8_t* data, size_t length);
    /// Shares a buffer; payloads read from the stream then refer to it instead of being copied.
    SwfIStream(std::shared_ptr<const uint8_t> buffer, size_t length);

    uint64_t position() const { return _position; }
    uint64_t bytesLeft() const { return _position < size() ? size() - _position : 0; }
    /// Moves to an absolute position, which may lie past the end; reads there fail.
    void seek(uint64_t position) { _position = position; }
    void skip(uint64_t count) { _position += std::min<uint64_t>(count, UINT32_MAX); }

    /// Where the body of the tag being read ends; noEnd outside tags. It does not stop plain reads, but strings and
    /// lists end there.
    uint64_t bodyEnd() const { return _bodyEnd; }
    void setBodyEnd(uint64_t end) { _bodyEnd = end; }
    /// End of what may be read for the current tag: bodyEnd, or the end of the data if that comes first.
    uint64_t limit() const { return std::min<uint64_t>(_bodyEnd, size()); }
    uint64_t bodyLeft() const { return _position < limit() ? limit() - _position : 0; }

    /// Notes that the object being read cannot give its bytes back (a string without its NUL, bytes after the last
    /// action …); the tag list then keeps the tag raw when the context says so.
    void markInexact(const char* reason) {
        if (_inexact == nullptr)
            _inexact = reason;
    }
    const char* inexact() const { return _inexact; }
    void setInexact(const char* reason) { _inexact = reason; }

    uint8_t readUI8(const char* field = nullptr) {
        need(1, field);
        return data()[_position++];
    }
    uint16_t readUI16(const char* field = nullptr) { return readLittle<uint16_t>(field); }
    int16_t readSI16(const char* field = nullptr) { return static_cast<int16_t>(readUI16(field)); }
    uint32_t readUI32(const char* field = nullptr) { return readLittle<uint32_t>(field); }
    int32_t readSI32(const char* field = nullptr) { return static_cast<int32_t>(readUI32(field)); }
    float readFloat(const char* field = nullptr) { return std::bit_cast<float>(readUI32(field)); }
    double readDouble(const char* field = nullptr) { return std::bit_cast<double>(readLittle<uint64_t>(field)); }
    /// 1 to 5 bytes of 7 bits, low group first; bits above 31 are dropped.
    uint32_t readEncodedU32(const char* field = nullptr);

    /// n bits, unsigned. Widths above 32 consume n bits and give the low 32.
    uint32_t readUB(uint32_t n, const char* field = nullptr);
    /// n bits, two's complement.
    int32_t readSB(uint32_t n, const char* field = nullptr) {
        const uint32_t value = readUB(n, field);
        return n == 0 || n >= 32 ? static_cast<int32_t>(value) : static_cast<int32_t>(value << (32 - n)) >> (32 - n);
    }
    /// n bits as 16.16.
    float readFB(uint32_t n, const char* field = nullptr) { return fixed16ToFloat(readSB(n, field)); }
    bool readFlag(const char* field = nullptr) { return readUB(1, field) != 0; }
    /// Forgets the partly read byte. Byte reads leave the bit state alone.
    void alignBits() { _bitsLeft = 0; }

    /// Copies n bytes; with no destination skips them unchecked.
    void readBytes(uint64_t n, uint8_t* destination, const char* field = nullptr);
    /// n bytes as a payload.
    SwfBytes readPayload(uint64_t n, const char* field = nullptr);
    /// The rest of the tag's body as a payload; the whole rest of the data outside tags.
    SwfBytes readRest(const char* field = nullptr) { return readPayload(bodyLeft(), field); }
    /// Text up to and including its NUL. A text without one ends at the end of the tag's body; the full form keeps that
    /// in the context where the tag can say it. The classic form refuses a text that ends with the buffer (code 3), on
    /// purpose.
    void readString(SwfString& target, const char* field = nullptr);

    /// Replaces the buffer by the inflated movie: its first 8 bytes as they are, then the zlib data after them. Throws
    /// code 3 when the data is corrupt or gives more than fileLength bytes.
    void decompress(uint32_t fileLength);
    /// The same for an LZMA body, whose header takes 17 bytes.
    void decompressLzma(uint32_t fileLength);

    /// Bit state: mask of the next bit in bitByte, 0 when no byte is partly read.
    uint8_t bitMask() const { return _bitsLeft == 0 ? 0 : static_cast<uint8_t>(1u << (_bitsLeft - 1)); }
    uint8_t bitByte() const { return _bitByte; }

    /// Per-code marks: bit 0 keeps the tag or action of that code as raw bytes.
    uint8_t& tagOptions(uint32_t code) { return _tagOptions[code]; }
    uint8_t& actionOptions(uint8_t code) { return _actionOptions[code]; }
    static constexpr uint32_t tagCodes = 1025;

    /// Indices of the tag being read, from the top-level list down.
    std::vector<uint32_t> tagPath;
    /// The shared buffer behind this stream; null when the buffer is only borrowed.
    const std::shared_ptr<const uint8_t>& buffer() const { return _buffer; }

    /// Throws code 3 at the current position.
    [[noreturn]] void fail(const char* field, const char* problem) const;

private:
    void need(uint64_t n, const char* field) const {
        if (n > bytesLeft()) [[unlikely]]
            fail(field, "data ends here");
    }
    template <class T>
    T readLittle(const char* field) {
        need(sizeof(T), field);
        T value;
        std::memcpy(&value, data() + _position, sizeof(T));
        _position += sizeof(T);
        static_assert(std::endian::native == std::endian::little);
        return value;
    }
    void adoptInflated(std::vector<uint8_t> movie);

    uint64_t _position = 0;
    uint64_t _bodyEnd = noEnd;
    const char* _inexact = nullptr;
    uint8_t _bitByte = 0;
    uint8_t _bitsLeft = 0;
    std::shared_ptr<const uint8_t> _buffer;
    std::array<uint8_t, tagCodes> _tagOptions{};
    std::array<uint8_t, 256> _actionOptions{};
};

/// Writes a movie into a buffer whose size was measured before, or only counts the bytes. A write past the capacity
/// throws std::logic_error: a record's measure and its write disagree.
class SwfOStream : public SwfStream {
public:
    explicit SwfOStream(uint64_t capacity);
    /// Writes to a place in memory of the caller's.
    explicit SwfOStream(std::span<uint8_t> place);

    /// A stream that stores nothing: size measuring by the code that writes.
    static SwfOStream counter(const SwfContext& context);
    bool isCounter() const { return _counting; }
    /// Bytes written or counted so far, pending bits left out.
    uint64_t written() const { return _counting ? _count : size(); }
    /// The next n bytes, for others to fill.
    std::span<uint8_t> claimPlace(uint64_t n) { return {claim(n), static_cast<size_t>(n)}; }
    /// Forgets the bytes written behind a place.
    void rewind(uint64_t place) { _size = static_cast<uint32_t>(place); }
    /// In a counter, adds bytes that were measured elsewhere.
    void count(uint64_t bytes) { _count += bytes; }

    void writeUI8(uint8_t v) {
        if (_counting)
            ++_count;
        else
            *claim(1) = v;
    }
    void writeUI16(uint16_t v) { writeLittle(v); }
    void writeSI16(int16_t v) { writeLittle(v); }
    void writeUI32(uint32_t v) { writeLittle(v); }
    void writeFloat(float v) { writeLittle(std::bit_cast<uint32_t>(v)); }
    void writeDouble(double v) { writeLittle(std::bit_cast<uint64_t>(v)); }
    void writeEncodedU32(uint32_t v);

    /// The low n bits of v, most significant first; bits past 32 repeat the sign (writeSB) or are 0.
    void writeUB(uint32_t n, uint32_t v) { writeBits(n, v, 0); }
    void writeSB(uint32_t n, int32_t v) { writeBits(n, static_cast<uint32_t>(v), v < 0 ? UINT32_MAX : 0); }
    void writeFB(uint32_t n, float v) { writeSB(n, floatToFixed16(v)); }
    /// Completes a partly filled byte with 0 bits. Byte writes do not flush: they go before pending bits.
    void flushBits();

    void writeBytes(uint64_t n, const uint8_t* source);
    void writeBytes(std::span<const uint8_t> bytes) { writeBytes(bytes.size(), bytes.data()); }
    void writeUI16Array(uint32_t count, const uint16_t* source);
    void writeString(const SwfString& text);

    /// Deflates everything after the first 8 bytes (zlib format), a big movie on so many threads; 0 for as many as the
    /// machine has cores. Throws code 1 when the library fails.
    void compress(int level, uint32_t threads = 0);

private:
    SwfOStream() = default;
    void writeBits(uint32_t n, uint32_t v, uint32_t above);
    uint8_t* claim(uint64_t n) {
        if (n > uint64_t(_capacity) - _size) [[unlikely]]
            overflow();
        uint8_t* place = _data + _size;
        _size += static_cast<uint32_t>(n);
        return place;
    }
    [[noreturn]] static void overflow();
    template <class T>
    void writeLittle(T v) {
        if (_counting)
            _count += sizeof(T);
        else
            std::memcpy(claim(sizeof(T)), &v, sizeof(T));
    }

    uint8_t _bitBuffer = 0;
    uint8_t _bitCount = 0;
    bool _counting = false;
    uint64_t _count = 0;
};

/// Bytes that `write(stream)` produces, by running it on a counter with a copy of the context.
template <class Write>
uint32_t measure(const SwfContext& context, Write write) {
    SwfOStream stream = SwfOStream::counter(context);
    write(stream);
    if (stream.written() > UINT32_MAX)
        throw SwfException(SwfError::doesNotFit, "a record of more than 4 GB");
    return static_cast<uint32_t>(stream.written());
}

} // namespace libswf
