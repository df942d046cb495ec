// Fill and line styles of morph shapes: a start and an end value each. Colours are RGBA.
#pragma once

#include <memory>

#include "SwfFillStyle.h"
#include "SwfLineStyle.h"
#include "SwfStructs.h"

namespace libswf {

/// MORPHGRADRECORD.
class SwfMorphGradientRecord : public SwfStruct {
public:
    uint8_t startRatio = 0, endRatio = 0;
    SwfColor startColor, endColor;

    void read(SwfIStream& stream);
    void write(SwfOStream& stream) const;
};

/// MORPHGRADIENT: at most 15 records (code 2), their number in the flags byte. In the classic form the whole byte is
/// the number, at most 255.
class SwfMorphGradientRecords : public SwfStruct {
public:
    SwfGradientFlags flags; ///< full form: the modes; the count is that of the records
    SwfVector<SwfMorphGradientRecord> records;

    void read(SwfIStream& stream);
    void write(SwfOStream& stream) const;
};

/// MORPHFILLSTYLE. The types of SwfFillType, in the classic form without the focal gradient; any other throws
/// SwfException code 3 on reading.
class SwfMorphFillStyle : public SwfStruct {
public:
    uint32_t type = SwfFillType::solid; ///< one byte in the file

    explicit SwfMorphFillStyle(uint32_t fillType) : type(fillType) {}
    virtual ~SwfMorphFillStyle() = default;
    SwfMorphFillStyle(const SwfMorphFillStyle&) = delete;
    SwfMorphFillStyle& operator=(const SwfMorphFillStyle&) = delete;

    uint32_t getSize(SwfContext& context);
    virtual void write(SwfOStream& stream) = 0;

    static std::unique_ptr<SwfMorphFillStyle> read(SwfIStream& stream);
};

class SwfMorphSolidFillStyle : public SwfMorphFillStyle {
public:
    SwfColor startColor, endColor;

    SwfMorphSolidFillStyle() : SwfMorphFillStyle(SwfFillType::solid) {}
    explicit SwfMorphSolidFillStyle(SwfIStream& stream);
    void write(SwfOStream& stream) override;
};

class SwfMorphGradientFillStyle : public SwfMorphFillStyle {
public:
    SwfMatrix startMatrix, endMatrix;
    SwfMorphGradientRecords gradients;
    uint8_t startFocalPoint[2] = {},
            endFocalPoint[2] = {}; ///< of a focal gradient: 8.8 fixed point, as in SwfFocalGradient

    bool isFocal() const { return type == SwfFillType::focalRadialGradient; }

    explicit SwfMorphGradientFillStyle(uint32_t fillType = SwfFillType::linearGradient) : SwfMorphFillStyle(fillType) {}
    SwfMorphGradientFillStyle(SwfIStream& stream, uint32_t fillType);
    void write(SwfOStream& stream) override;
};

class SwfMorphBitmapFillStyle : public SwfMorphFillStyle {
public:
    uint16_t bitmapId = 0;
    SwfMatrix startMatrix, endMatrix;

    explicit SwfMorphBitmapFillStyle(uint32_t fillType = SwfFillType::clippedBitmap) : SwfMorphFillStyle(fillType) {}
    SwfMorphBitmapFillStyle(SwfIStream& stream, uint32_t fillType);
    void write(SwfOStream& stream) override;
};

/// MORPHFILLSTYLEARRAY: at most 65,535 styles (code 2).
class SwfMorphFillStyles : public SwfStruct {
public:
    SwfPtrVector<SwfMorphFillStyle*> items;

    void read(SwfIStream& stream);
    uint32_t getSize(SwfContext& context);
    void write(SwfOStream& stream);
};

/// A line style of either kind.
class SwfMorphLineStyleGeneric : public SwfStruct {
public:
    uint16_t startWidth = 0, endWidth = 0; ///< twips
    SwfColor startColor, endColor;

    virtual ~SwfMorphLineStyleGeneric() = default;
    SwfMorphLineStyleGeneric(const SwfMorphLineStyleGeneric&) = delete;
    SwfMorphLineStyleGeneric& operator=(const SwfMorphLineStyleGeneric&) = delete;

    virtual void read(SwfIStream& stream) = 0;
    uint32_t getSize(SwfContext& context);
    virtual void write(SwfOStream& stream) = 0;

protected:
    SwfMorphLineStyleGeneric() = default;
};

/// MORPHLINESTYLE.
class SwfMorphLineStyle : public SwfMorphLineStyleGeneric {
public:
    void read(SwfIStream& stream) override;
    void write(SwfOStream& stream) override;
};

/// MORPHLINESTYLE2. The classic form departs on purpose from what players read: of the two flag bytes the one with the
/// end cap comes first, so that files whose flags are not all 0 are misread. HasFill set without a fill throws code 2
/// on writing.
class SwfMorphLineStyle2 : public SwfMorphLineStyleGeneric {
public:
    SwfLineFlags flags;
    uint8_t miterLimitFactor[2] = {}; ///< 8.8 fixed point, its two bytes in file order; only with a miter join
    std::shared_ptr<SwfMorphFillStyle> fillType; ///< instead of the colours when HasFill is set

    void read(SwfIStream& stream) override;
    void write(SwfOStream& stream) override;
};

/// MORPHLINESTYLEARRAY: at most 65,535 styles (code 2).
class SwfMorphLineStyles : public SwfStruct {
public:
    SwfPtrVector<SwfMorphLineStyleGeneric*> items;

    /// Makes items of the class Style.
    template <class Style>
    void read(SwfIStream& stream);
    uint32_t getSize(SwfContext& context);
    void write(SwfOStream& stream);
};

extern template void SwfMorphLineStyles::read<SwfMorphLineStyle>(SwfIStream&);
extern template void SwfMorphLineStyles::read<SwfMorphLineStyle2>(SwfIStream&);

} // namespace libswf
