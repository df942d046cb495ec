// Pictures between tags, pixels and files.
//
// Every function throws libswf::SwfException: code 1 for zlib data that cannot be inflated, 2 for a picture or tag of a
// kind that is not handled, 3 for data that is corrupt, ends early or claims more pixels than it can hold. Memory stays
// bounded by the size of the data. Builds without ZELK_HAVE_CODECS refuse JPEG, PNG and GIF files with code 2.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "SwfTagsBitmap.h"

namespace zelk {

/// Pixels from the top left, row by row, four bytes each: red, green, blue, alpha. The colours are straight, not
/// multiplied with alpha; where alpha is 0 they are 0 for a tag's pixels.
struct Image {
    static constexpr uint32_t mostPixels = uint32_t(1) << 26;

    uint32_t width = 0, height = 0; ///< 1 to 65,535, at most mostPixels together
    std::vector<uint8_t> rgba;      ///< 4 * width * height bytes

    bool isOpaque() const;
};

enum class ImageKind : uint8_t { none, jpeg, png, gif };

/// By the first bytes; they need not be a whole picture.
ImageKind imageKind(std::span<const uint8_t> file);

/// The tag defines a bitmap: DefineBits, DefineBitsJPEG2 to 4, DefineBitsLossless and DefineBitsLossless2.
bool isBitmap(const libswf::SwfTag& tag);

/// The pixels of a bitmap tag. `tables` are those of the movie, wanted by DefineBits only; may be null. They are then
/// taken to stand in the bitmap's own data.
Image decodeBitmap(const libswf::SwfTag& tag, const libswf::SwfTagJPEGTables* tables);

/// The pixels of a JPEG, PNG or GIF file; of a GIF the first picture.
Image decodeImage(std::span<const uint8_t> file);

/// A PNG file, with an alpha channel only where the picture is not opaque.
std::vector<uint8_t> encodePng(const Image& image);

/// One JPEG file of tables (may be empty) and image, without the markers that old encoders put between and in front of
/// them. A file that is in order comes back as it is.
std::vector<uint8_t> joinedJpeg(std::span<const uint8_t> tables, std::span<const uint8_t> image);

} // namespace zelk
