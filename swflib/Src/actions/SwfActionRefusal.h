// How the readers of actions refuse what they cannot read.
#pragma once

#include "SwfStream.h"

namespace libswf {

/// Throws SwfException code 3. Under keepRaw only marks the stream inexact: the action is then kept as bytes, and
/// hostile data cannot raise an exception every few bytes.
inline void refuse(SwfIStream& stream, const char* field, const char* problem) {
    if (!stream.context.keepRaw)
        stream.fail(field, problem);
    stream.markInexact(problem);
}

} // namespace libswf
