#include "SwfTagDoAction.h"

namespace libswf {

SwfTagDoAction::SwfTagDoAction(SwfIStream& stream) : SwfTagDoAction() { actions.readUntilEnd(stream); }

void SwfTagDoAction::writeBody(SwfOStream& stream) { actions.measureOrWrite(stream); }

SwfTagDoInitAction::SwfTagDoInitAction(SwfIStream& stream) : SwfTagDoInitAction() {
    spriteId = stream.readUI16("SpriteId");
    actions.readUntilEnd(stream);
}

void SwfTagDoInitAction::writeBody(SwfOStream& stream) {
    stream.writeUI16(spriteId);
    actions.measureOrWrite(stream);
}

} // namespace libswf
