// MP3 data.
#pragma once

#include <span>

#include "SoundCodec.h"

namespace zelk {

struct Mp3Info {
    uint32_t rate = 0;
    uint16_t channels = 0;
    uint64_t frames = 0;            ///< samples in each channel
    std::span<const uint8_t> audio; ///< from the first of its frames to behind the last, without tags around them
};

/// Walks over the frames' headers. Throws code 3 when there is none.
Mp3Info mp3Info(std::span<const uint8_t> file);

/// Throws code 2 in builds without the codecs.
Sound decodeMp3(std::span<const uint8_t> data);

} // namespace zelk
