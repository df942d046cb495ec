// The markers of JPEG data, read without a library.
#pragma once

#include <optional>

#include "ImageCodec.h"

namespace zelk {

struct JpegSize {
    uint32_t width, height; ///< pixels
    bool operator==(const JpegSize&) const = default;
};

/// What the frame header says; none when there is none in front of the first scan.
std::optional<JpegSize> jpegSize(std::span<const uint8_t> jpeg);

} // namespace zelk
