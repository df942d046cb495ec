#include "SoundCodec.h"

#include <algorithm>

#include "Adpcm.h"
#include "MediaError.h"
#include "Mp3.h"
#include "SoundData.h"

namespace zelk {

using namespace libswf;

namespace {

constexpr size_t seekSamplesSize = 2;    // in front of a sound's MP3 data
constexpr size_t mp3BlockHeaderSize = 4; // samples of the block, samples to skip

std::vector<int16_t> decodePcm(std::span<const uint8_t> data, const SwfSoundFormat& format) {
    std::vector<int16_t> samples;
    const size_t size = format.soundSize == 0 ? 1 : 2, frame = size * channelsOf(format);
    samples.reserve(data.size() / size);
    for (size_t at = 0; at < data.size() / frame * frame; at += size)
        samples.push_back(static_cast<int16_t>(size == 1 ? (data[at] - 128) * 256 : data[at] | data[at + 1] << 8));
    return samples;
}

void skipFrames(Sound& sound, int64_t frames) {
    const uint64_t samples = uint64_t(std::max<int64_t>(frames, 0)) * sound.channels;
    const auto count = static_cast<std::ptrdiff_t>(std::min<uint64_t>(samples, sound.samples.size()));
    sound.samples.erase(sound.samples.begin(), sound.samples.begin() + count);
}

Sound emptySound(const SwfSoundFormat& format) { return {soundRate(format), channelsOf(format), {}}; }

[[noreturn]] void refuse(const SwfSoundFormat& format) {
    switch (encodingOf(format)) {
    case SoundEncoding::nellymoser16:
    case SoundEncoding::nellymoser8:
    case SoundEncoding::nellymoser: unsupportedMedia("Nellymoser sound is not decoded");
    case SoundEncoding::speex: unsupportedMedia("Speex sound is not decoded");
    default: unsupportedMedia("sound of format " + std::to_string(format.soundFormat) + " is not decoded");
    }
}

} // namespace

uint32_t soundRate(const SwfSoundFormat& format) { return 44100u >> (3 - (format.soundRate & 3)); }

bool canDecode(const SwfSoundFormat& format) {
    if (encodingOf(format) == SoundEncoding::mp3) {
#ifdef ZELK_HAVE_CODECS
        return true;
#else
        return false;
#endif
    }
    return isPcm(format) || encodingOf(format) == SoundEncoding::adpcm;
}

std::span<const uint8_t> mp3OfSound(std::span<const uint8_t> data) {
    if (data.size() < seekSamplesSize)
        badMedia("MP3: the data ends early");
    return data.subspan(seekSamplesSize);
}

std::vector<uint8_t> joinedBlocks(const SwfSoundFormat& format, const SoundBlocks& blocks) {
    std::vector<uint8_t> bytes;
    for (const SwfTagSoundStreamBlock* block : blocks) {
        std::span<const uint8_t> data = block->streamSoundData.span();
        if (encodingOf(format) == SoundEncoding::mp3)
            data = data.subspan(std::min(data.size(), mp3BlockHeaderSize));
        bytes.insert(bytes.end(), data.begin(), data.end());
    }
    return bytes;
}

Sound decodeSound(const SwfTagDefineSound& tag) {
    const std::span<const uint8_t> data = tag.soundData.span();
    const uint64_t most = tag.soundSampleCount == 0 ? UINT64_MAX : tag.soundSampleCount;
    Sound sound = emptySound(tag.format);
    if (isPcm(tag.format)) {
        sound.samples = decodePcm(data, tag.format);
    } else if (encodingOf(tag.format) == SoundEncoding::adpcm) {
        sound.samples = decodeAdpcm(data, sound.channels, most);
    } else if (encodingOf(tag.format) == SoundEncoding::mp3) {
        sound = decodeMp3(mp3OfSound(data));
        skipFrames(sound, static_cast<int16_t>(data[0] | data[1] << 8));
    } else {
        refuse(tag.format);
    }
    if (sound.frames() > most)
        sound.samples.resize(static_cast<size_t>(most) * sound.channels);
    return sound;
}

Sound decodeStream(const SwfTagSoundStreamHead& head, const SoundBlocks& blocks) {
    const SwfSoundFormat& format = head.streamFormat;
    Sound sound = emptySound(format);
    if (encodingOf(format) == SoundEncoding::adpcm) {
        for (const SwfTagSoundStreamBlock* block : blocks) {
            if (block->streamSoundData.empty())
                continue;
            const auto samples = decodeAdpcm(block->streamSoundData.span(), sound.channels, UINT64_MAX);
            sound.samples.insert(sound.samples.end(), samples.begin(), samples.end());
        }
        return sound;
    }
    const std::vector<uint8_t> bytes = joinedBlocks(format, blocks);
    if (encodingOf(format) == SoundEncoding::mp3) {
        sound = decodeMp3(bytes);
        skipFrames(sound, head.latencySeek);
    } else if (isPcm(format)) {
        sound.samples = decodePcm(bytes, format);
    } else {
        refuse(format);
    }
    return sound;
}

} // namespace zelk
