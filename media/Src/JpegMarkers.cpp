#include "JpegMarkers.h"

namespace zelk {

namespace {

constexpr uint8_t startOfImage = 0xD8, endOfImage = 0xD9, startOfScan = 0xDA;

// Walks over the markers in front of the first scan.
class Markers {
public:
    explicit Markers(std::span<const uint8_t> data) : _data(data) {}

    /// False at the first scan, at the end, and at what is no marker.
    bool next() {
        _at = _end;
        if (_at + 2 > _data.size() || _data[_at] != 0xFF)
            return false;
        code = _data[_at + 1];
        if (code == startOfScan)
            return false;
        _end = _at + 2 + lengthBehindMarker();
        return _end <= _data.size();
    }
    std::span<const uint8_t> segment() const { return _data.subspan(_at, _end - _at); }
    /// From where next() stopped.
    std::span<const uint8_t> rest() const { return _data.subspan(_at); }

    uint8_t code = 0;

private:
    size_t lengthBehindMarker() const {
        if (code == 0xFF) // a filling byte; the marker may start at the next
            return size_t(0) - 1;
        if (code == startOfImage || code == endOfImage || code == 1 || (code >= 0xD0 && code <= 0xD7))
            return 0;
        return _at + 4 <= _data.size() ? size_t(_data[_at + 2]) << 8 | _data[_at + 3] : _data.size();
    }

    std::span<const uint8_t> _data;
    size_t _at = 0, _end = 0;
};

bool isFrame(uint8_t code) { return code >= 0xC0 && code <= 0xCF && code != 0xC4 && code != 0xC8 && code != 0xCC; }

} // namespace

std::optional<JpegSize> jpegSize(std::span<const uint8_t> jpeg) {
    for (Markers markers(jpeg); markers.next();) {
        const std::span<const uint8_t> segment = markers.segment();
        if (isFrame(markers.code) && segment.size() >= 9)
            return JpegSize{uint32_t(segment[7]) << 8 | segment[8], uint32_t(segment[5]) << 8 | segment[6]};
    }
    return std::nullopt;
}

std::vector<uint8_t> joinedJpeg(std::span<const uint8_t> tables, std::span<const uint8_t> image) {
    std::vector<uint8_t> file = {0xFF, startOfImage};
    const auto append = [&file](std::span<const uint8_t> bytes) {
        file.insert(file.end(), bytes.begin(), bytes.end());
    };
    for (const std::span<const uint8_t> part : {tables, image}) {
        Markers markers(part);
        while (markers.next()) {
            if (markers.code != startOfImage && markers.code != endOfImage)
                append(markers.segment());
        }
        if (part.data() == image.data())
            append(markers.rest());
    }
    return file;
}

} // namespace zelk
