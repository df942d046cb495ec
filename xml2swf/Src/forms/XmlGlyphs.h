// Glyphs of static texts that the full form shows by their characters.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "FontCharacters.h"
#include "SwfTagDefineText.h"

namespace xml2swf {

/// The fonts of a movie that is being written, looked at when a text asks for the first time. For any thread.
class MovieFonts {
public:
    /// `others`, which may be null, stands for the movie that its tags are a part of.
    MovieFonts(const libswf::SwfContext& movie, const FontTables* others) : _movie(movie), _others(others) {}
    /// Null for a font that does not say what its glyphs stand for.
    const FontCharacters* find(uint16_t fontId) const;

private:
    const libswf::SwfContext _movie;
    const FontTables* _others;
    mutable std::once_flag _once;
    mutable FontTables _tables;
};

/// A glyph that was read by its character: its font may stand further behind.
struct SpelledGlyph {
    uint32_t record, glyph;         ///< in its text
    std::optional<uint16_t> fontId; ///< none was chosen yet
    char32_t character;
    size_t offset; ///< of its element in the document
};

/// The texts with such glyphs.
class SpelledTexts {
public:
    /// A text that is being read; who made its tag says so by `keep`.
    void add(libswf::SwfTagDefineText& text, std::vector<SpelledGlyph> glyphs) {
        _texts.push_back({nullptr, &text, std::move(glyphs)});
    }
    void keep(const std::shared_ptr<libswf::SwfTag>& tag) {
        if (!_texts.empty() && _texts.back().tag == nullptr)
            _texts.back().tag = tag;
    }
    void take(SpelledTexts&& others);
    bool empty() const { return _texts.empty(); }
    /// Gives the glyphs their indices. Throws XmlValueError for one that there is none of.
    void lookUp(const FontTables& fonts) const;

private:
    struct Text {
        std::shared_ptr<libswf::SwfTag> tag; // keeps `text`
        libswf::SwfTagDefineText* text;
        std::vector<SpelledGlyph> glyphs;
    };
    std::vector<Text> _texts;
};

} // namespace xml2swf
