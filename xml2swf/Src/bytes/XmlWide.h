// What not every processor can do.
#pragma once

#ifdef __SSE2__
#include <immintrin.h>
#define ZELK_WIDE [[gnu::target("avx2,bmi,popcnt")]] // on functions that are called where canBeWide()
#endif

namespace xml2swf {

/// The processor can work on 32 bytes at a time.
bool canBeWide();

} // namespace xml2swf
