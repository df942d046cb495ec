// The text control as screen readers see it.
#pragma once

namespace zelk {

/// From now on text controls tell screen readers the line of the caret, instead of counting all characters at every
/// key.
void installTextAccessibility();

} // namespace zelk
