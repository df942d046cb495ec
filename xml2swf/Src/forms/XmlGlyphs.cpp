#include "XmlGlyphs.h"

#include <iterator>

#include "XmlCharacters.h"
#include "XmlErrors.h"

namespace xml2swf {

using namespace libswf;

const FontCharacters* MovieFonts::find(uint16_t fontId) const {
    std::call_once(_once, [this] {
        if (_others != nullptr)
            _tables = *_others;
        if (_movie.tags == nullptr)
            return;
        for (const auto& tag : _movie.tags->items())
            _tables.add(*tag, _movie);
    });
    const FontCodes* font = _tables.find(fontId);
    return font == nullptr ? nullptr : &font->characters;
}

void SpelledTexts::take(SpelledTexts&& others) {
    _texts.insert(_texts.end(), std::move_iterator(others._texts.begin()), std::move_iterator(others._texts.end()));
    others._texts.clear();
}

namespace {

uint32_t indexOf(const SpelledGlyph& glyph, const FontTables& fonts) {
    const FontCodes* font = glyph.fontId ? fonts.find(*glyph.fontId) : nullptr;
    const std::optional<uint32_t> index = font == nullptr ? std::nullopt : font->characters.glyphOf(glyph.character);
    if (index)
        return *index;
    std::string reason = glyph.fontId ? "font " + std::to_string(*glyph.fontId) : "no font is chosen";
    if (font != nullptr && !font->name.view().empty())
        reason.append(" (").append(font->name.view()).append(")");
    if (font != nullptr && !font->characters.empty())
        reason.append(" has no glyph for ").append(characterName(glyph.character));
    else if (glyph.fontId)
        reason.append(" does not say what characters its glyphs are");
    throw XmlValueError("GlyphEntry", "Character", std::move(reason), glyph.offset);
}

} // namespace

void SpelledTexts::lookUp(const FontTables& fonts) const {
    for (const Text& text : _texts) {
        for (const SpelledGlyph& glyph : text.glyphs)
            text.text->records[glyph.record].glyphs[glyph.glyph].index = indexOf(glyph, fonts);
    }
}

} // namespace xml2swf
