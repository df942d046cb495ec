// Picture files by their libraries.
#pragma once

#include "ImageCodec.h"

namespace zelk {

// Each throws as ImageCodec.h says.
Image decodeJpeg(std::span<const uint8_t> file);
Image decodePng(std::span<const uint8_t> file);
Image decodeGif(std::span<const uint8_t> file);

} // namespace zelk
