#include "SwfSoundInfo.h"

namespace libswf {

void SwfSoundFormat::read(SwfIStream& stream, const char* field) {
    const uint8_t bits = stream.readUI8(field);
    soundFormat = bits >> 4;
    soundRate = bits >> 2 & 3;
    soundSize = bits >> 1 & 1;
    soundType = bits & 1;
}

void SwfSoundFormat::write(SwfOStream& stream) const {
    stream.writeUI8(
        static_cast<uint8_t>((soundFormat & 15) << 4 | (soundRate & 3) << 2 | (soundSize & 1) << 1 | (soundType & 1)));
}

SwfSoundEnvelope::SwfSoundEnvelope(SwfIStream& stream) {
    pos44 = stream.readUI32("Pos44");
    leftLevel = stream.readUI16("LeftLevel");
    rightLevel = stream.readUI16("RightLevel");
}

void SwfSoundEnvelope::write(SwfOStream& stream) const {
    stream.writeUI32(pos44);
    stream.writeUI16(leftLevel);
    stream.writeUI16(rightLevel);
}

void SwfSoundInfo::read(SwfIStream& stream) {
    flags = stream.readUI8("SoundInfo flags");
    if (has(hasInPoint))
        inPoint = stream.readUI32("InPoint");
    if (has(hasOutPoint))
        outPoint = stream.readUI32("OutPoint");
    if (has(hasLoops))
        loopCount = stream.readUI16("LoopCount");
    if (!has(hasEnvelope))
        return;
    for (uint32_t left = stream.readUI8("EnvPoints"); left != 0; --left) {
        if (stream.bodyLeft() == 0)
            stream.fail("SoundEnvelope", "the tag ends before its envelope");
        envelope.append(SwfSoundEnvelope(stream));
    }
}

uint32_t SwfSoundInfo::getSize(SwfContext& context) {
    return size = measure(context, [&](SwfOStream& stream) { write(stream); });
}

void SwfSoundInfo::write(SwfOStream& stream) const {
    stream.writeUI8(flags);
    if (has(hasInPoint))
        stream.writeUI32(inPoint);
    if (has(hasOutPoint))
        stream.writeUI32(outPoint);
    if (has(hasLoops))
        stream.writeUI16(loopCount);
    if (!has(hasEnvelope))
        return;
    if (envelope.size() > 0xFF)
        throw SwfException(SwfError::doesNotFit, "a sound envelope of more than 255 points");
    stream.writeUI8(static_cast<uint8_t>(envelope.size()));
    for (const SwfSoundEnvelope& point : envelope)
        point.write(stream);
}

} // namespace libswf
