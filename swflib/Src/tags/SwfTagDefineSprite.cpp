#include "SwfTagDefineSprite.h"

namespace libswf {

SwfTagDefineSprite::SwfTagDefineSprite(SwfIStream& stream) : SwfTagDefineSprite() {
    spriteId = stream.readUI16("SpriteId");
    frameCount = stream.readUI16("FrameCount");
    keepsFrameCount = stream.context.fullForm;
    if (stream.position() > stream.limit())
        stream.fail("SpriteId", "the body is shorter than 4 bytes");
    tags.readUntil(stream, stream.limit());
}

void SwfTagDefineSprite::prepare() {
    if (keepsFrameCount)
        return;
    const uint32_t frames = tags.showFrames();
    if (frames > 0xFFFF)
        throw SwfException(SwfError::doesNotFit, "a sprite of more than 65,535 frames");
    frameCount = static_cast<uint16_t>(frames);
}

void SwfTagDefineSprite::writeBody(SwfOStream& stream) {
    stream.writeUI16(spriteId);
    stream.writeUI16(frameCount);
    if (stream.isCounter())
        stream.count(tags.getSize(stream.context));
    else
        tags.write(stream);
}

} // namespace libswf
