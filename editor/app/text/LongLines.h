// Lines that take too long to draw: base64 of a megabyte, or a whole movie in one line.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "QuoteMap.h"

namespace zelk {

constexpr char hiddenStyle = 30; ///< of bytes that are not drawn; they are all there

/// The control takes some milliseconds for each so many bytes of a line that it draws.
constexpr size_t longLine = 2000;

/// The classes in which the bytes of a line are coloured. The base64 of payload elements is hidden but for its start,
/// its end and what is around the caret; all else is shown, in a line of more than some 200 KB all that is near the
/// caret.
std::string stylesOfLongLine(std::string_view text, size_t start, size_t end, size_t caret, QuoteMap::State state);

} // namespace zelk
