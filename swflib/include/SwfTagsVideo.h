// Tags of embedded video. Frames are carried as bytes.
#pragma once

#include "SwfTag.h"

namespace libswf {

/// DefineVideoStream (60).
class SwfTagDefineVideoStream : public SwfDefinitionTag {
public:
    /// Values of `deblocking`. 2 to 5 are the levels 1 to 4 of the filter, 6 and 7 are reserved.
    enum Deblocking : uint8_t { useVideo = 0, off = 1, level1 = 2, level4 = 5 };

    uint16_t numFrames = 0;
    uint16_t width = 0; ///< pixels
    uint16_t height = 0;
    bool smoothing = false;
    uint8_t deblocking = useVideo; ///< 0 to 7
    uint8_t reserved = 0;          ///< bits 4 to 7 of the flags byte, 0 to 15
    uint8_t codecId = 0;           ///< 2 H.263, 3 screen video, 4 VP6, 5 VP6 with alpha, …

    SwfTagDefineVideoStream() : SwfDefinitionTag(60) {}
    explicit SwfTagDefineVideoStream(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// VideoFrame (61).
class SwfTagVideoFrame : public SwfTag {
public:
    uint16_t streamId = 0;
    uint16_t frameNum = 0;
    SwfBytes data;

    SwfTagVideoFrame() : SwfTag(61) {}
    explicit SwfTagVideoFrame(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
