// Removal of characters from the display list.
#pragma once

#include "SwfTag.h"

namespace libswf {

/// RemoveObject (5): takes the character away from the depth.
class SwfTagRemoveObject : public SwfTag {
public:
    uint16_t characterId = 0;
    uint16_t depth = 0;

    SwfTagRemoveObject() : SwfTag(5) {}
    explicit SwfTagRemoveObject(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// RemoveObject2 (28): clears the depth.
class SwfTagRemoveObject2 : public SwfTag {
public:
    uint16_t depth = 0;

    SwfTagRemoveObject2() : SwfTag(28) {}
    explicit SwfTagRemoveObject2(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
