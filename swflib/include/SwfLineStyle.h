// Line styles of shapes.
#pragma once

#include <memory>

#include "SwfFillStyle.h"
#include "SwfStructs.h"

namespace libswf {

/// A line style of either kind. A counting stream handed to write measures.
class SwfLineStyleGeneric : public SwfStruct {
public:
    uint16_t width = 0; ///< twips
    SwfColor color;

    virtual ~SwfLineStyleGeneric() = default;
    SwfLineStyleGeneric(const SwfLineStyleGeneric&) = delete;
    SwfLineStyleGeneric& operator=(const SwfLineStyleGeneric&) = delete;

    virtual void read(SwfIStream& stream) = 0;
    uint32_t getSize(SwfContext& context);
    virtual void write(SwfOStream& stream) = 0;

protected:
    SwfLineStyleGeneric() = default;
};

/// LINESTYLE.
class SwfLineStyle : public SwfLineStyleGeneric {
public:
    void read(SwfIStream& stream) override;
    void write(SwfOStream& stream) override;
};

/// The two flag bytes of LINESTYLE2. In a shape `paint` comes first in the file, in a morph shape `ends` does.
struct SwfLineFlags {
    uint8_t paint = 0; ///< bits 0-2 PixelHinting, NoVScale, NoHScale; 3 HasFill; 4-5 JoinStyle; 6-7 StartCapStyle
    uint8_t ends = 0;  ///< bits 0-1 EndCapStyle; 2 NoClose; 3-7 reserved

    static constexpr uint32_t miterJoin = 2;

    bool hasFill() const { return (paint & 0x08) != 0; }
    uint32_t joinStyle() const { return paint >> 4 & 3; } ///< 0 round, 1 bevel, 2 miter
    bool hasMiter() const { return joinStyle() == miterJoin; }
};

/// LINESTYLE2. HasFill set without a fill throws SwfException code 2 on writing.
class SwfLineStyle2 : public SwfLineStyleGeneric {
public:
    SwfLineFlags flags;
    uint16_t miterLimitFactor = 0;          ///< 8.8 fixed point, raw; in the file only with a miter join
    std::shared_ptr<SwfFillStyle> fillType; ///< in the file instead of the colour when HasFill is set

    void read(SwfIStream& stream) override;
    void write(SwfOStream& stream) override;
};

/// LINESTYLEARRAY; limits as with fill styles. Reading makes LINESTYLE2 items where the context says so; writing takes
/// the items as they are.
class SwfLineStyles : public SwfStruct {
public:
    SwfPtrVector<SwfLineStyleGeneric*> items;

    void read(SwfIStream& stream);
    uint32_t getSize(SwfContext& context);
    void write(SwfOStream& stream);
};

} // namespace libswf
