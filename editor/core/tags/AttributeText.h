// Attributes in the text of a start tag, read and changed where they stand.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zelk {

/// The value as it stands between its quotes, references and all. `startTag` is one well-formed start tag.
std::optional<std::string> attributeText(std::string_view startTag, std::string_view name);

/// Replaces the value of the attribute, or adds the attribute behind the others. `value` is plain text.
void setAttributeText(std::string& startTag, std::string_view name, std::string_view value);

/// A value for any quotes: "<", "&" and both kinds of quotes as references.
std::string escapedAttribute(std::string_view value);

} // namespace zelk
