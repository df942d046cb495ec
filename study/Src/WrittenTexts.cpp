#include "WrittenTexts.h"

#include "FontCharacters.h"
#include "XmlCharacters.h"
#include "XmlElement.h"
#include "XmlNumbers.h"

namespace zelk {

using namespace xml2swf;

namespace {

constexpr size_t mostGlyphs = 200;

std::optional<uint32_t> numberIn(std::string_view startTag, std::string_view name, uint32_t most) {
    const auto attribute = attributeOf(startTag, name);
    const auto value = attribute ? parseInteger(attribute->value) : std::nullopt;
    return value && *value >= 0 && *value <= most ? std::optional(static_cast<uint32_t>(*value)) : std::nullopt;
}

} // namespace

void WrittenTexts::tagBegins(const ScannedTag& tag, std::string_view startTag) {
    _text = nullptr;
    _isInFont = _isInCodes = false;
    if (hasFontCodes(tag.name) && tag.list == ScannedTag::movie) {
        if (const auto id = numberIn(startTag, "FontId", UINT16_MAX)) {
            _isInFont = true;
            _fontId = static_cast<uint16_t>(*id);
            _fonts.erase(_fontId);
        }
    } else if (tag.name == "DefineText" || tag.name == "DefineText2") {
        if (const auto id = numberIn(startTag, "Id", UINT16_MAX)) {
            _text = &_texts.emplace_back(Text{static_cast<uint16_t>(*id), {}});
            _writtenIn = noFont;
        }
    }
}

void WrittenTexts::read(std::string_view startTag) {
    const std::string_view name = elementName(startTag);
    if (_isInFont)
        readFont(name, startTag);
    else
        readText(name, startTag);
}

void WrittenTexts::readFont(std::string_view name, std::string_view startTag) {
    libswf::SwfTagDefineFontInfo& font = _fonts[_fontId];
    if (name == "Code" && _isInCodes)
        font.codes.append(static_cast<uint16_t>(numberIn(startTag, "Value", UINT16_MAX).value_or(0)));
    else if (name == "BitsField")
        font.shiftJis = XmlElement::isTrue(attributeOf(startTag, "ShiftJIS").value_or(TagAttribute()).value);
    else
        _isInCodes = name == "CodesTable";
}

void WrittenTexts::readText(std::string_view name, std::string_view startTag) {
    if (name == "TextRecord") {
        _writtenIn = numberIn(startTag, "FontId", UINT16_MAX).value_or(_writtenIn);
        if (!_text->glyphs.empty() && attributeOf(startTag, "YOffset"))
            _text->glyphs.push_back({_writtenIn, 0, U' '});
    } else if (name == "GlyphEntry" && _text->glyphs.size() < mostGlyphs) {
        const auto character = attributeOf(startTag, "Character");
        const auto one = character ? fromUtf8(decoded(character->value)) : std::nullopt;
        const uint32_t index = numberIn(startTag, "Index", UINT32_MAX).value_or(UINT32_MAX);
        _text->glyphs.push_back({_writtenIn, index, one && one->size() == 1 ? one->front() : U'\0'});
    }
}

void WrittenTexts::tell(uint8_t version, const std::function<void(uint16_t id, std::string text)>& take) const {
    std::unordered_map<uint32_t, FontCharacters> fonts;
    if (!_texts.empty()) {
        for (const auto& [id, font] : _fonts)
            fonts.emplace(id, FontCharacters(font, version));
    }
    for (const Text& text : _texts) {
        std::u32string characters;
        for (const Glyph& glyph : text.glyphs) {
            const auto font = fonts.find(glyph.font);
            const auto found = glyph.character != 0  ? glyph.character
                               : font != fonts.end() ? font->second.ofGlyph(glyph.index).value_or(0)
                                                     : U'\0';
            if (found == 0)
                break;
            characters += found;
        }
        if (!characters.empty() && characters.size() == text.glyphs.size())
            take(text.id, toUtf8(characters));
    }
}

} // namespace zelk
