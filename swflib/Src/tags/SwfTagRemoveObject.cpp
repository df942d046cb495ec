#include "SwfTagRemoveObject.h"

namespace libswf {

SwfTagRemoveObject::SwfTagRemoveObject(SwfIStream& stream) : SwfTagRemoveObject() {
    characterId = stream.readUI16("CharacterId");
    depth = stream.readUI16("Depth");
}

void SwfTagRemoveObject::writeBody(SwfOStream& stream) {
    stream.writeUI16(characterId);
    stream.writeUI16(depth);
}

SwfTagRemoveObject2::SwfTagRemoveObject2(SwfIStream& stream) : SwfTagRemoveObject2() {
    depth = stream.readUI16("Depth");
}

void SwfTagRemoveObject2::writeBody(SwfOStream& stream) { stream.writeUI16(depth); }

} // namespace libswf
