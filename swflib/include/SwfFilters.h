// Bitmap filters of placed objects and buttons.
//
// Flag bytes, bit 0 the least significant, as players read them and the full form shows them:
//   DropShadow, Glow              Passes 0-4, CompositeSource 5, Knockout 6, InnerShadow or InnerGlow 7
//   Bevel, both gradient filters  Passes 0-3, OnTop 4, CompositeSource 5, Knockout 6, InnerShadow 7
//   Blur                          reserved 0-2, Passes 3-7
//   Convolution                   PreserveAlpha 0, Clamp 1, reserved 2-7
// The classic form gives the flags behind Passes the opposite order, on purpose: all bits survive, their names differ.
// It has no flags of a convolution in the file.
#pragma once

#include <array>
#include <memory>

#include "SwfStream.h"
#include "SwfStructs.h"

namespace libswf {

/// FIXED as its two halves in file order: `high` stands first, although the fraction is what stands there.
struct SwfFilterFixed {
    uint16_t high = 0, low = 0;
};

/// FIXED8 as its two bytes in file order, `high` first.
struct SwfFilterFixed8 {
    uint8_t high = 0, low = 0;
};

/// Base of the filters. Colours are RGBA whatever the context's alpha switch says.
class SwfGenericFilter : public SwfStruct {
public:
    virtual ~SwfGenericFilter() = default;
    SwfGenericFilter(const SwfGenericFilter&) = delete;
    SwfGenericFilter& operator=(const SwfGenericFilter&) = delete;

    /// The number that stands before the body in a list.
    virtual uint8_t filterId() const = 0;
    /// Bytes of the body, without the number.
    virtual uint32_t getSize(SwfContext& context);
    virtual void write(SwfOStream& stream) const = 0;

protected:
    SwfGenericFilter() = default;
};

/// The fields that the filters with a light direction end with.
class SwfDirectedFilter : public SwfGenericFilter {
public:
    SwfFilterFixed blurX, blurY; ///< pixels
    SwfFilterFixed angle;        ///< radians
    SwfFilterFixed distance;     ///< pixels
    SwfFilterFixed8 strength;
    uint8_t flags = 0;

protected:
    void readDirected(SwfIStream& stream);
    void writeDirected(SwfOStream& stream) const;
};

class SwfDropShadowFilter : public SwfDirectedFilter {
public:
    SwfColor dropShadowColor;

    SwfDropShadowFilter() = default;
    explicit SwfDropShadowFilter(SwfIStream& stream);
    uint8_t filterId() const override { return 0; }
    void write(SwfOStream& stream) const override;
};

class SwfBlurFilter : public SwfGenericFilter {
public:
    SwfFilterFixed blurX, blurY; ///< pixels
    uint8_t flags = 0;

    SwfBlurFilter() = default;
    explicit SwfBlurFilter(SwfIStream& stream);
    uint8_t filterId() const override { return 1; }
    void write(SwfOStream& stream) const override;
};

class SwfGlowFilter : public SwfGenericFilter {
public:
    SwfColor glowColor;
    SwfFilterFixed blurX, blurY; ///< pixels
    SwfFilterFixed8 strength;
    uint8_t flags = 0;

    SwfGlowFilter() = default;
    explicit SwfGlowFilter(SwfIStream& stream);
    uint8_t filterId() const override { return 2; }
    void write(SwfOStream& stream) const override;
};

class SwfBevelFilter : public SwfDirectedFilter {
public:
    SwfColor shadowColor, highlightColor;

    SwfBevelFilter() = default;
    explicit SwfBevelFilter(SwfIStream& stream);
    uint8_t filterId() const override { return 3; }
    void write(SwfOStream& stream) const override;
};

/// What both gradient filters hold. numColors decides how many colours and ratios are written: missing ones as 0,
/// surplus ones not at all.
class SwfGradientFilter : public SwfDirectedFilter {
public:
    uint8_t numColors = 0;
    SwfVector<SwfColor> gradientColors;
    SwfVector<uint8_t> gradientRatio;

    void write(SwfOStream& stream) const override;

protected:
    void read(SwfIStream& stream);
};

class SwfGradientGlowFilter : public SwfGradientFilter {
public:
    SwfGradientGlowFilter() = default;
    explicit SwfGradientGlowFilter(SwfIStream& stream) { read(stream); }
    uint8_t filterId() const override { return 4; }
};

/// matrixX × matrixY entries are written: missing ones as 0, surplus ones not at all.
/// A flags byte ends it. The classic form departs from that on purpose: the byte is neither read nor written, but
/// counted, so getSize is one byte more than write gives. A tag whose list ends with this filter is filled up with a
/// zero flags byte; a filter after this one cannot be read from a file that has the byte.
class SwfConvolutionFilter : public SwfGenericFilter {
public:
    uint8_t matrixX = 0, matrixY = 0; ///< columns and rows
    float divisor = 0, bias = 0;
    SwfVector<float> matrix; ///< row by row
    SwfColor defaultColor;
    uint8_t flags = 0;

    SwfConvolutionFilter() = default;
    explicit SwfConvolutionFilter(SwfIStream& stream);
    uint32_t entries() const { return uint32_t(matrixX) * matrixY; }
    uint8_t filterId() const override { return 5; }
    uint32_t getSize(SwfContext& context) override;
    void write(SwfOStream& stream) const override;
};

/// Five terms each for red, green, blue and alpha.
class SwfColorMatrixFilter : public SwfGenericFilter {
public:
    std::array<float, 20> matrix{};

    SwfColorMatrixFilter() = default;
    explicit SwfColorMatrixFilter(SwfIStream& stream);
    uint8_t filterId() const override { return 6; }
    void write(SwfOStream& stream) const override;
};

class SwfGradientBevelFilter : public SwfGradientFilter {
public:
    SwfGradientBevelFilter() = default;
    explicit SwfGradientBevelFilter(SwfIStream& stream) { read(stream); }
    uint8_t filterId() const override { return 7; }
};

/// One entry of a list. An entry without a filter is never written.
class SwfFilter : public SwfStruct {
public:
    static constexpr int none = -1;
    std::shared_ptr<SwfGenericFilter> filter;

    SwfFilter() = default;
    explicit SwfFilter(std::shared_ptr<SwfGenericFilter> filter) : filter(std::move(filter)) {}
    /// Throws code 3 for a number that is no filter's.
    explicit SwfFilter(SwfIStream& stream);

    int filterId() const { return filter ? filter->filterId() : none; }
};

/// FILTERLIST: at most 255 filters (code 2 on write). The classic form takes one more, on purpose: a list of 256 is
/// written with the count 0 and cannot be read back.
class SwfFilterList : public SwfStruct {
public:
    SwfVector<SwfFilter> filters;

    SwfFilterList() = default;
    explicit SwfFilterList(SwfIStream& stream) { read(stream); }

    void read(SwfIStream& stream);
    uint32_t getSize(SwfContext& context);
    /// On a counter counts what getSize gives, which a convolution filter makes more than what is written.
    void write(SwfOStream& stream) const;

private:
    uint32_t count(const SwfContext& context) const;
    uint32_t measured(SwfContext& context) const;
};

} // namespace libswf
