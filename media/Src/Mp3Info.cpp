#include "Mp3.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "MediaError.h"

namespace zelk {

namespace {

struct Frame {
    uint32_t rate;
    uint16_t channels;
    uint32_t samples; // in each channel
    size_t size;      // bytes, header included
};

constexpr uint32_t kilobits[2][15] = {{0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
                                      {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}};
constexpr uint32_t rates[] = {44100, 48000, 32000};

// The frame that starts with these bytes and ends within them.
std::optional<Frame> frameAt(std::span<const uint8_t> data) {
    if (data.size() < 4 || data[0] != 0xFF || (data[1] & 0xE0) != 0xE0)
        return std::nullopt;
    const unsigned version = data[1] >> 3 & 3, layer = data[1] >> 1 & 3; // version 3 is MPEG 1, 2 is 2, 0 is 2.5
    const unsigned kilobitsIndex = data[2] >> 4, rateIndex = data[2] >> 2 & 3, padding = data[2] >> 1 & 1;
    if (version == 1 || layer != 1 || kilobitsIndex == 0 || kilobitsIndex == 15 || rateIndex == 3)
        return std::nullopt;
    const bool isFirst = version == 3;
    Frame frame{};
    frame.rate = rates[rateIndex] >> (isFirst ? 0 : version == 2 ? 1 : 2);
    frame.channels = data[3] >> 6 == 3 ? 1 : 2;
    frame.samples = isFirst ? 1152 : 576;
    frame.size = frame.samples / 8 * 1000 * kilobits[isFirst ? 0 : 1][kilobitsIndex] / frame.rate + padding;
    return frame.size <= data.size() ? std::optional(frame) : std::nullopt;
}

// Behind the titles that may stand in front of the sound.
size_t behindTitles(std::span<const uint8_t> file) {
    constexpr size_t headerSize = 10;
    const std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
    if (file.size() < headerSize || !text.starts_with("ID3"))
        return 0;
    size_t size = 0;
    for (size_t i = 6; i < headerSize; ++i)
        size = size << 7 | (file[i] & 0x7F);
    return std::min(file.size(), headerSize + size);
}

} // namespace

Mp3Info mp3Info(std::span<const uint8_t> file) {
    Mp3Info info;
    size_t start = 0, end = 0;
    for (size_t at = behindTitles(file); at < file.size();) {
        const std::optional<Frame> frame = frameAt(file.subspan(at));
        if (!frame || (info.frames != 0 && (frame->rate != info.rate || frame->channels != info.channels))) {
            ++at;
            continue;
        }
        if (info.frames == 0)
            start = at;
        info.rate = frame->rate;
        info.channels = frame->channels;
        info.frames += frame->samples;
        end = at += frame->size;
    }
    if (info.frames == 0)
        badMedia("MP3: there is no whole frame in it");
    info.audio = file.subspan(start, end - start);
    return info;
}

} // namespace zelk
