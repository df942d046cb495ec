// An XML text with each element on a line of its own, as the program writes it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "EditableText.h"

namespace xml2swf {
class IProgressReporter;
}

namespace zelk {

struct FormatStyle {
    std::string unit = std::string(4, ' '); ///< of indentation
    std::string lineEnd = std::string(1, '\n');
};

struct FormattedXml {
    /// Ascending and some megabyte big at most, each from the start of a line's blanks on; what stays the same is left
    /// out. Each leaves a well-formed text, whatever becomes of the others.
    std::vector<TextChange> changes;
    size_t caret = 0; ///< where the place that was given is then
};

/// [any thread] Of the smallest run of whole elements that [start, end) touches and that stand in one element; of all
/// of the text where that is empty. Elements that hold text, or nothing but blanks, stay with all that is in them, and
/// so do values of attributes. Throws XmlException for a text that is not well-formed.
FormattedXml formatXml(std::string_view text, size_t start, size_t end, size_t caret, const FormatStyle& style = {},
                       xml2swf::IProgressReporter* progress = nullptr);

/// Whether a line is so long that no one wants to read it, and not because of what stands in one element.
bool hasVeryLongLines(std::string_view text);

} // namespace zelk
