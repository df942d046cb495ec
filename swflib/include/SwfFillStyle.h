// Fill styles of shapes.
#pragma once

#include <memory>

#include "SwfGradientRecord.h"
#include "SwfPooled.h"
#include "SwfStructs.h"

namespace libswf {

/// FillStyleType as it stands in the file.
namespace SwfFillType {
constexpr uint8_t solid = 0x00;
constexpr uint8_t linearGradient = 0x10;
constexpr uint8_t radialGradient = 0x12;
constexpr uint8_t focalRadialGradient = 0x13;
constexpr uint8_t tiledBitmap = 0x40;
constexpr uint8_t clippedBitmap = 0x41;
constexpr uint8_t nonSmoothedTiledBitmap = 0x42;
constexpr uint8_t nonSmoothedClippedBitmap = 0x43;
} // namespace SwfFillType

/// FILLSTYLE. A counting stream handed to write measures.
class SwfFillStyle : public SwfStruct, public SwfPooled {
public:
    uint32_t type = SwfFillType::solid; ///< one byte in the file

    explicit SwfFillStyle(uint32_t fillType) : type(fillType) {}
    virtual ~SwfFillStyle() = default;
    SwfFillStyle(const SwfFillStyle&) = delete;
    SwfFillStyle& operator=(const SwfFillStyle&) = delete;

    uint32_t getSize(SwfContext& context);
    virtual void write(SwfOStream& stream) = 0;

    /// Reads the type byte and the style that it announces; throws SwfException code 3 for an unknown type.
    static std::unique_ptr<SwfFillStyle> read(SwfIStream& stream);
};

class SwfSolidFillStyle : public SwfFillStyle {
public:
    SwfColor color;

    SwfSolidFillStyle() : SwfFillStyle(SwfFillType::solid) {}
    explicit SwfSolidFillStyle(SwfIStream& stream);
    void write(SwfOStream& stream) override;
};

class SwfGradientFillStyle : public SwfFillStyle {
public:
    SwfMatrix matrix;
    SwfGradientRecords gradients; ///< of linear and radial fills
    SwfFocalGradient focal;       ///< of focal radial fills

    explicit SwfGradientFillStyle(uint32_t fillType = SwfFillType::linearGradient) : SwfFillStyle(fillType) {}
    SwfGradientFillStyle(SwfIStream& stream, uint32_t fillType);
    void write(SwfOStream& stream) override;

    bool isFocal() const { return type == SwfFillType::focalRadialGradient; }
};

class SwfBitmapFillStyle : public SwfFillStyle {
public:
    uint16_t bitmapId = 0; ///< 0xFFFF where there is no bitmap
    SwfMatrix matrix;

    explicit SwfBitmapFillStyle(uint32_t fillType = SwfFillType::clippedBitmap) : SwfFillStyle(fillType) {}
    SwfBitmapFillStyle(SwfIStream& stream, uint32_t fillType);
    void write(SwfOStream& stream) override;
};

/// FILLSTYLEARRAY: at most 255 styles (254 in the classic form), 65,535 where the context allows extended counts; more
/// throw SwfException code 2.
class SwfFillStyles : public SwfStruct {
public:
    SwfPtrVector<SwfFillStyle*> items;

    void read(SwfIStream& stream);
    uint32_t getSize(SwfContext& context);
    void write(SwfOStream& stream);
};

} // namespace libswf
