// Samples as a picture.
#pragma once

#include <span>

#include "Drawing.h"

namespace zelk {

/// For each channel a band, one above the other, as high as the loudest that 16 bits can be; in it from column to
/// column the lowest and the highest sample. `samples` are those of the channels in turn.
Drawing waveform(std::span<const int16_t> samples, uint32_t channels);

} // namespace zelk
