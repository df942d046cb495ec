// Sounds between tags, samples and files.
//
// Every function throws libswf::SwfException: code 2 for a format that is not handled, 3 for data that is corrupt or
// ends early. Memory stays bounded by the size of the data.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "SwfTagsSound.h"

namespace zelk {

struct Sound {
    uint32_t rate = 0;            ///< samples a second in each channel
    uint16_t channels = 1;        ///< 1 or 2
    std::vector<int16_t> samples; ///< left and right in turn

    size_t frames() const { return samples.size() / channels; }
};

using SoundBlocks = std::vector<const libswf::SwfTagSoundStreamBlock*>;

/// Nothing here decodes Nellymoser and Speex, and, in builds without ZELK_HAVE_CODECS, MP3: decodeSound and
/// decodeStream refuse them with code 2.
bool canDecode(const libswf::SwfSoundFormat& format);

/// MP3 starts behind the samples that the tag says to skip. At most soundSampleCount in each channel, unless that is 0.
Sound decodeSound(const libswf::SwfTagDefineSound& tag);

/// The blocks that follow a head in its tag list, in their order, joined to one sound.
Sound decodeStream(const libswf::SwfTagSoundStreamHead& head, const SoundBlocks& blocks);

/// Samples a second: 5512, 11025, 22050 or 44100.
uint32_t soundRate(const libswf::SwfSoundFormat& format);

} // namespace zelk
