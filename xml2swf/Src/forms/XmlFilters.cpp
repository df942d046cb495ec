#include "XmlFilters.h"

#include "XmlNumbers.h"

namespace xml2swf {

using namespace libswf;

namespace {

// One part of a filter's flag byte. A part that is not written is read where a text has it.
struct FlagBits {
    std::string_view name;
    uint8_t shift;
    uint8_t bits;
    bool isWritten = true;
};
using FlagLayout = std::span<const FlagBits>;

constexpr FlagBits shadowFlags[] = {
    {"Passes", 0, 5}, {"InnerShadow", 5, 1}, {"Knockout", 6, 1}, {"CompositeSource", 7, 1}};
constexpr FlagBits bevelFlags[] = {
    {"Passes", 0, 4}, {"InnerShadow", 4, 1}, {"Knockout", 5, 1}, {"CompositeSource", 6, 1}, {"OnTop", 7, 1}};
constexpr FlagBits blurFlags[] = {{"Passes", 3, 5}, {"Reserved", 0, 3, false}};
constexpr FlagBits convolutionFlags[] = {{"Clamp", 1, 1}, {"Reserved", 2, 6, false}};

void writeFlags(XmlNode& filter, FlagLayout layout, uint8_t flags) {
    XmlNode node(filter, "BitsField");
    for (const FlagBits& part : layout) {
        if (part.isWritten)
            node.attribute(part.name, (flags >> part.shift) & ((1 << part.bits) - 1));
    }
}

uint32_t readFlag(XmlElement& element, const FlagBits& part) {
    if (part.bits > 1)
        return element.masked(part.name, part.bits);
    return element.lowBit(part.name);
}

uint8_t readFlags(XmlElement& element, FlagLayout layout) {
    uint32_t flags = 0;
    for (const FlagBits& part : layout)
        flags |= readFlag(element, part) << part.shift;
    return static_cast<uint8_t>(flags);
}

// SwfFilterFixed or SwfFilterFixed8.
template <class Fixed>
void writeFixed(XmlNode& filter, std::string_view name, Fixed value) {
    XmlNode node(filter, name);
    node.attribute("High", value.high);
    node.attribute("Low", value.low);
}

template <class Fixed>
void readFixed(XmlElement& element, Fixed& value) {
    value.high = element.integer<decltype(value.high)>("High");
    value.low = element.integer<decltype(value.low)>("Low");
}

// Blur, Angle, Distance and Strength. The stored distance is not shown: Angle stands in both places.
void writeDirected(XmlNode& node, const SwfDirectedFilter& filter) {
    writeFixed(node, "BlurX", filter.blurX);
    writeFixed(node, "BlurY", filter.blurY);
    writeFixed(node, "Angle", filter.angle);
    writeFixed(node, "Distance", filter.angle);
    writeFixed(node, "Strength", filter.strength);
}

void readDirectedField(XmlElement& child, SwfDirectedFilter& filter, FlagLayout layout) {
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

// The children must stand in the order of `names` from the first on. From the first that does not, the rest keep 0;
// only the lists of the gradient filters are looked for by name.
template <class Filter>
void readDirected(XmlElement& element, Filter& filter, std::span<const std::string_view> names, FlagLayout layout) {
    constexpr bool hasLists = std::is_base_of_v<SwfGradientFilter, Filter>;
    bool inOrder = true;
    for (XmlElement child : element.children()) {
        inOrder = inOrder && !names.empty() && child.is(names.front());
        if (inOrder) {
            readDirectedField(child, filter, layout);
            names = names.subspan(1);
        } else if (hasLists && (child.is("GradientColors") || child.is("GradientRation"))) {
            child.acceptAll();
        } else {
            child.skip("the element stands out of its place and is not read");
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
    writeFlags(node, shadowFlags, filter.flags);
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
            filter.flags = readFlags(child, shadowFlags);
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

static void readXml(XmlElement& element, SwfGradientFilter& filter) {
    filter.numColors = element.ui8("NumColors");
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
