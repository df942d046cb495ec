// The strings of a movie as UTF-8, and back.
#pragma once

#include <string>
#include <string_view>

#include "XmlCharacters.h"

namespace zelk {

using xml2swf::characterName;
using xml2swf::fromUtf8;
using xml2swf::toUtf8;

/// A string of a movie as people read it: movies up to version 5, and later ones whose string is no UTF-8, have
/// Windows-1252. Lines that end with \r alone end with \n here.
std::string shownString(std::string_view bytes, uint8_t version);
/// The bytes that stand for a text in place of others. Throws TextRefusal for characters that the code page lacks, and
/// for a NUL.
std::string storedString(std::string_view text, std::string_view before, uint8_t version);

/// Why a text cannot be put in its place, in words that follow its key.
struct TextRefusal {
    std::string reason;
};

} // namespace zelk
