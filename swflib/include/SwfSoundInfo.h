// Records that the sound tags share.
#pragma once

#include "SwfStream.h"
#include "SwfStructs.h"

namespace libswf {

/// The byte that tells how samples are encoded.
class SwfSoundFormat : public SwfStruct {
public:
    static constexpr uint8_t mp3 = 2;

    uint8_t soundFormat = 0; ///< 0 to 15: 0 PCM, 1 ADPCM, 2 MP3, 3 little-endian PCM, 6 Nellymoser, …
    uint8_t soundRate = 0;   ///< 0 to 3: 5.5, 11, 22, 44 kHz
    uint8_t soundSize = 0;   ///< 0: 8 bits a sample, 1: 16 bits
    uint8_t soundType = 0;   ///< 0: mono, 1: stereo

    void read(SwfIStream& stream, const char* field);
    void write(SwfOStream& stream) const;
};

/// One point of a volume envelope.
class SwfSoundEnvelope final : public SwfStruct {
public:
    uint32_t pos44 = 0;      ///< in samples of 44 kHz, whatever the sound's rate
    uint16_t leftLevel = 0;  ///< 0 to 32768
    uint16_t rightLevel = 0; ///< 0 to 32768

    SwfSoundEnvelope() = default;
    explicit SwfSoundEnvelope(SwfIStream& stream);

    void write(SwfOStream& stream) const;
};

/// SOUNDINFO: how a sound is started or stopped. The flags decide which fields are in the file; bits 6 and 7 are
/// reserved and come back as they were read. More than 255 envelope points throw SwfException code 2 on write.
class SwfSoundInfo : public SwfStruct {
public:
    enum Flag : uint8_t {
        hasInPoint = 0x01,
        hasOutPoint = 0x02,
        hasLoops = 0x04,
        hasEnvelope = 0x08,
        syncNoMultiple = 0x10, ///< do not start the sound when it is playing
        syncStop = 0x20        ///< stop the sound
    };
    static constexpr uint8_t reservedBits = 0xC0, reservedShift = 6;

    uint8_t flags = 0;
    uint32_t inPoint = 0;   ///< first sample played, at 44 kHz
    uint32_t outPoint = 0;  ///< last sample played, at 44 kHz
    uint16_t loopCount = 0; ///< times it plays
    SwfVector<SwfSoundEnvelope> envelope;

    SwfSoundInfo() = default;
    explicit SwfSoundInfo(SwfIStream& stream) { read(stream); }

    bool has(Flag flag) const { return (flags & flag) != 0; }
    void set(Flag flag, bool on) { flags = static_cast<uint8_t>(on ? flags | flag : flags & ~flag); }

    void read(SwfIStream& stream);
    uint32_t getSize(SwfContext& context);
    void write(SwfOStream& stream) const;
};

} // namespace libswf
