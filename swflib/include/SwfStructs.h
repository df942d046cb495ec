// The records that every tag family shares.
#pragma once

#include <string>
#include <string_view>

#include "SwfObject.h"
#include "SwfVector.h"

namespace libswf {

class SwfIStream;
class SwfOStream;
struct SwfContext;

/// The width that a record's fields have in its file, where it is not the one that is worked out for them. Kept by the
/// full form; it grows with the values.
class SwfKeptWidth {
public:
    explicit operator bool() const { return _bits >= 0; }
    uint8_t bits() const { return static_cast<uint8_t>(_bits); }
    void set(uint32_t bits) { _bits = static_cast<int8_t>(bits); }
    /// Keeps a width that was read, unless it is the one expected.
    void keep(const SwfContext& context, uint32_t bits, uint32_t expected);
    /// What is written: `needed` holds the values.
    uint32_t written(uint32_t expected, uint32_t needed) const;

private:
    int8_t _bits = -1;
};

/// RECT, in twips. Memory order differs from file order (Xmin, Xmax, Ymin, Ymax).
/// Coordinates of 2^30 and more do not fit the width field: writing them throws SwfException code 2.
class SwfRect : public SwfStruct {
public:
    int32_t Xmin = 0, Ymin = 0, Xmax = 0, Ymax = 0;
    SwfKeptWidth bits; ///< 0 to 31

    SwfRect() = default;
    SwfRect(int32_t xmin, int32_t ymin, int32_t xmax, int32_t ymax) : Xmin(xmin), Ymin(ymin), Xmax(xmax), Ymax(ymax) {}
    explicit SwfRect(SwfIStream& stream) { read(stream); }

    void read(SwfIStream& stream);
    uint32_t getSize(SwfContext& context);
    void write(SwfOStream& stream) const;

private:
    uint32_t narrowest() const;
    uint32_t width() const;
};

using SwfRects = SwfVector<SwfRect>;

/// MATRIX. Scale and rotate/skew are 16.16 in the file; translation in twips. The classic form cuts them to the 24 bits
/// of a float.
/// A scale of 16384 and more, or a translation of 2^30 and more, throws SwfException code 2 on write.
class SwfMatrix : public SwfStruct {
public:
    bool hasScale = false;
    double scaleX = 0, scaleY = 0;
    bool hasRotate = false;
    double rotateSkew0 = 0, rotateSkew1 = 0;
    int32_t translateX = 0, translateY = 0;
    SwfKeptWidth scaleBits, rotateBits, translateBits; ///< 0 to 31

    SwfMatrix() = default;
    explicit SwfMatrix(SwfIStream& stream) { read(stream); }

    void read(SwfIStream& stream);
    uint32_t getSize(SwfContext& context);
    void write(SwfOStream& stream) const;
};

/// RGB or RGBA, as the context's alpha switch says. An RGB colour that was read has alpha 0.
class SwfColor : public SwfStruct {
public:
    uint8_t red = 0, green = 0, blue = 0, alpha = 0;

    SwfColor() = default;
    SwfColor(uint8_t r, uint8_t g, uint8_t b, uint8_t a = 0) : red(r), green(g), blue(b), alpha(a) {}
    explicit SwfColor(SwfIStream& stream) { read(stream); }

    void read(SwfIStream& stream);
    uint32_t getSize(SwfContext& context);
    void write(SwfOStream& stream) const;

    /// 0xRRGGBBAA.
    uint32_t packed() const { return uint32_t(red) << 24 | uint32_t(green) << 16 | uint32_t(blue) << 8 | alpha; }
    static SwfColor fromPacked(uint32_t v) {
        return {static_cast<uint8_t>(v >> 24), static_cast<uint8_t>(v >> 16), static_cast<uint8_t>(v >> 8),
                static_cast<uint8_t>(v)};
    }
};

/// CXFORM, or CXFORMWITHALPHA when the context's alpha switch is on. Terms are 8.8, raw (256 = 1.0).
/// In the full form a term of more than 15 bits throws SwfException code 2 on write. Departures of the classic form,
/// kept on purpose: with only add terms and alpha on, green and blue do not widen the fields and may be cut; a width of
/// 16 is cut to the 4 bits of its field.
class SwfColorTransform : public SwfStruct {
public:
    bool hasAddTerms = false, hasMultTerms = false;
    int16_t redMult = 0, greenMult = 0, blueMult = 0, alphaMult = 0;
    int16_t redAdd = 0, greenAdd = 0, blueAdd = 0, alphaAdd = 0;
    SwfKeptWidth bits; ///< 0 to 15

    SwfColorTransform() = default;
    explicit SwfColorTransform(SwfIStream& stream) { read(stream); }

    void read(SwfIStream& stream);
    uint32_t getSize(SwfContext& context);
    void write(SwfOStream& stream) const;

private:
    uint32_t narrowest(const SwfContext& context) const;
    uint32_t width(const SwfContext& context) const;
};

/// STRING: bytes with a terminating NUL, in whatever encoding the movie uses.
class SwfString : public SwfStruct {
public:
    SwfString() = default;
    SwfString(const char* text) : _text(text) {}
    SwfString(std::string_view text) : _text(text) {}
    SwfString(std::string text) : _text(std::move(text)) {}

    /// Bytes without the NUL.
    uint32_t length() const { return static_cast<uint32_t>(_text.size()); }
    std::string_view view() const { return _text; }
    const char* c_str() const { return _text.c_str(); }
    bool empty() const { return _text.empty(); }
    void assign(std::string_view text) { _text.assign(text); }

    /// Bytes in the file, with or without the NUL.
    uint32_t getSize(bool withNul) const { return length() + (withNul ? 1 : 0); }
    void write(SwfOStream& stream, bool withNul) const;

    friend bool operator==(const SwfString& a, const SwfString& b) { return a._text == b._text; }

private:
    std::string _text;
};

using SwfStrings = SwfVector<SwfString>;

} // namespace libswf
