#include "TextFonts.h"

#include "MovieStrings.h"

namespace zelk {

using namespace libswf;

namespace {

constexpr double unitsOfHeight = 1024, unitsOfFont3 = 20 * unitsOfHeight;

} // namespace

TextFonts::TextFonts(const SwfTags& tags, uint8_t version) {
    for (const auto& tag : tags.items())
        add(*tag, version);
    for (const auto& tag : tags.items()) {
        if (const auto* text = dynamic_cast<const SwfTagDefineText*>(tag.get()))
            learnAdvances(*text);
    }
}

void TextFonts::addFont2(const SwfTagDefineFont2& font) {
    TextFont& result = _fonts[font.characterId] = TextFont();
    result.hasLayout = font.hasLayout && font.advances.size() == font.glyphs.count();
    result.advances.resize(font.glyphs.count());
    for (uint32_t i = 0; result.hasLayout && i < font.advances.size(); ++i)
        result.advances[i] = font.advances[i] / (font.type == SwfTagCode::DefineFont3 ? unitsOfFont3 : unitsOfHeight);
}

void TextFonts::add(const SwfTag& tag, uint8_t version) {
    if (const auto* font2 = dynamic_cast<const SwfTagDefineFont2*>(&tag)) {
        addFont2(*font2);
    } else if (const auto* font = dynamic_cast<const SwfTagDefineFont*>(&tag)) {
        _fonts[font->characterId].advances.resize(font->glyphs.count());
    } else if (const auto* font4 = dynamic_cast<const SwfTagDefineFont4*>(&tag)) {
        _otherNames[font4->characterId] = shownString(font4->fontName.view(), version);
    }
    if (std::optional<xml2swf::FontCodes> codes = xml2swf::fontCodes(tag, version)) {
        TextFont& named = _fonts[codes->fontId];
        named.name = shownString(codes->name.view(), version);
        named.characters = std::move(codes->characters);
    }
}

void TextFonts::learnAdvances(const SwfTagDefineText& text) {
    TextFont* font = nullptr;
    double height = 0;
    for (const SwfTextRecord& record : text.records) {
        if ((record.flags & SwfTextRecord::fontBit) != 0) {
            const auto found = _fonts.find(record.fontId);
            font = found == _fonts.end() ? nullptr : &found->second;
            height = record.height;
        }
        if (font == nullptr || font->hasLayout || height == 0)
            continue;
        for (const SwfGlyphEntry& glyph : record.glyphs) {
            if (glyph.index < font->advances.size() && !font->advances[glyph.index])
                font->advances[glyph.index] = glyph.advance / height;
        }
    }
}

const TextFont* TextFonts::find(uint16_t id) const {
    const auto found = _fonts.find(id);
    return found == _fonts.end() ? nullptr : &found->second;
}

std::string TextFonts::name(uint16_t id) const {
    if (const TextFont* font = find(id))
        return font->name;
    const auto found = _otherNames.find(id);
    return found == _otherNames.end() ? std::string() : found->second;
}

} // namespace zelk
