// What the preview pane is asked to show.
#pragma once

#include <functional>
#include <string>

#include "MovieLayout.h"

namespace zelk {

struct PreviewRequest {
    std::string element; ///< of the tag; empty for none
    /// [GUI thread] The element that defines a character, and behind it those that say what the glyphs of a font are;
    /// empty for none. Called while the preview is built, as long as it is the last one asked for.
    std::function<std::string(uint16_t characterId)> definition;
    std::string jpegTables; ///< the movie's JPEGTables element; may be empty
    MovieLayout layout;     ///< of the movie
};

} // namespace zelk
