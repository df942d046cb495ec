// What several font tags have in common: flags, names with a length byte and code tables.
#pragma once

#include "SwfStream.h"
#include "SwfStructs.h"

namespace libswf {

constexpr uint8_t bitIf(bool flag, uint8_t bit) { return flag ? bit : 0; }

/// A name behind its length byte. Gives the number of NULs at its end, which authoring tools put there; the classic
/// form drops them, with a warning.
uint8_t readFontName(SwfIStream& stream, SwfString& name);
/// Throws SwfException code 2 for a name of more than 255 bytes.
void writeFontName(SwfOStream& stream, const SwfString& name, uint8_t nuls);

/// Appends `count` codes. Throws code 3 when the body ends before them.
void readCodes(SwfIStream& stream, uint64_t count, bool wide, SwfVector<uint16_t>& codes);
/// Narrow codes keep their low byte only.
void writeCodes(SwfOStream& stream, const SwfVector<uint16_t>& codes, bool wide);
/// Whether some code needs 16 bits.
bool hasWideCode(const SwfVector<uint16_t>& codes);

} // namespace libswf
