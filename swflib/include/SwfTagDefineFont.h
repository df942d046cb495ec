// Fonts with outlines: DefineFont, DefineFont2 and DefineFont3.
#pragma once

#include <vector>

#include "SwfShapeRecords.h"
#include "SwfTag.h"

namespace libswf {

/// A font that holds its glyphs. Glyphs are found through offsets, which are trusted on reading as long as they lie
/// inside the body and the glyphs together take no more than 16 times its length (code 3 otherwise): glyphs may share
/// bytes, but a few bytes cannot grow without bound. On writing each glyph has bytes of its own.
class SwfGlyphFont : public SwfDefinitionTag {
public:
    SwfShapes glyphs;

    /// Measures the glyphs.
    void prepare() override;

protected:
    using SwfDefinitionTag::SwfDefinitionTag;
};

/// DefineFont (10). Offsets are kept to 16 bits: glyphs of more than 65,535 bytes give a font that cannot be read, with
/// a warning on writing. A body without an offset table is a font without glyphs.
class SwfTagDefineFont : public SwfGlyphFont {
public:
    SwfTagDefineFont() : SwfGlyphFont(10) {}
    explicit SwfTagDefineFont(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// What moves a pair of glyphs together or apart, in twips.
struct SwfKerningRecord {
    uint16_t kerningCode1 = 0;
    uint16_t kerningCode2 = 0;
    int16_t adjustment = 0;
};

using SwfKerningRecords = SwfVector<SwfKerningRecord>;

/// DefineFont2 (48). The full form keeps what the flags say: codes and offsets are wide when they have to be or were
/// so. Where the classic form departs from what players read, on purpose:
/// - codes are written wide when one of them is above 255, and always from version 6 on;
/// - kerning records exist from version 7 on; below, they are dropped on reading, with a warning, and on writing;
/// - a font without glyphs has a code table offset when written, but need not have one (or a layout) when read.
/// Tables are written as long as they are: no one checks that they have an entry per glyph.
class SwfTagDefineFont2 : public SwfGlyphFont {
public:
    bool bold = false, italic = false, ansi = false, smallText = false, shiftJis = false;
    bool wideCodes = false;   ///< as read or edited; not used on write in the classic form
    bool wideOffsets = false; ///< as read; recomputed by prepare(), in the full form only where they are too narrow
    bool hasLayout =
        false; ///< the fields from ascent on are in the file; recomputed by prepare(), but in the full form
    bool keepsFlags = false;     ///< full form
    bool hasNoCodeTable = false; ///< full form: a font without glyphs lacks the code table offset
    bool lacksKerning = false;   ///< full form: the layout ends in front of the kerning count
    uint8_t languageCode = 0;
    SwfString fontName;   ///< at most 255 bytes (code 2 on write)
    uint8_t nameNuls = 0; ///< full form: NULs at its end, which the classic form drops
    SwfVector<uint16_t> codes;
    uint16_t ascent = 0, descent = 0;
    int16_t leading = 0;
    SwfVector<int16_t> advances;
    SwfRects bounds;
    SwfKerningRecords kerning;

    SwfTagDefineFont2() : SwfTagDefineFont2(48) {}
    explicit SwfTagDefineFont2(SwfIStream& stream);

    void prepare() override;

protected:
    explicit SwfTagDefineFont2(uint16_t code) : SwfGlyphFont(code) {}
    void read(SwfIStream& stream);
    void writeBody(SwfOStream& stream) override;

private:
    std::vector<uint32_t> readGlyphOffsets(SwfIStream& stream, uint32_t count);
    bool needsWideKerning() const;
    void readLayout(SwfIStream& stream);
    void readKerning(SwfIStream& stream);
    void writeGlyphs(SwfOStream& stream);
    void writeLayout(SwfOStream& stream);
};

/// DefineFont3 (75): DefineFont2 with glyphs in twentieths of a twip. In the full form its kerning codes are wide. In
/// the classic form, on purpose, they are read as wide as the last DefineFont2 of the movie left it in the context, and
/// written wide only when a character code is above 255; with keepRaw a font whose kerning would come out different is
/// kept as bytes.
class SwfTagDefineFont3 : public SwfTagDefineFont2 {
public:
    SwfTagDefineFont3() : SwfTagDefineFont2(75) {}
    explicit SwfTagDefineFont3(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

} // namespace libswf
