// Tags that define, start and stream sounds. Samples are carried as bytes.
#pragma once

#include "SwfSoundInfo.h"
#include "SwfTag.h"

namespace libswf {

/// DefineSound (14).
class SwfTagDefineSound : public SwfDefinitionTag {
public:
    SwfSoundFormat format;
    uint32_t soundSampleCount = 0;
    SwfBytes soundData; ///< for MP3 with the seek samples (SI16) in front

    SwfTagDefineSound() : SwfDefinitionTag(14) {}
    explicit SwfTagDefineSound(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// StartSound (15).
class SwfTagStartSound : public SwfTag {
public:
    uint16_t soundId = 0;
    SwfSoundInfo soundInfo;

    SwfTagStartSound() : SwfTag(15) {}
    explicit SwfTagStartSound(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// StartSound2 (89): starts a sound by the class behind it.
class SwfTagStartSound2 : public SwfTag {
public:
    SwfString soundClassName;
    SwfSoundInfo soundInfo;

    SwfTagStartSound2() : SwfTag(89) {}
    explicit SwfTagStartSound2(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// SoundStreamHead (18): the format of the sound that runs along the timeline. SoundStreamHead2 shares the layout.
class SwfTagSoundStreamHead : public SwfTag {
public:
    SwfSoundFormat playbackFormat; ///< advice for playing; its soundFormat is a reserved field, 0 in published movies
    SwfSoundFormat streamFormat;   ///< of the sound blocks
    uint16_t sampleCount = 0;      ///< mean samples in a block
    /// Samples to skip. Belongs to MP3; encoders that leave it out there mean 0. In the classic form it is written for
    /// them; the full form writes what is there.
    int16_t latencySeek = 0;
    bool hasLatencySeek = false; ///< full form

    SwfTagSoundStreamHead() : SwfTag(18) {}
    explicit SwfTagSoundStreamHead(SwfIStream& stream) : SwfTagSoundStreamHead() { read(stream); }

protected:
    using SwfTag::SwfTag;
    void read(SwfIStream& stream);
    void writeBody(SwfOStream& stream) override;
};

/// SoundStreamHead2 (45): any sound format.
class SwfTagSoundStreamHead2 : public SwfTagSoundStreamHead {
public:
    SwfTagSoundStreamHead2() : SwfTagSoundStreamHead(45) {}
    explicit SwfTagSoundStreamHead2(SwfIStream& stream) : SwfTagSoundStreamHead2() { read(stream); }
};

/// SoundStreamBlock (19): the samples of one frame. May be empty.
class SwfTagSoundStreamBlock : public SwfTag {
public:
    SwfBytes streamSoundData;

    SwfTagSoundStreamBlock() : SwfTag(19) {}
    explicit SwfTagSoundStreamBlock(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
