// What characters the glyphs of fonts stand for.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "SwfTagDefineFont.h"
#include "SwfTagDefineFontInfo.h"
#include "SwfTags.h"

namespace xml2swf {

/// The character of a byte in the code page that movies up to version 5 use in the West: Latin 1, with characters in
/// place of the control characters from 0x80 on, as far as it has some.
char32_t ofWindows1252(uint8_t byte);
/// Nothing for a character that the code page lacks.
std::optional<uint8_t> toWindows1252(char32_t character);

/// The code table of a font, read as players read it. Codes are UTF-16, but never pairs; those of movies up to version
/// 5 are Windows-1252, or Shift-JIS, of which only the first 128 are known here.
class FontCharacters {
public:
    FontCharacters() = default;
    FontCharacters(const libswf::SwfTagDefineFont2& font, uint8_t version);
    FontCharacters(const libswf::SwfTagDefineFontInfo& info, uint8_t version);
    explicit FontCharacters(const libswf::SwfTagDefineFontInfo2& info);

    /// Nothing for a glyph without a code, or with one that is no character.
    std::optional<char32_t> ofGlyph(uint32_t glyph) const;
    /// The first glyph of a character.
    std::optional<uint32_t> glyphOf(char32_t character) const;
    /// The character of a glyph, where it leads back to it: one that can be seen and told apart from others, and whose
    /// first glyph this is.
    std::optional<char32_t> spelledGlyph(uint32_t glyph) const;
    bool empty() const { return _glyphs.empty(); }

private:
    enum class Codes : uint8_t { unicode, shiftJis };
    void add(const libswf::SwfVector<uint16_t>& codes, Codes kind);

    static constexpr char32_t none = UINT32_MAX;
    std::vector<char32_t> _characters; // by glyph
    std::unordered_map<char32_t, uint32_t> _glyphs;
};

/// What one tag says of a font.
struct FontCodes {
    uint16_t fontId = 0;
    libswf::SwfString name;
    FontCharacters characters;
};

/// Whether tags of this code, or elements of this name, have a code table.
bool hasFontCodes(uint16_t tagCode);
bool hasFontCodes(std::string_view elementName);
/// Nothing for a tag without a code table.
std::optional<FontCodes> fontCodes(const libswf::SwfTag& tag, uint8_t version);

/// The code tables of a movie's fonts. Of several tags about one font, the last one's counts.
class FontTables {
public:
    /// Takes what a tag says; one that is kept as bytes is read for it. All others are passed over.
    void add(libswf::SwfTag& tag, const libswf::SwfContext& movie);
    /// Null for a font that no tag gives codes to.
    const FontCodes* find(uint16_t fontId) const;

private:
    std::unordered_map<uint16_t, FontCodes> _fonts;
};

} // namespace xml2swf
