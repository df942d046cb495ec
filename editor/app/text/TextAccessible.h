// The text control as screen readers see it.
#pragma once

namespace zelk {

class TextControl;

/// From now on text controls tell screen readers their lines, words, caret and selection, by places in bytes, instead
/// of counting all characters at every key.
void installTextAccessibility();

/// The caret has moved.
void tellCaret(TextControl& control);

} // namespace zelk
