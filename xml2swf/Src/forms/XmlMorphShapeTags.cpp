// DefineMorphShape 1 and 2 with their styles as XML.
#include <algorithm>

#include "XmlShapes.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

static constexpr XmlName morphGradientTypes[] = {{"Linear", SwfFillType::linearGradient},
                                                 {"Radial", SwfFillType::radialGradient}};
static constexpr XmlName fullGradientTypes[] = {{"Linear", SwfFillType::linearGradient},
                                                {"Radial", SwfFillType::radialGradient},
                                                {"FocalRadialGradient", SwfFillType::focalRadialGradient}};

// A child element with nothing but a value.
template <class T>
static void writeValue(XmlNode& parent, const char* name, const T& value) {
    XmlNode(parent, name).attribute("Value", value);
}

static void writeXml(XmlNode& node, const SwfMorphGradientRecord& record) {
    node.attribute("StartRatio", record.startRatio);
    node.attribute("EndRatio", record.endRatio);
    node.attribute("StartColor", record.startColor);
    node.attribute("EndColor", record.endColor);
}

static void readXml(XmlElement& element, SwfMorphGradientRecord& record) {
    record.startRatio = element.ui8("StartRatio");
    record.endRatio = element.ui8("EndRatio");
    record.startColor = element.color("StartColor");
    record.endColor = element.color("EndColor");
}

static void writeXml(XmlNode& node, const SwfMorphGradientRecords& gradient) {
    if (node.fullForm())
        writeGradientModes(node, gradient.flags);
    for (const SwfMorphGradientRecord& record : gradient.records)
        writeChild(node, "MorphGradientRecord", record);
}

static void readXml(XmlElement& element, SwfMorphGradientRecords& gradient) {
    if (element.fullForm())
        readGradientModes(element, gradient.flags);
    for (XmlElement child : element.anyChildren("MorphGradientRecord")) {
        SwfMorphGradientRecord record;
        readXml(child, record);
        gradient.records.append(record);
    }
}

static void writeXml(XmlNode& node, const SwfMorphSolidFillStyle& style) {
    node.attribute("StartColor", style.startColor);
    node.attribute("EndColor", style.endColor);
}

static void readXml(XmlElement& element, SwfMorphSolidFillStyle& style) {
    style.startColor = element.color("StartColor");
    style.endColor = element.color("EndColor");
}

static void writeXml(XmlNode& node, const SwfMorphGradientFillStyle& style) {
    const XmlNames types = node.fullForm() ? XmlNames(fullGradientTypes) : XmlNames(morphGradientTypes);
    node.attribute("Type", nameOf(types, style.type, "FillStyleType"));
    if (style.isFocal()) {
        writeFocalPoint(node, "StartFocalPoint", style.startFocalPoint);
        writeFocalPoint(node, "EndFocalPoint", style.endFocalPoint);
    }
    writeChild(node, "StartMatrix", style.startMatrix);
    writeChild(node, "EndMatrix", style.endMatrix);
    writeChild(node, "MorphGradientRecords", style.gradients);
}

static void readXml(XmlElement& element, SwfMorphGradientFillStyle& style) {
    const XmlNames types = element.fullForm() ? XmlNames(fullGradientTypes) : XmlNames(morphGradientTypes);
    style.type = element.named("Type", types, SwfFillType::linearGradient);
    if (style.isFocal()) {
        readFocalPoint(element, "StartFocalPoint", style.startFocalPoint);
        readFocalPoint(element, "EndFocalPoint", style.endFocalPoint);
    }
    readChild(element, "StartMatrix", style.startMatrix);
    readChild(element, "EndMatrix", style.endMatrix);
    readChild(element, "MorphGradientRecords", style.gradients);
}

static void writeXml(XmlNode& node, const SwfMorphBitmapFillStyle& style) {
    node.attribute("Type", nameOf(bitmapFillTypes, style.type, "FillStyleType"));
    node.attribute("BitmapId", style.bitmapId);
    writeChild(node, "StartMatrix", style.startMatrix);
    writeChild(node, "EndMatrix", style.endMatrix);
}

static void readXml(XmlElement& element, SwfMorphBitmapFillStyle& style) {
    style.type = element.named("Type", bitmapFillTypes, SwfFillType::clippedBitmap);
    style.bitmapId = element.ui16("BitmapId");
    readChild(element, "StartMatrix", style.startMatrix);
    readChild(element, "EndMatrix", style.endMatrix);
}

static void writeFillStyle(XmlNode& parent, const SwfMorphFillStyle& style) {
    if (const auto* solid = dynamic_cast<const SwfMorphSolidFillStyle*>(&style))
        writeChild(parent, "MorphSolidFillStyle", *solid);
    else if (const auto* gradient = dynamic_cast<const SwfMorphGradientFillStyle*>(&style))
        writeChild(parent, "MorphGradientFillStyle", *gradient);
    else if (const auto* bitmap = dynamic_cast<const SwfMorphBitmapFillStyle*>(&style))
        writeChild(parent, "BitmapFillStyle", *bitmap);
    else
        throw SwfException(SwfError::badData, "a morph fill style of the unknown type " + std::to_string(style.type));
}

template <class Style>
static std::unique_ptr<SwfMorphFillStyle> readAs(XmlElement& element) {
    auto style = std::make_unique<Style>();
    readXml(element, *style);
    return style;
}

// Null for an element that is no fill style.
static std::unique_ptr<SwfMorphFillStyle> readFillStyle(XmlElement& element) {
    if (element.is("MorphSolidFillStyle"))
        return readAs<SwfMorphSolidFillStyle>(element);
    if (element.is("MorphGradientFillStyle"))
        return readAs<SwfMorphGradientFillStyle>(element);
    if (element.is("BitmapFillStyle"))
        return readAs<SwfMorphBitmapFillStyle>(element);
    element.skip();
    return nullptr;
}

static void writeXml(XmlNode& node, const SwfMorphFillStyles& styles) {
    for (const SwfMorphFillStyle* style : styles.items)
        writeFillStyle(node, *style);
}

static void readXml(XmlElement& element, SwfMorphFillStyles& styles) {
    for (XmlElement child : element.children()) {
        if (auto style = readFillStyle(child))
            styles.items.add(std::move(style));
    }
}

static void writeXml(XmlNode& node, const SwfMorphLineStyle& style) {
    node.attribute("StartWidth", style.startWidth);
    node.attribute("EndWidth", style.endWidth);
    node.attribute("StartColor", style.startColor);
    node.attribute("EndColor", style.endColor);
}

static void readXml(XmlElement& element, SwfMorphLineStyle& style) {
    style.startWidth = element.ui16("StartWidth");
    style.endWidth = element.ui16("EndWidth");
    style.startColor = element.color("StartColor");
    style.endColor = element.color("EndColor");
}

// How many flags players read otherwise: the two bytes have changed places.
static uint64_t differingFlags(const SwfLineFlags& flags) {
    constexpr uint8_t inPaint[] = {0xC0, 0x30, 0x08, 0x04, 0x02, 0x01}, inEnds[] = {0x03, 0x04};
    const auto differ = [other = flags.paint ^ flags.ends](uint8_t bits) { return (other & bits) != 0; };
    return static_cast<uint64_t>(std::ranges::count_if(inPaint, differ) + std::ranges::count_if(inEnds, differ));
}

static void writeXml(XmlNode& node, const SwfMorphLineStyle2& style) {
    {
        XmlNode bits(node, "BitsField");
        writeLineFlags(bits, style.flags, "EndCapstyle");
        if (!bits.fullForm())
            bits.differs(differingFlags(style.flags));
    }
    writeValue(node, "StartWidth", style.startWidth);
    writeValue(node, "EndWidth", style.endWidth);
    if (style.flags.hasMiter()) {
        XmlNode miter(node, "MitterLimitFactor");
        if (miter.fullForm()) {
            miter.attribute("Value", style.miterLimitFactor[0] | style.miterLimitFactor[1] << 8);
        } else {
            miter.attribute("High", style.miterLimitFactor[0]);
            miter.attribute("Low", style.miterLimitFactor[1]);
        }
    }
    if (!style.flags.hasFill()) {
        writeValue(node, "StartColor", style.startColor);
        writeValue(node, "EndColor", style.endColor);
    } else if (style.fillType != nullptr) {
        XmlNode fill(node, "MorphFillStyle");
        writeFillStyle(fill, *style.fillType);
    }
}

static void readXml(XmlElement& element, SwfMorphLineStyle2& style) {
    for (XmlElement child : element.children()) {
        if (child.is("BitsField")) {
            readLineFlags(child, style.flags, "EndCapstyle");
        } else if (child.is("StartWidth")) {
            style.startWidth = child.ui16("Value");
        } else if (child.is("EndWidth")) {
            style.endWidth = child.ui16("Value");
        } else if (child.is("MitterLimitFactor") && child.fullForm()) {
            const uint16_t value = child.ui16("Value");
            style.miterLimitFactor[0] = static_cast<uint8_t>(value);
            style.miterLimitFactor[1] = static_cast<uint8_t>(value >> 8);
        } else if (child.is("MitterLimitFactor")) {
            style.miterLimitFactor[0] = child.ui8("High");
            style.miterLimitFactor[1] = child.ui8("Low");
        } else if (child.is("StartColor")) {
            style.startColor = child.color("Value");
        } else if (child.is("EndColor")) {
            style.endColor = child.color("Value");
        } else if (child.is("MorphFillStyle")) {
            if (auto fill = child.childAt(0, ""))
                style.fillType = readFillStyle(*fill);
        } else {
            child.skip();
        }
    }
}

template <class Style>
static void writeLineStyles(XmlNode& parent, const char* name, const char* itemName, const SwfMorphLineStyles& styles) {
    XmlNode node(parent, name);
    for (const SwfMorphLineStyleGeneric* style : styles.items)
        writeChild(node, itemName, dynamic_cast<const Style&>(*style));
}

template <class Style>
static void readLineStyles(XmlElement& element, const char* itemName, SwfMorphLineStyles& styles) {
    for (XmlElement child : element.anyChildren(itemName)) {
        auto style = std::make_unique<Style>();
        readXml(child, *style);
        styles.items.add(std::move(style));
    }
}

static void writeEdges(XmlNode& parent, const SwfMorphShapeTag& tag) {
    {
        XmlNode start(parent, "StartEdges");
        writeShapeRecords(start, tag.startEdges);
    }
    XmlNode end(parent, "EndEdges");
    writeShapeRecords(end, tag.endEdges);
}

// What both versions have under the same names. False for any other child.
static bool readCommonChild(XmlElement& child, SwfMorphShapeTag& tag) {
    if (child.is("StartBounds"))
        readXml(child, tag.startBounds);
    else if (child.is("EndBounds"))
        readXml(child, tag.endBounds);
    else if (child.is("MorphFillStyles"))
        readXml(child, tag.fillStyles);
    else if (child.is("StartEdges"))
        readShapeRecords(child, tag.startEdges);
    else if (child.is("EndEdges"))
        readShapeRecords(child, tag.endEdges);
    else
        return false;
    return true;
}

void writeXml(XmlNode& node, const SwfTagDefineMorphShape& tag) {
    node.attribute("ShapeId", tag.characterId);
    writeChild(node, "StartBounds", tag.startBounds);
    writeChild(node, "EndBounds", tag.endBounds);
    writeChild(node, "MorphFillStyles", tag.fillStyles);
    writeLineStyles<SwfMorphLineStyle>(node, "MorphLineStyles", "MorphLineStyle", tag.lineStyles);
    writeEdges(node, tag);
}

void readXml(XmlElement& element, SwfTagDefineMorphShape& tag) {
    tag.characterId = element.ui16("ShapeId");
    for (XmlElement child : element.children()) {
        if (readCommonChild(child, tag))
            continue;
        if (child.is("MorphLineStyles"))
            readLineStyles<SwfMorphLineStyle>(child, "MorphLineStyle", tag.lineStyles);
        else
            child.skip();
    }
}

static uint64_t differingSides(const SwfRect& a, const SwfRect& b) {
    return uint64_t(a.Xmin != b.Xmin) + (a.Xmax != b.Xmax) + (a.Ymin != b.Ymin) + (a.Ymax != b.Ymax);
}

// In the classic form the edge bounds show the shape bounds, on purpose: what the file had is lost.
void writeXml(XmlNode& node, const SwfTagDefineMorphShape2& tag) {
    const bool fullForm = node.fullForm();
    node.attribute("ShapeId", tag.characterId);
    if (!fullForm) {
        node.attribute("Offset", tag.offset);
        node.differs(differingSides(tag.startBounds, tag.startEdgeBounds) +
                     differingSides(tag.endBounds, tag.endEdgeBounds));
    }
    writeStrokeFlags(node, tag.flags, false);
    writeChild(node, "StartBounds", tag.startBounds);
    writeChild(node, "EndBounds", tag.endBounds);
    writeChild(node, "StartEdgeBounds", fullForm ? tag.startEdgeBounds : tag.startBounds);
    writeChild(node, "EndEdgeBounds", fullForm ? tag.endEdgeBounds : tag.endBounds);
    writeChild(node, "MorphFillStyles", tag.fillStyles);
    writeLineStyles<SwfMorphLineStyle2>(node, "MorphLineStyles2", "MorphLineStyle2", tag.lineStyles);
    writeEdges(node, tag);
}

void readXml(XmlElement& element, SwfTagDefineMorphShape2& tag) {
    tag.characterId = element.ui16("ShapeId");
    if (!element.fullForm())
        tag.offset = element.ui32("Offset");
    tag.flags = readStrokeFlags(element, false);
    for (XmlElement child : element.children()) {
        if (readCommonChild(child, tag))
            continue;
        if (child.is("StartEdgeBounds"))
            readXml(child, tag.startEdgeBounds);
        else if (child.is("EndEdgeBounds"))
            readXml(child, tag.endEdgeBounds);
        else if (child.is("MorphLineStyles2"))
            readLineStyles<SwfMorphLineStyle2>(child, "MorphLineStyle2", tag.lineStyles);
        else
            child.skip();
    }
}

} // namespace xml2swf
