// DefineBitsLossless and DefineBitsLossless2 from and to pixels.
#pragma once

#include <memory>

#include "ImageCodec.h"

namespace zelk {

/// Format 3 is a table of colours and rows of indices, 4 rows of 15 bits a pixel (not in DefineBitsLossless2), 5 four
/// bytes a pixel, alpha or nothing first. Rows of 3 and 4 are filled up to four bytes.
Image decodeLossless(const libswf::SwfTagDefineBitsLossless& tag);

/// DefineBitsLossless for an opaque picture, otherwise DefineBitsLossless2. Format 3 where 256 colours are enough.
std::shared_ptr<libswf::SwfTagDefineBitsLossless> encodeLossless(const Image& image, uint16_t characterId,
                                                                 bool withAlpha);

} // namespace zelk
