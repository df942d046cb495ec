#include "SwfTagsVideo.h"

namespace libswf {

SwfTagDefineVideoStream::SwfTagDefineVideoStream(SwfIStream& stream) : SwfTagDefineVideoStream() {
    characterId = stream.readUI16("CharacterId");
    numFrames = stream.readUI16("NumFrames");
    width = stream.readUI16("Width");
    height = stream.readUI16("Height");
    const uint8_t flags = stream.readUI8("video flags");
    reserved = flags >> 4;
    deblocking = flags >> 1 & 7;
    smoothing = (flags & 1) != 0;
    codecId = stream.readUI8("CodecId");
}

void SwfTagDefineVideoStream::writeBody(SwfOStream& stream) {
    stream.writeUI16(characterId);
    stream.writeUI16(numFrames);
    stream.writeUI16(width);
    stream.writeUI16(height);
    stream.writeUI8(static_cast<uint8_t>((reserved & 15) << 4 | (deblocking & 7) << 1 | (smoothing ? 1 : 0)));
    stream.writeUI8(codecId);
}

SwfTagVideoFrame::SwfTagVideoFrame(SwfIStream& stream) : SwfTagVideoFrame() {
    streamId = stream.readUI16("StreamId");
    frameNum = stream.readUI16("FrameNum");
    data = stream.readRest("Data");
}

void SwfTagVideoFrame::writeBody(SwfOStream& stream) {
    stream.writeUI16(streamId);
    stream.writeUI16(frameNum);
    stream.writeBytes(data.span());
}

} // namespace libswf
