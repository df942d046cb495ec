// The drawing of a tag, with the characters that it uses.
#pragma once

#include <memory>

#include "Drawing.h"
#include "SwfTags.h"

namespace zelk {

/// Where other characters come from. Both may be left empty and may throw: a character that fails is missing.
struct Characters {
    std::function<std::shared_ptr<libswf::SwfTag>(uint16_t characterId)> definition; ///< null for none
    BitmapLookup bitmap;
};

/// Shapes, morph shapes at a ratio from 0 to 1, texts, bitmaps, the first frame of a sprite, a button that is up, what
/// a PlaceObject tag of any version places. Empty for what cannot be drawn. Throws only what runs out of memory.
Drawing drawTag(const libswf::SwfTag& tag, const Characters& characters, double ratio = 0);

/// A movie's first frame in which something is to be seen; of a long preloader only the first frames are tried.
Drawing drawMovie(const libswf::SwfTags& tags, const Characters& characters);

/// It is a kind of tag that drawTag knows.
bool isDrawable(const libswf::SwfTag& tag);

} // namespace zelk
