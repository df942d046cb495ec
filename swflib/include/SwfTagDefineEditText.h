// DefineEditText (37): a text field.
#pragma once

#include "SwfTag.h"

namespace libswf {

/// Each Has flag decides whether its fields are in the file. FontHeight stands with hasFont alone: a field with a font
/// class but no font has none.
class SwfTagDefineEditText : public SwfDefinitionTag {
public:
    static constexpr uint8_t lastNamedAlign = 3;

    SwfRect bounds;
    // The flags in the order of their bits, bit 0 of the first byte first.
    bool hasFont = false, hasMaxLength = false, hasTextColor = false, readOnly = false;
    bool password = false, multiline = false, wordWrap = false, hasText = false;
    bool useOutlines = false, html = false, wasStatic = false, border = false;
    bool noSelect = false, hasLayout = false, autoSize = false, hasFontClass = false;
    uint16_t fontId = 0;     ///< with hasFont
    SwfString fontClass;     ///< with hasFontClass
    uint16_t fontHeight = 0; ///< twips, with hasFont
    SwfColor color;          ///< RGBA, with hasTextColor
    uint16_t maxLength = 0;  ///< characters, with hasMaxLength
    uint8_t align = 0;       ///< 0 left, 1 right, 2 center, 3 justify; these five with hasLayout
    uint16_t leftMargin = 0, rightMargin = 0, indent = 0; ///< twips
    int16_t leading = 0;                                  ///< twips
    SwfString varName;
    SwfString initialText; ///< with hasText

    SwfTagDefineEditText() : SwfDefinitionTag(37) {}
    explicit SwfTagDefineEditText(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;

private:
    void readFlags(uint16_t bits);
    uint16_t flagBits() const;
};

} // namespace libswf
