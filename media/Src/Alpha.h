// Colours that are multiplied with alpha, as tags hold them, and straight ones.
#pragma once

#include <algorithm>
#include <cstdint>

namespace zelk {

/// Going there and back changes nothing: straight(multiplied(straight(c, a), a), a) is straight(c, a). A colour above
/// its alpha, which lossy pictures have, counts as full.
constexpr uint8_t straight(uint8_t color, uint8_t alpha) {
    return alpha == 0 ? uint8_t(0) : static_cast<uint8_t>(std::min(255, (color * 255 + alpha / 2) / alpha));
}

constexpr uint8_t multiplied(uint8_t color, uint8_t alpha) { return static_cast<uint8_t>((color * alpha + 127) / 255); }

} // namespace zelk
