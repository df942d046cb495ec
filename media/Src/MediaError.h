// The failures of media data, as swflib's exceptions.
#pragma once

#include <string>

#include "SwfException.h"

namespace zelk {

[[noreturn]] inline void badMedia(std::string text) {
    throw libswf::SwfException(libswf::SwfError::badData, std::move(text));
}

[[noreturn]] inline void unsupportedMedia(std::string text) {
    throw libswf::SwfException(libswf::SwfError::doesNotFit, std::move(text));
}

[[noreturn]] inline void noCodec(const char* kind) {
    unsupportedMedia(std::string("this build cannot read or write ") + kind);
}

} // namespace zelk
