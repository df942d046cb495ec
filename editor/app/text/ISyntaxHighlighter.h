// Colours parts of a text.
#pragma once

#include <cstddef>

namespace zelk {

class TextControl;

class ISyntaxHighlighter {
public:
    virtual ~ISyntaxHighlighter() = default;
    /// Recolours the bytes from `start` to before `end`. The text, its undo steps and whether it counts as modified
    /// stay as they are. `start` has to begin a line.
    virtual void highlight(TextControl& control, size_t start, size_t end) = 0;
};

} // namespace zelk
