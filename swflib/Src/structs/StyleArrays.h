// What the readers and writers of styles share.
#pragma once

#include <string>

#include "SwfStream.h"

namespace libswf {

constexpr uint8_t longStyleCount = 0xFF; // a UI16 with the count follows

inline uint32_t readStyleCount(SwfIStream& stream, const char* field, bool extended) {
    const uint32_t count = stream.readUI8(field);
    if (count == longStyleCount && extended)
        return stream.readUI16(field);
    if (count == longStyleCount && !stream.context.fullForm)
        stream.markInexact("255 styles, which this tag can hold on reading only");
    return count;
}

/// On a counter 3 bytes from 255 styles on, also where the tag cannot hold as many: writing refuses them.
inline void writeStyleCount(SwfOStream& stream, const char* what, uint32_t count, bool extended) {
    const uint32_t mostInByte = longStyleCount - (stream.context.fullForm && !extended ? 0 : 1);
    if (count <= mostInByte) {
        stream.writeUI8(static_cast<uint8_t>(count));
        return;
    }
    const uint32_t most = extended ? 0xFFFF : mostInByte;
    if (count > most && !stream.isCounter())
        throw SwfException(SwfError::doesNotFit,
                           std::to_string(count) + " " + what + ", this tag holds at most " + std::to_string(most));
    stream.writeUI8(longStyleCount);
    stream.writeUI16(static_cast<uint16_t>(count));
}

[[noreturn]] inline void failForFillType(const SwfIStream& stream, uint8_t type) {
    stream.fail("FillStyleType", ("the type " + std::to_string(type) + " is not known").c_str());
}

/// Reads the items of an array, none of which starts after the end of the tag's body.
template <class ReadItem>
void readStyles(SwfIStream& stream, const char* field, bool extended, ReadItem readItem) {
    for (uint32_t left = readStyleCount(stream, field, extended); left != 0; --left) {
        if (stream.bodyLeft() == 0)
            stream.fail(field, "the body ends before the last of its styles");
        readItem();
    }
}

} // namespace libswf
