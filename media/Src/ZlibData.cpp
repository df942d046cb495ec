#include "ZlibData.h"

#include <zlib.h>

#include <algorithm>

#include "MediaError.h"

namespace zelk {

using libswf::SwfError::compression;

std::vector<uint8_t> inflated(std::span<const uint8_t> data, uint64_t size, const char* what) {
    const auto shortOf = [&](uint64_t got) {
        badMedia(std::string(what) + ": " + std::to_string(got) + " bytes of " + std::to_string(size));
    };
    if (size > data.size() * mostInflated || size > UINT32_MAX || data.size() > UINT32_MAX)
        badMedia(std::string(what) + ": " + std::to_string(data.size()) + " bytes of zlib data cannot hold " +
                 std::to_string(size));
    std::vector<uint8_t> bytes(size);
    z_stream z = {};
    if (inflateInit(&z) != Z_OK)
        throw libswf::SwfException(compression, "zlib does not start");
    z.next_in = const_cast<uint8_t*>(data.data()); // not written to
    z.avail_in = static_cast<uInt>(data.size());
    z.next_out = bytes.data();
    z.avail_out = static_cast<uInt>(size);
    const int result = inflate(&z, Z_FINISH);
    const std::string reason = z.msg != nullptr ? z.msg : "the data is corrupt";
    inflateEnd(&z);
    if (z.avail_out == 0)
        return bytes;
    if (result != Z_STREAM_END && result != Z_BUF_ERROR)
        throw libswf::SwfException(compression, std::string(what) + ": " + reason);
    shortOf(size - z.avail_out);
    return {};
}

std::vector<uint8_t> deflated(std::span<const uint8_t> bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::vector<uint8_t> data(size);
    if (compress2(data.data(), &size, bytes.data(), static_cast<uLong>(bytes.size()), Z_BEST_COMPRESSION) != Z_OK)
        throw libswf::SwfException(compression, "zlib cannot compress");
    data.resize(size);
    return data;
}

} // namespace zelk
