// Texts and text fields as drawings.
#pragma once

#include "Drawing.h"
#include "SwfTagDefineEditText.h"
#include "SwfTagDefineFont.h"
#include "SwfTagDefineText.h"

namespace zelk {

/// Null for a font that is missing, has no outlines or cannot be read.
using FontLookup = std::function<std::shared_ptr<libswf::SwfGlyphFont>(uint16_t characterId)>;

/// Glyphs of missing fonts are boxes as wide as their advance.
void addText(Drawing& drawing, const libswf::SwfTagDefineText& text, const FontLookup& fonts, size_t& edges);

/// What stands in the field: by the outlines of its font where it has them, else by a font of the system. Of HTML only
/// lines and the first colour and size count.
void addTextField(Drawing& drawing, const libswf::SwfTagDefineEditText& field, const FontLookup& fonts, size_t& edges);

} // namespace zelk
