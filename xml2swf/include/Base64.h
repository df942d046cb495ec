// Base64 of payloads: the standard alphabet with padding, a line feed after every 1,024 characters.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "XmlText.h"

namespace xml2swf {

void appendBase64(XmlText& out, std::span<const uint8_t> bytes);

/// Skips blanks and line ends. Throws Base64Error (offset within `text`) for a foreign character, missing padding or a
/// wrong length.
std::vector<uint8_t> decodeBase64(std::string_view text);

} // namespace xml2swf
