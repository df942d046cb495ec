#include "SwfTagDefineEditText.h"

#include "SwfWarnings.h"

namespace libswf {

using Flag = bool SwfTagDefineEditText::*;
static constexpr Flag flagOrder[16] = {
    &SwfTagDefineEditText::hasFont,     &SwfTagDefineEditText::hasMaxLength, &SwfTagDefineEditText::hasTextColor,
    &SwfTagDefineEditText::readOnly,    &SwfTagDefineEditText::password,     &SwfTagDefineEditText::multiline,
    &SwfTagDefineEditText::wordWrap,    &SwfTagDefineEditText::hasText,      &SwfTagDefineEditText::useOutlines,
    &SwfTagDefineEditText::html,        &SwfTagDefineEditText::wasStatic,    &SwfTagDefineEditText::border,
    &SwfTagDefineEditText::noSelect,    &SwfTagDefineEditText::hasLayout,    &SwfTagDefineEditText::autoSize,
    &SwfTagDefineEditText::hasFontClass};

void SwfTagDefineEditText::readFlags(uint16_t bits) {
    for (uint32_t i = 0; i < 16; ++i)
        this->*flagOrder[i] = (bits >> i & 1) != 0;
}

uint16_t SwfTagDefineEditText::flagBits() const {
    uint32_t bits = 0;
    for (uint32_t i = 0; i < 16; ++i)
        bits |= uint32_t(this->*flagOrder[i]) << i;
    return static_cast<uint16_t>(bits);
}

SwfTagDefineEditText::SwfTagDefineEditText(SwfIStream& stream) : SwfTagDefineEditText() {
    stream.context.alpha = true;
    characterId = stream.readUI16("CharacterId");
    bounds.read(stream);
    readFlags(stream.readUI16("Flags"));
    if (hasFont)
        fontId = stream.readUI16("FontId");
    if (hasFontClass)
        stream.readString(fontClass, "FontClass");
    if (hasFont)
        fontHeight = stream.readUI16("FontHeight");
    if (hasTextColor)
        color.read(stream);
    if (hasMaxLength)
        maxLength = stream.readUI16("MaxLength");
    if (hasLayout) {
        align = stream.readUI8("Align");
        leftMargin = stream.readUI16("LeftMargin");
        rightMargin = stream.readUI16("RightMargin");
        indent = stream.readUI16("Indent");
        leading = stream.readSI16("Leading");
    }
    stream.readString(varName, "VariableName");
    if (hasText)
        stream.readString(initialText, "InitialText");
    if (align > lastNamedAlign && !stream.context.fullForm)
        addWarning(stream, SwfWarning::Kind::cut,
                   "the alignment " + std::to_string(align) + " has no name in XML, which makes it Left");
}

void SwfTagDefineEditText::writeBody(SwfOStream& stream) {
    stream.context.alpha = true;
    stream.writeUI16(characterId);
    bounds.write(stream);
    stream.writeUI16(flagBits());
    if (hasFont)
        stream.writeUI16(fontId);
    if (hasFontClass)
        fontClass.write(stream, true);
    if (hasFont)
        stream.writeUI16(fontHeight);
    if (hasTextColor)
        color.write(stream);
    if (hasMaxLength)
        stream.writeUI16(maxLength);
    if (hasLayout) {
        stream.writeUI8(align);
        stream.writeUI16(leftMargin);
        stream.writeUI16(rightMargin);
        stream.writeUI16(indent);
        stream.writeSI16(leading);
    }
    varName.write(stream, true);
    if (hasText)
        initialText.write(stream, true);
}

} // namespace libswf
