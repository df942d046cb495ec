#include "FontCharacters.h"

#include <algorithm>
#include <array>

#include "XmlTags.h"

namespace xml2swf {

using namespace libswf;

namespace {

constexpr uint8_t lastWithCodePages = 5; // later movies have Unicode throughout

constexpr uint8_t firstOfOwn = 0x80;
constexpr std::array<char16_t, 32> ownCharacters = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                                    0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

// Characters that nobody sees, or that look like another one or differently on each machine.
struct Range {
    char32_t first, last;
};
constexpr Range unseen[] = {{0x00, 0x1F},     {0x7F, 0xA0},     {0xAD, 0xAD},     {0x0300, 0x036F}, {0x0600, 0x0605},
                            {0x061C, 0x061C}, {0x180B, 0x180F}, {0x2000, 0x200F}, {0x2028, 0x202F}, {0x205F, 0x206F},
                            {0x20D0, 0x20FF}, {0x3000, 0x3000}, {0xE000, 0xF8FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F},
                            {0xFEFF, 0xFEFF}, {0xFFF0, 0xFFFF}};

bool isOwn(char32_t code) { return code >= firstOfOwn && code < firstOfOwn + ownCharacters.size(); }

} // namespace

char32_t ofWindows1252(uint8_t byte) { return isOwn(byte) ? ownCharacters[byte - firstOfOwn] : byte; }

std::optional<uint8_t> toWindows1252(char32_t character) {
    const auto found = std::find(ownCharacters.begin(), ownCharacters.end(), character);
    if (found != ownCharacters.end())
        return static_cast<uint8_t>(firstOfOwn + (found - ownCharacters.begin()));
    if (character > UINT8_MAX || isOwn(character))
        return {};
    return static_cast<uint8_t>(character);
}

FontCharacters::FontCharacters(const SwfTagDefineFont2& font, uint8_t version) {
    add(font.codes, font.shiftJis && version <= lastWithCodePages ? Codes::shiftJis : Codes::unicode);
}

FontCharacters::FontCharacters(const SwfTagDefineFontInfo& info, uint8_t version) {
    add(info.codes, info.shiftJis && version <= lastWithCodePages ? Codes::shiftJis : Codes::unicode);
}

FontCharacters::FontCharacters(const SwfTagDefineFontInfo2& info) { add(info.codes, Codes::unicode); }

void FontCharacters::add(const SwfVector<uint16_t>& codes, Codes kind) {
    constexpr char32_t firstSurrogate = 0xD800, lastSurrogate = 0xDFFF, noCharacter = 0xFFFE, firstOfTwo = 0x80;
    for (const uint16_t code : codes) {
        // Where Unicode has control characters, codes of the code page are meant.
        char32_t character = isOwn(code) ? ofWindows1252(static_cast<uint8_t>(code)) : code;
        if (code == 0 || (code >= firstSurrogate && code <= lastSurrogate) || code >= noCharacter ||
            (kind == Codes::shiftJis && code >= firstOfTwo))
            character = none;
        else
            _glyphs.try_emplace(character, static_cast<uint32_t>(_characters.size()));
        _characters.push_back(character);
    }
}

std::optional<char32_t> FontCharacters::ofGlyph(uint32_t glyph) const {
    if (glyph >= _characters.size() || _characters[glyph] == none)
        return {};
    return _characters[glyph];
}

std::optional<uint32_t> FontCharacters::glyphOf(char32_t character) const {
    const auto found = _glyphs.find(character);
    if (found == _glyphs.end())
        return {};
    return found->second;
}

std::optional<char32_t> FontCharacters::spelledGlyph(uint32_t glyph) const {
    const std::optional<char32_t> character = ofGlyph(glyph);
    const bool isSeen = character && std::none_of(std::begin(unseen), std::end(unseen), [&](const Range& range) {
                            return *character >= range.first && *character <= range.last;
                        });
    return isSeen && glyphOf(*character) == glyph ? character : std::nullopt;
}

static constexpr uint16_t tagsWithCodes[] = {SwfTagCode::DefineFont2, SwfTagCode::DefineFont3,
                                             SwfTagCode::DefineFontInfo, SwfTagCode::DefineFontInfo2};

bool hasFontCodes(uint16_t tagCode) {
    return std::find(std::begin(tagsWithCodes), std::end(tagsWithCodes), tagCode) != std::end(tagsWithCodes);
}

bool hasFontCodes(std::string_view elementName) {
    return std::any_of(std::begin(tagsWithCodes), std::end(tagsWithCodes),
                       [&](uint16_t code) { return tagName(code) == elementName; });
}

std::optional<FontCodes> fontCodes(const SwfTag& tag, uint8_t version) {
    if (const auto* font = dynamic_cast<const SwfTagDefineFont2*>(&tag))
        return FontCodes{font->characterId, font->fontName, FontCharacters(*font, version)};
    if (const auto* info = dynamic_cast<const SwfTagDefineFontInfo*>(&tag))
        return FontCodes{info->fontId, info->fontName, FontCharacters(*info, version)};
    if (const auto* info = dynamic_cast<const SwfTagDefineFontInfo2*>(&tag))
        return FontCodes{info->fontId, info->fontName, FontCharacters(*info)};
    return {};
}

void FontTables::add(SwfTag& tag, const SwfContext& movie) {
    if (!hasFontCodes(tag.type))
        return;
    std::optional<FontCodes> codes = fontCodes(tag, movie.version);
    if (!codes) {
        const SwfTags read = readBytes(tag, movie);
        if (read.count() != 0)
            codes = fontCodes(read.at(0), movie.version);
    }
    if (codes)
        _fonts.insert_or_assign(codes->fontId, std::move(*codes));
}

const FontCodes* FontTables::find(uint16_t fontId) const {
    const auto found = _fonts.find(fontId);
    return found == _fonts.end() ? nullptr : &found->second;
}

} // namespace xml2swf
