// What static texts say, from the elements of a movie's text.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "MovieScan.h"
#include "SwfTagDefineFontInfo.h"

namespace zelk {

/// Is told of tags and the elements in them in their order. Fonts may stand behind the texts that use them.
class WrittenTexts {
public:
    void tagBegins(const ScannedTag& tag, std::string_view startTag);
    void element(std::string_view startTag) {
        if (_isInFont || _text != nullptr)
            read(startTag);
    }
    /// Tells of each text whose glyphs all are known characters, at most 200 of them. Records at another height begin
    /// with a blank.
    void tell(uint8_t version, const std::function<void(uint16_t id, std::string text)>& take) const;

private:
    struct Glyph {
        uint32_t font;      // noFont while none is chosen
        uint32_t index;     // or
        char32_t character; // not 0
    };
    struct Text {
        uint16_t id;
        std::vector<Glyph> glyphs;
    };
    static constexpr uint32_t noFont = UINT32_MAX;

    void read(std::string_view startTag);
    void readFont(std::string_view name, std::string_view startTag);
    void readText(std::string_view name, std::string_view startTag);

    std::unordered_map<uint16_t, libswf::SwfTagDefineFontInfo> _fonts; // code tables and how they are written
    std::vector<Text> _texts;
    bool _isInFont = false, _isInCodes = false;
    uint16_t _fontId = 0;
    Text* _text = nullptr; // that is being read
    uint32_t _writtenIn = noFont;
};

} // namespace zelk
