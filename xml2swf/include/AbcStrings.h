// Strings of blocks of ActionScript 3 as they stand in XML.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace xml2swf {

/// What a text stands in, which decides what has to be escaped with "\" in it.
enum class AbcTextPlace : uint8_t {
    value,  ///< alone: only "\" and what cannot stand in XML
    inside, ///< between brackets of a name: brackets and marks too
    name    ///< the last part of a name: ":" too
};

/// Appends bytes as text: control characters as \n, \r, \t or \x1f, bytes that are no UTF-8 as \xff.
void appendAbcText(std::string& out, std::string_view bytes, AbcTextPlace place);
/// The bytes of a text; nothing for one with an escape that means nothing.
std::optional<std::string> abcBytes(std::string_view text);

/// Appends text as it stands in an attribute's value, in scripts of all kinds.
void appendAttributeText(std::string& out, std::string_view text);

} // namespace xml2swf
