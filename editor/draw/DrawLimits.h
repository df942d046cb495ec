// How much is drawn of one tag. What goes beyond is left out; a tag from a broken or hostile file takes no longer.
#pragma once

#include <cstddef>

namespace zelk::DrawLimits {

constexpr size_t edges = 400'000;        ///< of all the shapes in one drawing
constexpr size_t pieces = 20'000;        ///< filled or stroked paths of one drawing
constexpr size_t glyphs = 20'000;        ///< of a text or a glyph table
constexpr size_t characters = 20'000;    ///< that sprites and buttons of one drawing place
constexpr int frames = 100;              ///< of a movie, until something is seen
constexpr int depth = 8;                 ///< of sprites in sprites
constexpr double coordinate = 1 << 28;   ///< twips; further out is moved to here
constexpr double pixels = 16e6;          ///< of an image
constexpr double extendedPixels = 4e6;   ///< of a bitmap whose edges are extended
constexpr size_t fieldCharacters = 4000; ///< of a text field

} // namespace zelk::DrawLimits
