// Tags that define bitmaps. Image data is carried as bytes and never decoded here.
#pragma once

#include "SwfTag.h"

namespace libswf {

/// JPEGTables (8): the encoding tables that the images of DefineBits share. May be empty.
class SwfTagJPEGTables : public SwfTag {
public:
    SwfBytes jpegData;

    SwfTagJPEGTables() : SwfTag(8) {}
    explicit SwfTagJPEGTables(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// An opaque bitmap in one file format.
class SwfJpegBitmap : public SwfDefinitionTag {
public:
    SwfBytes jpegData; ///< as it stands in the file, stray markers in front included

protected:
    using SwfDefinitionTag::SwfDefinitionTag;
    void read(SwfIStream& stream);
    void writeBody(SwfOStream& stream) override;
};

/// DefineBits (6): a JPEG image without its tables.
class SwfTagDefineBits : public SwfJpegBitmap {
public:
    SwfTagDefineBits() : SwfJpegBitmap(6) {}
    explicit SwfTagDefineBits(SwfIStream& stream) : SwfTagDefineBits() { read(stream); }
};

/// DefineBitsJPEG2 (21): a whole JPEG, PNG or GIF image.
class SwfTagDefineBitsJPEG2 : public SwfJpegBitmap {
public:
    SwfTagDefineBitsJPEG2() : SwfJpegBitmap(21) {}
    explicit SwfTagDefineBitsJPEG2(SwfIStream& stream) : SwfTagDefineBitsJPEG2() { read(stream); }
};

/// DefineBitsJPEG3 (35): a JPEG with an alpha channel of its own. The offset of the alpha data follows from the image's
/// length; one that points past the body leaves all bytes to the image.
class SwfTagDefineBitsJPEG3 : public SwfDefinitionTag {
public:
    SwfBytes jpegData;
    SwfBytes bitmapAlphaData; ///< zlib data, one byte for each pixel

    SwfTagDefineBitsJPEG3() : SwfDefinitionTag(35) {}
    explicit SwfTagDefineBitsJPEG3(SwfIStream& stream);

protected:
    using SwfDefinitionTag::SwfDefinitionTag;
    void readData(SwfIStream& stream, uint32_t alphaDataOffset);
    void writeBody(SwfOStream& stream) override;
};

/// DefineBitsJPEG4 (90): DefineBitsJPEG3 and a deblocking filter.
class SwfTagDefineBitsJPEG4 : public SwfTagDefineBitsJPEG3 {
public:
    uint16_t deblockParam = 0; ///< 8.8 fixed point, raw

    SwfTagDefineBitsJPEG4() : SwfTagDefineBitsJPEG3(90) {}
    explicit SwfTagDefineBitsJPEG4(SwfIStream& stream);

protected:
    void writeBody(SwfOStream& stream) override;
};

/// DefineBitsLossless (20): a bitmap as zlib data. DefineBitsLossless2 shares the layout.
class SwfTagDefineBitsLossless : public SwfDefinitionTag {
public:
    static constexpr uint8_t paletteFormat = 3;

    uint8_t bitmapFormat = 0; ///< 3: 8 bits and a palette, 4: 15 bits, 5: 24 or 32 bits
    uint16_t bitmapWidth = 0; ///< pixels
    uint16_t bitmapHeight = 0;
    uint8_t bitmapColorTableSize = 0; ///< colours of the palette less one; in the file with format 3 only
    SwfBytes pngData;                 ///< the zlib data unchanged: palette and pixels, no PNG file

    SwfTagDefineBitsLossless() : SwfDefinitionTag(20) {}
    explicit SwfTagDefineBitsLossless(SwfIStream& stream) : SwfTagDefineBitsLossless() { read(stream); }

protected:
    using SwfDefinitionTag::SwfDefinitionTag;
    void read(SwfIStream& stream);
    void writeBody(SwfOStream& stream) override;
};

/// DefineBitsLossless2 (36): its colours carry alpha.
class SwfTagDefineBitsLossless2 : public SwfTagDefineBitsLossless {
public:
    SwfTagDefineBitsLossless2() : SwfTagDefineBitsLossless(36) {}
    explicit SwfTagDefineBitsLossless2(SwfIStream& stream) : SwfTagDefineBitsLossless2() { read(stream); }
};

} // namespace libswf
