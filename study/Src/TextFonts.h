// The fonts of a movie, as writing with them needs them.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "FontCharacters.h"
#include "SwfTagDefineText.h"
#include "SwfTags.h"

namespace zelk {

struct TextFont {
    std::string name;
    xml2swf::FontCharacters characters;
    /// By glyph, in parts of the font's height; of the font's own table, or for a font without one as wide as the
    /// movie's texts have it.
    std::vector<std::optional<double>> advances;
    bool hasLayout = false; ///< the advances are the font's own

    std::optional<double> advance(uint32_t glyph) const {
        return glyph < advances.size() ? advances[glyph] : std::nullopt;
    }
};

class TextFonts {
public:
    TextFonts(const libswf::SwfTags& tags, uint8_t version);
    /// Null for an id that is no font with glyphs.
    const TextFont* find(uint16_t id) const;
    /// Of whatever kind of font; empty for none.
    std::string name(uint16_t id) const;

private:
    void add(const libswf::SwfTag& tag, uint8_t version);
    void addFont2(const libswf::SwfTagDefineFont2& font);
    void learnAdvances(const libswf::SwfTagDefineText& text);

    std::unordered_map<uint16_t, TextFont> _fonts;
    std::unordered_map<uint16_t, std::string> _otherNames;
};

} // namespace zelk
