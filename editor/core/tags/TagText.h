// Reading and changing the text of single elements.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelk {

/// The name of the element that starts here.
std::string_view elementName(std::string_view element);
/// From "<" to behind ">".
std::string_view startTagOf(std::string_view element);

struct TagAttribute {
    std::string_view name;
    std::string_view value; ///< as it stands between the quotes
};

/// The attributes of a well-formed start tag, in their order.
std::vector<TagAttribute> attributesOf(std::string_view startTag);
/// One of them; none when it is missing.
std::optional<TagAttribute> attributeOf(std::string_view startTag, std::string_view name);

/// Text whose references to characters are replaced by these. An unknown one stays.
std::string decoded(std::string_view value);
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
