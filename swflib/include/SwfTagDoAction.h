// Tags whose body is a list of actions.
#pragma once

#include "SwfAction.h"
#include "SwfTag.h"

namespace libswf {

/// DoAction (12): runs when its frame is reached.
class SwfTagDoAction : public SwfTag {
public:
    SwfActions actions;

    SwfTagDoAction() : SwfTag(12) {}
    explicit SwfTagDoAction(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// DoInitAction (59): runs once, before the sprite first appears.
class SwfTagDoInitAction : public SwfTag {
public:
    uint16_t spriteId = 0;
    SwfActions actions;

    SwfTagDoInitAction() : SwfTag(59) {}
    explicit SwfTagDoInitAction(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
