#include "SwfFontParts.h"

#include "SwfWarnings.h"

namespace libswf {

uint8_t readFontName(SwfIStream& stream, SwfString& name) {
    char bytes[UINT8_MAX];
    const uint32_t length = stream.readUI8("FontNameLen");
    stream.readBytes(length, reinterpret_cast<uint8_t*>(bytes), "FontName");
    uint32_t used = length;
    while (used != 0 && bytes[used - 1] == 0)
        --used;
    if (used != length && !stream.context.fullForm)
        addWarning(stream, SwfWarning::Kind::ignored,
                   "NUL bytes at the end of the font name: " + std::to_string(length - used));
    name.assign({bytes, used});
    return static_cast<uint8_t>(stream.context.fullForm ? length - used : 0);
}

void writeFontName(SwfOStream& stream, const SwfString& name, uint8_t nuls) {
    if (name.length() + nuls > UINT8_MAX)
        throw SwfException(SwfError::doesNotFit, "a font name of more than 255 bytes");
    stream.writeUI8(static_cast<uint8_t>(name.length() + nuls));
    name.write(stream, false);
    for (; nuls != 0; --nuls)
        stream.writeUI8(0);
}

void readCodes(SwfIStream& stream, uint64_t count, bool wide, SwfVector<uint16_t>& codes) {
    if (count > stream.bodyLeft() / (wide ? 2 : 1))
        stream.fail("CodeTable", "the body ends before its last code");
    codes.reserve(count);
    for (; count != 0; --count)
        codes.append(wide ? stream.readUI16("CodeTable") : stream.readUI8("CodeTable"));
}

void writeCodes(SwfOStream& stream, const SwfVector<uint16_t>& codes, bool wide) {
    for (const uint16_t code : codes) {
        if (wide)
            stream.writeUI16(code);
        else
            stream.writeUI8(static_cast<uint8_t>(code));
    }
}

bool hasWideCode(const SwfVector<uint16_t>& codes) {
    return std::any_of(codes.begin(), codes.end(), [](uint16_t code) { return code > UINT8_MAX; });
}

} // namespace libswf
