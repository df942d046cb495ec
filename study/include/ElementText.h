// Names and attributes in the text of single elements.
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

} // namespace zelk
