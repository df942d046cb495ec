// Checks of a picture's size, before anything is allocated for it.
#pragma once

#include "ImageCodec.h"

namespace zelk {

/// Throws code 3 for a picture without pixels, code 2 for more than Image::mostPixels or 65,535 in one direction.
void checkSize(uint64_t width, uint64_t height);
/// Also throws code 3 when a file of this many bytes cannot hold the picture.
void checkSize(uint64_t width, uint64_t height, size_t fileSize);

/// Of a checked size; all bytes are 0.
Image blankImage(uint32_t width, uint32_t height);

} // namespace zelk
