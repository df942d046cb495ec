// A tag in words.
#pragma once

#include <QString>
#include <optional>

#include "SwfTag.h"

namespace zelk {

/// The id that other tags place it by. Sprites and buttons have one as well, which the library does not count as
/// definitions.
std::optional<uint16_t> characterId(const libswf::SwfTag& tag);

/// "8 × 12.5 px", rounded.
QString pixelWords(double width, double height);

/// "DefineShape3 12 · 145 × 80 px · 2 fills, 1 line style, 33 edges". Only the name for tags that are not drawn.
QString tagWords(const libswf::SwfTag& tag);

} // namespace zelk
