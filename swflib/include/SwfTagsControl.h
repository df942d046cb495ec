// Tags that set up or mark the timeline.
#pragma once

#include "SwfTag.h"

namespace libswf {

/// SetBackgroundColor (9): RGB.
class SwfTagSetBackgroundColor : public SwfTag {
public:
    SwfColor color;

    SwfTagSetBackgroundColor() : SwfTag(9) {}
    explicit SwfTagSetBackgroundColor(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// FrameLabel (43). An import table (57) read from a file becomes one as well, its URL being the label.
class SwfTagFrameLabel : public SwfTag {
public:
    SwfString name;
    bool isAnchor = false; ///< the name can stand behind # in a page's address; one byte 1 after the name

    SwfTagFrameLabel() : SwfTag(43) {}
    explicit SwfTagFrameLabel(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
