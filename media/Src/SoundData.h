// What the sound tags share: the encodings, and the blocks of a stream.
#pragma once

#include "SoundCodec.h"

namespace zelk {

enum class SoundEncoding : uint8_t {
    pcm = 0,
    adpcm = 1,
    mp3 = 2,
    littleEndianPcm = 3,
    nellymoser16 = 4,
    nellymoser8 = 5,
    nellymoser = 6,
    speex = 11
};

inline SoundEncoding encodingOf(const libswf::SwfSoundFormat& format) {
    return static_cast<SoundEncoding>(format.soundFormat);
}
inline uint16_t channelsOf(const libswf::SwfSoundFormat& format) { return format.soundType == 0 ? 1 : 2; }
inline bool isPcm(const libswf::SwfSoundFormat& format) {
    return encodingOf(format) == SoundEncoding::pcm || encodingOf(format) == SoundEncoding::littleEndianPcm;
}

/// The frames of a sound's data, without the count of samples to skip. Throws code 3 for data without that count.
std::span<const uint8_t> mp3OfSound(std::span<const uint8_t> data);

/// The data of all blocks behind each other; of MP3 only the frames.
std::vector<uint8_t> joinedBlocks(const libswf::SwfSoundFormat& format, const SoundBlocks& blocks);

} // namespace zelk
