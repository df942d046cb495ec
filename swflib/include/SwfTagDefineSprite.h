// DefineSprite (39): a movie clip with a tag list of its own.
#pragma once

#include "SwfTags.h"

namespace libswf {

/// Nested lists end at the sprite's own body. Nesting deeper than SwfContext::maxDepth is kept as SwfTagUnknown.
class SwfTagDefineSprite : public SwfTag {
public:
    uint16_t spriteId = 0;
    uint16_t frameCount = 0; ///< as read; on write the number of ShowFrame tags, at most 65,535 (code 2)
    /// Full form: the count is written as it stands. Players loop by it, whatever the number of frames.
    bool keepsFrameCount = false;
    SwfTags tags;

    SwfTagDefineSprite() : SwfTag(39) {}
    explicit SwfTagDefineSprite(SwfIStream& stream);

    void prepare() override;

protected:
    void writeBody(SwfOStream& stream) override;
};

/// The sprite of a movie that is read tolerantly.
class SwfTagDefineSpriteSafe : public SwfTagDefineSprite {
public:
    using SwfTagDefineSprite::SwfTagDefineSprite;
    bool isSafe() const override { return true; }
};

} // namespace libswf
