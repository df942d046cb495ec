#include "SwfDeflate.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "SwfException.h"
#include "SwfInOrder.h"

namespace libswf {

namespace {

constexpr size_t leastPart = 150000, mostPart = 1 << 20, usualParts = 8, windowSize = 1 << 15;

// One raw deflate stream, ended when it is let go.
class Deflater {
public:
    explicit Deflater(int level) {
        constexpr int rawWindowBits = -15, memoryLevel = 8; // the library's own, without its header
        if (deflateInit2(&_z, level, Z_DEFLATED, rawWindowBits, memoryLevel, Z_DEFAULT_STRATEGY) != Z_OK)
            throw SwfException(SwfError::compression, "zlib does not start");
    }
    ~Deflater() { deflateEnd(&_z); }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    void setWindow(std::span<const uint8_t> before) {
        if (deflateSetDictionary(&_z, before.data(), static_cast<uInt>(before.size())) != Z_OK)
            fail();
    }
    // What becomes of the input, whose last part ends the stream.
    size_t deflate(std::span<const uint8_t> input, bool isLast, std::span<uint8_t> to) {
        _z.next_in = const_cast<uint8_t*>(input.data()); // not written to
        _z.avail_in = static_cast<uInt>(input.size());
        _z.next_out = to.data();
        _z.avail_out = static_cast<uInt>(to.size());
        const int result = ::deflate(&_z, isLast ? Z_FINISH : Z_SYNC_FLUSH);
        if (result != (isLast ? Z_STREAM_END : Z_OK) || _z.avail_in != 0 || (!isLast && _z.avail_out == 0))
            fail();
        return to.size() - _z.avail_out;
    }

private:
    [[noreturn]] static void fail() { throw SwfException(SwfError::compression, "zlib fails"); }

    z_stream _z{};
};

struct Part {
    std::span<const uint8_t> body;
    std::span<const uint8_t> before; // its window
    bool isLast;
    uint8_t* deflated = nullptr; // room of its own unless it has some already
    std::unique_ptr<uint8_t[]> own = nullptr;
    size_t size = 0; // of deflated
    uLong sum = 0;

    size_t bound() const { return compressBound(static_cast<uLong>(body.size())) + 16; }
};

// Parts of one size, as far as it goes. A small body is one part and comes out as the library would write it.
std::vector<Part> partsOf(std::span<const uint8_t> body) {
    std::vector<Part> parts;
    const size_t partSize = std::clamp(body.size() / usualParts, leastPart, mostPart);
    const size_t count = std::max<size_t>(body.size() / partSize, 1);
    const auto startOf = [&](size_t i) { return static_cast<size_t>(uint64_t(body.size()) * i / count); };
    for (size_t i = 0; i < count; ++i) {
        const size_t start = startOf(i), window = std::min(start, windowSize);
        parts.push_back(
            {body.subspan(start, startOf(i + 1) - start), body.subspan(start - window, window), i + 1 == count});
    }
    return parts;
}

void deflatePart(Part& part, int level) {
    Deflater deflater(level);
    if (!part.before.empty())
        deflater.setWindow(part.before);
    if (part.deflated == nullptr) {
        part.own.reset(new uint8_t[part.bound()]);
        part.deflated = part.own.get();
    }
    part.size = deflater.deflate(part.body, part.isLast, {part.deflated, part.bound()});
    part.sum = adler32(adler32(0, nullptr, 0), part.body.data(), static_cast<uInt>(part.body.size()));
}

void appendBigEndian(SwfVector<uint8_t>& target, uint32_t value, int bytes) {
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        target.append(static_cast<uint8_t>(value >> shift));
}

// The format, and in two bits how hard the library tried.
uint32_t headerFor(int level) {
    const uint32_t effort = level == Z_DEFAULT_COMPRESSION || level == 6 ? 2 : level < 2 ? 0 : level < 6 ? 1 : 3;
    const uint32_t header = 0x7800 | effort << 6;
    return header + 31 - header % 31;
}

} // namespace

void appendDeflated(SwfVector<uint8_t>& target, std::span<const uint8_t> body, int level, uint32_t threads) {
    std::vector<Part> parts = partsOf(body);
    uint64_t most = target.size() + 2 + sizeof(uint32_t);
    for (const Part& part : parts)
        most += part.bound();
    target.reserve(most);
    appendBigEndian(target, headerFor(level), 2);
    parts.front().deflated = target.data() + target.size(); // stands where it belongs
    uLong sum = adler32(0, nullptr, 0);
    const auto take = [&](size_t i) {
        Part& part = parts[i];
        if (part.own != nullptr)
            std::memcpy(target.data() + target.size(), part.deflated, part.size);
        target.resize(uint64_t(target.size()) + part.size);
        sum = adler32_combine(sum, part.sum, static_cast<z_off_t>(part.body.size()));
        part.own.reset();
    };
    workInOrder({parts.size(), [&](size_t i) { deflatePart(parts[i], level); }, take},
                threadsFor(parts.size() > 1, threads));
    appendBigEndian(target, static_cast<uint32_t>(sum), 4);
}

} // namespace libswf
