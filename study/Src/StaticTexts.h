// Static text as characters, and other characters in its place.
#pragma once

#include <string>
#include <vector>

#include "MovieTexts.h"
#include "TextFonts.h"

namespace zelk {

/// One record of a static text that has glyphs.
struct StaticText {
    uint32_t record = 0; ///< from 0
    std::optional<uint16_t> font;
    std::u32string characters;
    std::string problem; ///< why there are no characters; mostly empty
    TextRoom room;
};

std::vector<StaticText> staticTexts(const libswf::SwfTagDefineText& text, const TextFonts& fonts);

/// Writes characters into a record, with the advances of its font and the spacing that the record has beyond them. All
/// else of the record stays, and of the text all but its bounds. Throws TextRefusal, with nothing changed.
void putStaticText(libswf::SwfTagDefineText& text, uint32_t record, std::u32string_view characters,
                   const TextFonts& fonts, TextChangeOptions options);

} // namespace zelk
