// Where tags stand in a text that was written from a movie.
#pragma once

#include <cstddef>

#include "SwfTag.h"

namespace xml2swf {

/// Where a tag's element stands in the text that swfToXml gives.
struct TagText {
    size_t start; ///< of "<"
    size_t end;   ///< after ">"
    const libswf::SwfTag* tag;
};

} // namespace xml2swf
