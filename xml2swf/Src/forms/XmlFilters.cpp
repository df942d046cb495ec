#include "XmlFilters.h"

#include "XmlNumbers.h"

namespace xml2swf {

using namespace libswf;

namespace {

// One part of a filter's flag byte. A part that is not written is read where a text has it.
struct FlagBits {
    enum Shown : uint8_t { always, never, unlessZero };
    std::string_view name;
    uint8_t shift;
    uint8_t bits;
    Shown shown = always;
};

// In the classic and in the full form.
struct FlagLayout {
    std::span<const FlagBits> classic, full;
    std::span<const FlagBits> of(bool fullForm) const { return fullForm ? full : classic; }
};

constexpr FlagBits classicShadow[] = {
    {"Passes", 0, 5}, {"InnerShadow", 5, 1}, {"Knockout", 6, 1}, {"CompositeSource", 7, 1}};
constexpr FlagBits fullShadow[] = {
    {"Passes", 0, 5}, {"InnerShadow", 7, 1}, {"Knockout", 6, 1}, {"CompositeSource", 5, 1}};
constexpr FlagLayout shadowFlags{classicShadow, fullShadow};

constexpr FlagBits fullGlow[] = {{"Passes", 0, 5}, {"InnerGlow", 7, 1}, {"Knockout", 6, 1}, {"CompositeSource", 5, 1}};
constexpr FlagLayout glowFlags{classicShadow, fullGlow};

constexpr FlagBits classicBevel[] = {
    {"Passes", 0, 4}, {"InnerShadow", 4, 1}, {"Knockout", 5, 1}, {"CompositeSource", 6, 1}, {"OnTop", 7, 1}};
constexpr FlagBits fullBevel[] = {
    {"Passes", 0, 4}, {"InnerShadow", 7, 1}, {"Knockout", 6, 1}, {"CompositeSource", 5, 1}, {"OnTop", 4, 1}};
constexpr FlagLayout bevelFlags{classicBevel, fullBevel};

constexpr FlagBits classicBlur[] = {{"Passes", 3, 5}, {"Reserved", 0, 3, FlagBits::never}};
constexpr FlagBits fullBlur[] = {{"Passes", 3, 5}, {"Reserved", 0, 3, FlagBits::unlessZero}};
constexpr FlagLayout blurFlags{classicBlur, fullBlur};

constexpr FlagBits classicConvolution[] = {{"Clamp", 1, 1}, {"Reserved", 2, 6, FlagBits::never}};
constexpr FlagBits fullConvolution[] = {
    {"Clamp", 1, 1}, {"PreserveAlpha", 0, 1}, {"Reserved", 2, 6, FlagBits::unlessZero}};
constexpr FlagLayout convolutionFlags{classicConvolution, fullConvolution};

int valueOf(const FlagBits& part, uint8_t flags) { return (flags >> part.shift) & ((1 << part.bits) - 1); }

// How many of the parts that both layouts have, in the same order, have another value in the full form.
uint64_t differingFlags(const FlagLayout& layout, uint8_t flags) {
    uint64_t count = 0;
    for (size_t i = 0; i < layout.classic.size() && layout.classic[i].shown == FlagBits::always; ++i)
        count += valueOf(layout.classic[i], flags) != valueOf(layout.full[i], flags);
    return count;
}

void writeFlags(XmlNode& filter, const FlagLayout& layout, uint8_t flags) {
    XmlNode node(filter, "BitsField");
    if (!node.fullForm())
        node.differs(differingFlags(layout, flags));
    for (const FlagBits& part : layout.of(node.fullForm())) {
        const int value = valueOf(part, flags);
        if (part.shown == FlagBits::always || (part.shown == FlagBits::unlessZero && value != 0))
            node.attribute(part.name, value);
    }
}

uint32_t readFlag(XmlElement& element, const FlagBits& part) {
    if (part.bits > 1)
        return element.masked(part.name, part.bits);
    return element.lowBit(part.name);
}

uint8_t readFlags(XmlElement& element, const FlagLayout& layout) {
    uint32_t flags = 0;
    for (const FlagBits& part : layout.of(element.fullForm()))
        flags |= readFlag(element, part) << part.shift;
    return static_cast<uint8_t>(flags);
}

// SwfFilterFixed or SwfFilterFixed8. Their two halves, the fraction first, are a number in the full form.
template <class Fixed>
constexpr uint32_t halfBits = 8 * sizeof(Fixed::low);

template <class Fixed>
void writeFixed(XmlNode& filter, std::string_view name, Fixed value) {
    XmlNode node(filter, name);
    if (node.fullForm()) {
        const uint32_t bits = uint32_t(value.low) << halfBits<Fixed> | value.high;
        const int32_t number = sizeof value == 2 ? static_cast<int16_t>(bits) : static_cast<int32_t>(bits);
        node.fixed("Value", number, 1u << halfBits<Fixed>);
        return;
    }
    node.attribute("High", value.high);
    node.attribute("Low", value.low);
}

template <class Fixed>
void readFixed(XmlElement& element, Fixed& value) {
    if (element.fullForm()) {
        const auto bits = static_cast<uint32_t>(element.fixed("Value", 1u << halfBits<Fixed>));
        value.high = static_cast<decltype(value.high)>(bits);
        value.low = static_cast<decltype(value.low)>(bits >> halfBits<Fixed>);
        return;
    }
    value.high = element.integer<decltype(value.high)>("High");
    value.low = element.integer<decltype(value.low)>("Low");
}

// Blur, Angle, Distance and Strength. The classic form does not show the stored distance: Angle stands in both places.
void writeDirected(XmlNode& node, const SwfDirectedFilter& filter) {
    writeFixed(node, "BlurX", filter.blurX);
    writeFixed(node, "BlurY", filter.blurY);
    writeFixed(node, "Angle", filter.angle);
    writeFixed(node, "Distance", node.fullForm() ? filter.distance : filter.angle);
    if (!node.fullForm())
        node.differs(filter.distance.high != filter.angle.high || filter.distance.low != filter.angle.low);
    writeFixed(node, "Strength", filter.strength);
}

void readDirectedField(XmlElement& child, SwfDirectedFilter& filter, const FlagLayout& layout) {
    const std::string_view name = child.name();
    if (name == "BlurX")
        readFixed(child, filter.blurX);
    else if (name == "BlurY")
        readFixed(child, filter.blurY);
    else if (name == "Angle")
        readFixed(child, filter.angle);
    else if (name == "Distance")
        readFixed(child, filter.distance);
    else if (name == "Strength")
        readFixed(child, filter.strength);
    else
        filter.flags = readFlags(child, layout);
}

constexpr std::string_view flagsFirst[] = {"BitsField", "BlurX", "BlurY", "Angle", "Distance", "Strength"};
constexpr std::string_view flagsLast[] = {"BlurX", "BlurY", "Angle", "Distance", "Strength", "BitsField"};

// Takes the name of a child out of those that are still to come. In the classic form the children must stand in the
// order of `names` from the first on: from the first that does not, the rest keep 0.
bool takeName(XmlElement& child, std::span<const std::string_view>& names) {
    if (child.fullForm())
        return std::any_of(names.begin(), names.end(), [&](std::string_view name) { return child.is(name); });
    const bool isNext = !names.empty() && child.is(names.front());
    names = names.subspan(isNext ? 1 : names.size());
    return isNext;
}

// The lists of the gradient filters are looked for by name.
template <class Filter>
void readDirected(XmlElement& element, Filter& filter, std::span<const std::string_view> names,
                  const FlagLayout& layout) {
    constexpr bool hasLists = std::is_base_of_v<SwfGradientFilter, Filter>;
    for (XmlElement child : element.children()) {
        if (takeName(child, names)) {
            readDirectedField(child, filter, layout);
        } else if (hasLists && (child.is("GradientColors") || child.is("GradientRation"))) {
            child.acceptAll();
        } else {
            child.skip(element.fullForm() ? XmlElement::notKnownHere
                                          : "the element stands out of its place and is not read");
        }
    }
}

// Reads the first `most` children of a name; more are noted as not read.
template <class Read>
void readItems(XmlElement& list, std::string_view name, uint32_t most, Read read) {
    uint32_t index = 0;
    for (XmlElement child : list.children()) {
        if (!child.is(name))
            child.skip();
        else if (index == most)
            child.skip("there are more entries than their count says");
        else
            read(child, index++);
    }
}

} // namespace

// Not in the unnamed namespace: writeChild and readChild find these by the type of their argument.
static void writeXml(XmlNode& node, const SwfDropShadowFilter& filter) {
    node.attribute("DropShadowColor", filter.dropShadowColor);
    writeFlags(node, shadowFlags, filter.flags);
    writeDirected(node, filter);
}

static void readXml(XmlElement& element, SwfDropShadowFilter& filter) {
    filter.dropShadowColor = element.color("DropShadowColor");
    readDirected(element, filter, flagsFirst, shadowFlags);
}

static void writeXml(XmlNode& node, const SwfBlurFilter& filter) {
    writeFixed(node, "BlurX", filter.blurX);
    writeFixed(node, "BlurY", filter.blurY);
    writeFlags(node, blurFlags, filter.flags);
}

static void readXml(XmlElement& element, SwfBlurFilter& filter) {
    for (XmlElement child : element.children()) {
        if (child.is("BlurX"))
            readFixed(child, filter.blurX);
        else if (child.is("BlurY"))
            readFixed(child, filter.blurY);
        else if (child.is("BitsField"))
            filter.flags = readFlags(child, blurFlags);
        else
            child.skip();
    }
}

static void writeXml(XmlNode& node, const SwfGlowFilter& filter) {
    node.attribute("RGBA", filter.glowColor);
    writeFixed(node, "BlurX", filter.blurX);
    writeFixed(node, "BlurY", filter.blurY);
    writeFixed(node, "Strength", filter.strength);
    writeFlags(node, glowFlags, filter.flags);
}

static void readXml(XmlElement& element, SwfGlowFilter& filter) {
    filter.glowColor = element.color("RGBA");
    for (XmlElement child : element.children()) {
        if (child.is("BlurX"))
            readFixed(child, filter.blurX);
        else if (child.is("BlurY"))
            readFixed(child, filter.blurY);
        else if (child.is("Strength"))
            readFixed(child, filter.strength);
        else if (child.is("BitsField"))
            filter.flags = readFlags(child, glowFlags);
        else
            child.skip();
    }
}

static void writeXml(XmlNode& node, const SwfBevelFilter& filter) {
    node.attribute("ShadowColor", filter.shadowColor);
    node.attribute("HighlightColor", filter.highlightColor);
    writeDirected(node, filter);
    writeFlags(node, bevelFlags, filter.flags);
}

static void readXml(XmlElement& element, SwfBevelFilter& filter) {
    filter.shadowColor = element.color("ShadowColor");
    filter.highlightColor = element.color("HighlightColor");
    readDirected(element, filter, flagsLast, bevelFlags);
}

static void writeXml(XmlNode& node, const SwfGradientFilter& filter) {
    if (!node.fullForm())
        node.attribute("NumColors", filter.numColors);
    writeDirected(node, filter);
    writeFlags(node, bevelFlags, filter.flags);
    {
        XmlNode colors(node, "GradientColors");
        for (const SwfColor& color : filter.gradientColors)
            XmlNode(colors, "Color").attribute("Value", color.packed());
    }
    XmlNode ratios(node, "GradientRation");
    for (uint8_t ratio : filter.gradientRatio)
        XmlNode(ratios, "Ratio").attribute("Value", ratio);
}

// In the full form the colours count themselves.
static void readXml(XmlElement& element, SwfGradientFilter& filter) {
    filter.numColors = element.fullForm() ? UINT8_MAX : element.ui8("NumColors");
    readDirected(element, filter, flagsLast, bevelFlags);
    if (auto colors = element.child("GradientColors")) {
        readItems(*colors, "Color", filter.numColors, [&](XmlElement& color, uint32_t) {
            filter.gradientColors.append(SwfColor::fromPacked(color.bits32("Value")));
        });
    }
    if (auto ratios = element.child("GradientRation")) {
        readItems(*ratios, "Ratio", filter.numColors,
                  [&](XmlElement& ratio, uint32_t) { filter.gradientRatio.append(ratio.ui8("Value")); });
    }
    if (element.fullForm())
        filter.numColors = static_cast<uint8_t>(std::max(filter.gradientColors.size(), filter.gradientRatio.size()));
}

static void writeXml(XmlNode& node, const SwfConvolutionFilter& filter) {
    node.attribute("MatrixX", filter.matrixX);
    node.attribute("MatrixY", filter.matrixY);
    node.attribute("Divisor", filter.divisor);
    node.attribute("Bias", filter.bias);
    node.attribute("DefaultColor", filter.defaultColor);
    writeFlags(node, convolutionFlags, filter.flags);
    XmlNode matrix(node, "Matrix");
    for (float value : filter.matrix)
        XmlNode(matrix, "Code").attribute("Value", value);
}

static void readXml(XmlElement& element, SwfConvolutionFilter& filter) {
    filter.matrixX = element.ui8("MatrixX");
    filter.matrixY = element.ui8("MatrixY");
    filter.divisor = element.real("Divisor");
    filter.bias = element.real("Bias");
    filter.defaultColor = element.color("DefaultColor");
    if (auto flags = element.child("BitsField"))
        filter.flags = readFlags(*flags, convolutionFlags);
    if (auto matrix = element.child("Matrix")) {
        readItems(*matrix, "Code", filter.entries(),
                  [&](XmlElement& code, uint32_t) { filter.matrix.append(code.real("Value")); });
    }
}

static void writeXml(XmlNode& node, const SwfColorMatrixFilter& filter) {
    XmlNode matrix(node, "Matrix");
    for (float value : filter.matrix)
        XmlNode(matrix, "Value").attribute("Value", value);
}

static void readXml(XmlElement& element, SwfColorMatrixFilter& filter) {
    if (auto matrix = element.child("Matrix")) {
        readItems(*matrix, "Value", static_cast<uint32_t>(filter.matrix.size()),
                  [&](XmlElement& value, uint32_t index) { filter.matrix[index] = value.real("Value"); });
    }
}

template <class Filter>
std::shared_ptr<SwfGenericFilter> readFilter(XmlElement& element) {
    auto filter = std::make_shared<Filter>();
    readXml(element, *filter);
    return filter;
}

void writeXml(XmlNode& node, const SwfFilterList& list) {
    for (const SwfFilter& entry : list.filters) {
        switch (entry.filterId()) {
#define SWF_FILTER(id, type, element)                                                                                  \
    case id:                                                                                                           \
        writeChild(node, element, static_cast<const Swf##type&>(*entry.filter));                                       \
        break;
#include "SwfFilters.def"
        }
    }
}

void readXml(XmlElement& element, SwfFilterList& list) {
    for (XmlElement child : element.children()) {
        std::shared_ptr<SwfGenericFilter> filter;
#define SWF_FILTER(id, type, element)                                                                                  \
    if (child.is(element))                                                                                             \
        filter = readFilter<Swf##type>(child);
#include "SwfFilters.def"
        if (filter)
            list.filters.append(SwfFilter(std::move(filter)));
        else
            child.skip();
    }
}

} // namespace xml2swf
