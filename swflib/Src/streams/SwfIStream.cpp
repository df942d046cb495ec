#ifdef ZELK_HAVE_LZMA
#include <lzma.h>
#endif
#include <zlib.h>

#include "SwfStream.h"
#include "SwfStructs.h"
#include "SwfTagCodes.h"
#include "SwfUtils.h"

namespace libswf {

SwfIStream::SwfIStream(const uint8_t* data, size_t length) {
    // Borrowed, and never written through: the stream only reads.
    attach(const_cast<uint8_t*>(data), static_cast<uint32_t>(length), SwfAttach::borrow);
}

SwfIStream::SwfIStream(std::shared_ptr<const uint8_t> buffer, size_t length) : SwfIStream(buffer.get(), length) {
    _buffer = std::move(buffer);
}

void SwfIStream::fail(const char* field, const char* problem) const {
    const std::string place = field == nullptr ? std::string() : std::string(field) + ": ";
    throw SwfException(SwfError::badData, _position, _bodyEnd == noEnd ? std::string() : tagName(context.tagType),
                       place + problem);
}

uint32_t SwfIStream::readEncodedU32(const char* field) {
    const uint64_t start = _position;
    uint32_t value = 0;
    for (uint32_t shift = 0; shift < 35; shift += 7) {
        if (bytesLeft() == 0) {
            _position = start;
            fail(field, "data ends here");
        }
        const uint8_t byte = data()[_position++];
        value |= uint32_t(byte & 0x7F) << shift;
        if ((byte == 0 && shift != 0) || (shift == 28 && byte > 0x0F))
            markInexact("a number takes more bits than it needs");
        if ((byte & 0x80) == 0)
            break;
    }
    return value;
}

// Takes the whole bytes that n bits still need in one go; only the last of them stays as the partly read byte.
uint32_t SwfIStream::readUB(uint32_t n, const char* field) {
    if (n <= _bitsLeft) {
        _bitsLeft = static_cast<uint8_t>(_bitsLeft - n);
        return (uint32_t(_bitByte) >> _bitsLeft) & ((1u << n) - 1);
    }
    const uint32_t bytes = (n - _bitsLeft + 7) / 8;
    need(bytes, field);
    uint64_t bits = _bitByte & ((1u << _bitsLeft) - 1);
    const uint8_t* next = data() + _position;
    for (uint32_t i = 0; i < bytes; ++i)
        bits = bits << 8 | next[i];
    _position += bytes;
    _bitByte = next[bytes - 1];
    _bitsLeft = static_cast<uint8_t>(_bitsLeft + 8 * bytes - n);
    const uint64_t value = bits >> _bitsLeft;
    return static_cast<uint32_t>(n >= 32 ? value : value & ((1u << n) - 1));
}

void SwfIStream::readBytes(uint64_t n, uint8_t* destination, const char* field) {
    if (destination == nullptr) {
        skip(n);
        return;
    }
    need(n, field);
    if (n != 0)
        std::memcpy(destination, data() + _position, static_cast<size_t>(n));
    _position += n;
}

SwfBytes SwfIStream::readPayload(uint64_t n, const char* field) {
    need(n, field);
    const uint8_t* start = data() + _position;
    _position += n;
    if (_buffer != nullptr)
        return SwfBytes::share(_buffer, start, static_cast<size_t>(n));
    return SwfBytes::copyOf({start, static_cast<size_t>(n)});
}

void SwfIStream::readString(SwfString& target, const char* field) {
    const uint8_t* start = data() + std::min<uint64_t>(_position, size());
    const uint64_t available = bodyLeft();
    const void* nul = available == 0 ? nullptr : std::memchr(start, 0, static_cast<size_t>(available));
    uint64_t length = available;
    if (nul != nullptr)
        length = static_cast<uint64_t>(static_cast<const uint8_t*>(nul) - start);
    const uint64_t taken = nul != nullptr ? length + 1 : length;
    if (context.fullForm ? taken == 0 : _position + taken >= size())
        fail(field, "the text has no end");
    if (nul == nullptr && context.tagMayLackNul && !context.tagLacksNul)
        context.tagLacksNul = true;
    else if (nul == nullptr)
        markInexact("a text has no end");
    target.assign({reinterpret_cast<const char*>(start), static_cast<size_t>(length)});
    _position += taken;
}

namespace {

// Grows with what the decoder gives, so that a header that claims gigabytes costs nothing.
class BoundedOutput {
public:
    BoundedOutput(const uint8_t* header, uint64_t limit, uint64_t inputSize) : _limit(limit) {
        _bytes.reserve(static_cast<size_t>(8 + std::min(limit + 1, std::max<uint64_t>(1 << 16, inputSize * 6))));
        adviseBigPages(_bytes.data(), _bytes.capacity());
        _bytes.assign(header, header + 8);
    }

    /// Room for more output; one byte past the limit, so that output that is too long shows.
    std::pair<uint8_t*, size_t> room() {
        const uint64_t done = _bytes.size();
        // What is given out is filled with zeros before: not much more than what has come so far.
        uint64_t target = done + std::max<uint64_t>(1 << 16, done);
        if (done + (1 << 12) <= _bytes.capacity())
            target = std::min<uint64_t>(target, _bytes.capacity());
        target = std::min<uint64_t>(target, 8 + _limit + 1);
        if (target <= done)
            return {nullptr, 0};
        _bytes.resize(static_cast<size_t>(target));
        return {_bytes.data() + done, static_cast<size_t>(target - done)};
    }
    void give(size_t unused) { _bytes.resize(_bytes.size() - unused); }
    bool full() const { return _bytes.size() >= 8 + _limit; }
    bool overflown() const { return _bytes.size() > 8 + _limit; }
    uint64_t size() const { return _bytes.size(); }
    std::vector<uint8_t> take() { return std::move(_bytes); }

private:
    uint64_t _limit;
    std::vector<uint8_t> _bytes;
};

[[noreturn]] void corruptBody() {
    throw SwfException(SwfError::badData, "the compressed body is corrupt, cut short, or longer than its header says");
}

uint64_t bodyLimit(uint32_t fileLength) {
    if (fileLength < 8)
        throw SwfException(SwfError::badData, "the header gives a file length below 8");
    return fileLength - 8;
}

} // namespace

void SwfIStream::adoptInflated(std::vector<uint8_t> movie) {
    auto owner = std::make_shared<const std::vector<uint8_t>>(std::move(movie));
    const uint8_t* bytes = owner->data();
    attach(const_cast<uint8_t*>(bytes), static_cast<uint32_t>(owner->size()), SwfAttach::borrow);
    _buffer = std::shared_ptr<const uint8_t>(std::move(owner), bytes);
}

void SwfIStream::decompress(uint32_t fileLength) {
    z_stream z{};
    if (size() < 8)
        fail("file header", "data ends here");
    BoundedOutput output(data(), bodyLimit(fileLength), size());
    if (inflateInit(&z) != Z_OK)
        throw SwfException(SwfError::compression, "zlib does not start");
    z.next_in = data() + 8;
    z.avail_in = size() - 8;
    int result = Z_OK;
    while (result == Z_OK && !output.overflown()) {
        auto [place, room] = output.room();
        if (room == 0)
            break;
        z.next_out = place;
        z.avail_out = static_cast<uInt>(room);
        result = inflate(&z, Z_NO_FLUSH);
        output.give(z.avail_out);
    }
    const bool ended = inflateEnd(&z) == Z_OK;
    const bool badInput = result == Z_OK || result == Z_DATA_ERROR || result == Z_BUF_ERROR;
    if ((result != Z_STREAM_END && !badInput) || !ended) // a body that needs a preset dictionary included
        throw SwfException(SwfError::compression, "zlib fails");
    if (result != Z_STREAM_END || output.overflown())
        corruptBody();
    adoptInflated(output.take());
}

#ifdef ZELK_HAVE_LZMA
namespace {

constexpr size_t lzmaHeaderSize = 17; // signature, version, two lengths, 5 bytes of coder properties

// Inflates into `output` with a dictionary of at most `dictionary` bytes; false when the body is corrupt, or refers to
// bytes further back than that.
bool inflateLzma(std::span<const uint8_t> file, uint64_t dictionary, BoundedOutput& output) {
    lzma_filter filters[] = {{LZMA_FILTER_LZMA1, nullptr}, {LZMA_VLI_UNKNOWN, nullptr}};
    if (lzma_properties_decode(&filters[0], nullptr, file.data() + 12, 5) != LZMA_OK)
        corruptBody();
    const std::unique_ptr<void, void (*)(void*)> options(filters[0].options, free);
    auto& lzma = *static_cast<lzma_options_lzma*>(options.get());
    lzma.dict_size = static_cast<uint32_t>(std::min<uint64_t>(lzma.dict_size, dictionary));

    lzma_stream z = LZMA_STREAM_INIT;
    if (lzma_raw_decoder(&z, filters) != LZMA_OK)
        throw SwfException(SwfError::compression, "lzma does not start");
    const std::unique_ptr<lzma_stream, void (*)(lzma_stream*)> closer(&z, lzma_end);
    z.next_in = file.data() + lzmaHeaderSize;
    z.avail_in = file.size() - lzmaHeaderSize;
    lzma_ret result = LZMA_OK;
    // An end marker may be missing: the body is complete when it has the length that the header gives.
    while (result == LZMA_OK && !output.full()) {
        auto [place, room] = output.room();
        z.next_out = place;
        z.avail_out = room;
        result = lzma_code(&z, LZMA_RUN);
        output.give(z.avail_out);
    }
    return (result == LZMA_OK || result == LZMA_STREAM_END) && !output.overflown();
}

} // namespace

void SwfIStream::decompressLzma(uint32_t fileLength) {
    const uint64_t limit = bodyLimit(fileLength);
    if (size() < lzmaHeaderSize)
        corruptBody();
    // The decoder takes the memory of its dictionary at once. A header may claim 4 GB for it: that much is given only
    // when the body has shown that it gives as much.
    for (uint64_t dictionary = 1 << 23;; dictionary *= 4) {
        BoundedOutput output(data(), limit, size());
        if (inflateLzma({data(), size()}, dictionary, output))
            return adoptInflated(output.take());
        if (output.size() < dictionary)
            corruptBody();
    }
}
#else
void SwfIStream::decompressLzma(uint32_t) {
    throw SwfException(SwfError::badData, "this build reads no LZMA movies (\"ZWS\")");
}
#endif

} // namespace libswf
