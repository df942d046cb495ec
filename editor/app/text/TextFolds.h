// Folding by indentation, which in a movie's XML is folding by element. A line's level needs only that line and the
// next, so nothing is worked out before it is on the screen.
#pragma once

namespace zelk {

class TextControl;

void setFoldLevel(TextControl& control, long line);
/// Of a line that begins a fold and all that belongs to it: what the control needs to fold it.
void setFoldLevelsBelow(TextControl& control, long header);
/// The line itself, or the nearest one above whose fold it is in; -1 when there is none.
long foldHeader(TextControl& control, long line);

} // namespace zelk
