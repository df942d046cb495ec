// zlib data, made on several threads.
#pragma once

#include <cstdint>
#include <span>

#include "SwfVector.h"

namespace libswf {

/// Appends the body in zlib's format. One of 300 KB or more is deflated in parts of 150 KB to 1 MB, each with what
/// stands before it in its window; the bytes depend on nothing but body and level. Level 0 to 9, or -1 for the
/// library's own; threads 0 for as many as the machine has cores. Throws SwfException code 1 when the library fails.
void appendDeflated(SwfVector<uint8_t>& target, std::span<const uint8_t> body, int level, uint32_t threads);

} // namespace libswf
