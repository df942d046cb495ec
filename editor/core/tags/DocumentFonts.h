// The fonts of a document, for texts of it that are looked at by themselves.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "FontCharacters.h"
#include "MovieLayout.h"
#include "TagIndex.h"

namespace zelk {

/// The ids of the fonts in which an element gives glyphs by their characters, each once; none in the classic form.
std::vector<uint16_t> spelledFonts(std::string_view element, bool fullForm);

/// Takes what the elements of some tags, one behind the other, say of fonts. What does not compile says nothing.
void addFonts(xml2swf::FontTables& fonts, std::string_view elements, MovieLayout layout);

/// What a document says of some fonts.
xml2swf::FontTables fontsOf(std::string_view document, const TagIndex& tags, const std::vector<uint16_t>& ids);

} // namespace zelk
