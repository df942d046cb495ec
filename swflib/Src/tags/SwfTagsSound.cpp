#include "SwfTagsSound.h"

namespace libswf {

SwfTagDefineSound::SwfTagDefineSound(SwfIStream& stream) : SwfTagDefineSound() {
    characterId = stream.readUI16("SoundId");
    format.read(stream, "SoundFormat");
    soundSampleCount = stream.readUI32("SoundSampleCount");
    soundData = stream.readRest("SoundData");
}

void SwfTagDefineSound::writeBody(SwfOStream& stream) {
    stream.writeUI16(characterId);
    format.write(stream);
    stream.writeUI32(soundSampleCount);
    stream.writeBytes(soundData.span());
}

SwfTagStartSound::SwfTagStartSound(SwfIStream& stream) : SwfTagStartSound() {
    soundId = stream.readUI16("SoundId");
    soundInfo.read(stream);
}

void SwfTagStartSound::writeBody(SwfOStream& stream) {
    stream.writeUI16(soundId);
    soundInfo.write(stream);
}

SwfTagStartSound2::SwfTagStartSound2(SwfIStream& stream) : SwfTagStartSound2() {
    stream.readString(soundClassName, "SoundClassName");
    soundInfo.read(stream);
}

void SwfTagStartSound2::writeBody(SwfOStream& stream) {
    stream.writeString(soundClassName);
    soundInfo.write(stream);
}

void SwfTagSoundStreamHead::read(SwfIStream& stream) {
    playbackFormat.read(stream, "PlaybackInfo");
    streamFormat.read(stream, "StreamInfo");
    sampleCount = stream.readUI16("SampleCount");
    const bool mayHaveLatency = stream.context.fullForm || streamFormat.soundFormat == SwfSoundFormat::mp3;
    hasLatencySeek = mayHaveLatency && stream.bodyLeft() >= 2;
    if (hasLatencySeek)
        latencySeek = stream.readSI16("LatencySeek");
}

void SwfTagSoundStreamHead::writeBody(SwfOStream& stream) {
    playbackFormat.write(stream);
    streamFormat.write(stream);
    stream.writeUI16(sampleCount);
    if (stream.context.fullForm ? hasLatencySeek : streamFormat.soundFormat == SwfSoundFormat::mp3)
        stream.writeSI16(latencySeek);
}

SwfTagSoundStreamBlock::SwfTagSoundStreamBlock(SwfIStream& stream) : SwfTagSoundStreamBlock() {
    streamSoundData = stream.readRest("StreamSoundData");
}

void SwfTagSoundStreamBlock::writeBody(SwfOStream& stream) { stream.writeBytes(streamSoundData.span()); }

} // namespace libswf
