#include "SwfTagsControl.h"

namespace libswf {

SwfTagSetBackgroundColor::SwfTagSetBackgroundColor(SwfIStream& stream) : SwfTagSetBackgroundColor() {
    stream.context.alpha = false;
    color.read(stream);
}

void SwfTagSetBackgroundColor::writeBody(SwfOStream& stream) {
    stream.context.alpha = false;
    color.write(stream);
}

SwfTagFrameLabel::SwfTagFrameLabel(SwfIStream& stream) : SwfTagFrameLabel() {
    stream.readString(name, "Name");
    if (stream.bodyLeft() != 0)
        isAnchor = stream.readUI8("NamedAnchor") != 0;
}

void SwfTagFrameLabel::writeBody(SwfOStream& stream) {
    name.write(stream, true);
    if (isAnchor)
        stream.writeUI8(1);
}

} // namespace libswf
