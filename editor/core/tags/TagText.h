// Reading and changing the text of single elements.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ElementText.h"

namespace zelk {

/// The elements of a text that holds one or more and nothing else but blanks and comments, each with the indentation of
/// its own line taken away. Throws XmlException or NotMovieException, with its place in `text`, for any other text.
std::vector<std::string> splitElements(std::string_view text);

/// Without the blanks around it.
std::string trimmed(std::string_view text);

/// An element with another indentation: `from` at the start of its lines becomes `to`. Line ends, payloads, values and
/// comments stay as they are.
std::string reindented(std::string_view element, std::string_view from, std::string_view to);
/// An element with other line ends between its elements. Payloads, values and comments stay as they are.
std::string withLineEnds(std::string_view element, std::string_view lineEnd);

/// What ends the lines of a text, as its first line has it; a line feed when it has one line only.
std::string_view lineEndOf(std::string_view text);

/// The blanks at the start of the line in which `offset` is.
std::string_view lineIndent(std::string_view text, size_t offset);

} // namespace zelk
