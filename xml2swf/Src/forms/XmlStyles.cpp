// Fill and line styles of shapes as XML.
#include "SwfException.h"
#include "XmlShapes.h"
#include "XmlStructs.h"
#include "XmlWriteParts.h"

namespace xml2swf {

using namespace libswf;

static constexpr XmlName gradientTypes[] = {{"Linear", SwfFillType::linearGradient},
                                            {"Radial", SwfFillType::radialGradient},
                                            {"FocalRadialGradient", SwfFillType::focalRadialGradient}};

void writeGradientModes(XmlNode& node, const SwfGradientFlags& flags) {
    node.attribute("InterpolationMode", flags.interpolationMode());
    node.attribute("SpreadMode", flags.spreadMode());
}

void readGradientModes(XmlElement& element, SwfGradientFlags& flags) {
    const uint32_t interpolation = element.masked("InterpolationMode", 2);
    flags.set(0, interpolation, element.masked("SpreadMode", 2));
}

static void writeFlags(XmlNode& node, const SwfGradientFlags& flags) {
    node.attribute("NumGradients", flags.numGradients());
    writeGradientModes(node, flags);
}

static void readFlags(XmlElement& element, SwfGradientFlags& flags) {
    const uint32_t count = element.masked("NumGradients", 4);
    readGradientModes(element, flags);
    flags.set(count, flags.interpolationMode(), flags.spreadMode());
}

static constexpr uint32_t fixed8One = 256;

void writeFocalPoint(XmlNode& node, std::string_view name, const uint8_t (&bytes)[2]) {
    node.fixed(name, static_cast<int16_t>(bytes[0] | bytes[1] << 8), fixed8One);
}

void readFocalPoint(XmlElement& element, std::string_view name, uint8_t (&bytes)[2]) {
    const int32_t value = element.fixed(name, fixed8One);
    bytes[0] = static_cast<uint8_t>(value);
    bytes[1] = static_cast<uint8_t>(value >> 8);
}

static void writeXml(XmlNode& node, const SwfGradientRecord& record) {
    node.attribute("Ratio", record.ratio);
    node.attribute("Color", record.color);
}

static void readXml(XmlElement& element, SwfGradientRecord& record) {
    record.ratio = element.ui8("Ratio");
    record.color = element.color("Color");
}

static void readRecord(XmlElement& element, SwfVector<SwfGradientRecord>& records) {
    SwfGradientRecord record;
    readXml(element, record);
    records.append(record);
}

static void writeXml(XmlNode& node, const SwfGradientRecords& gradient) {
    writeFlags(node, gradient.flags);
    for (const SwfGradientRecord& record : gradient.records)
        writeChild(node, "GradientRecord", record);
}

static void readXml(XmlElement& element, SwfGradientRecords& gradient) {
    readFlags(element, gradient.flags);
    for (XmlElement child : element.anyChildren("GradientRecord"))
        readRecord(child, gradient.records);
}

static void setCount(SwfGradientFlags& flags, uint32_t count) {
    if (count > 15)
        throw SwfException(SwfError::doesNotFit, "a gradient of more than 15 records");
    flags.set(count, flags.interpolationMode(), flags.spreadMode());
}

static void writeXml(XmlNode& node, const SwfFocalGradient& gradient) {
    if (node.fullForm()) {
        writeFocalPoint(node, "FocalPoint", gradient.focalPoint);
    } else {
        node.attribute("High", gradient.focalPoint[0]);
        node.attribute("Low", gradient.focalPoint[1]);
    }
    {
        XmlNode bits(node, "BitsField");
        writeFlags(bits, gradient.flags);
    }
    for (const SwfGradientRecord& record : gradient.records)
        writeChild(node, "GradientRecord", record);
}

// In the full form the records count themselves, as those of the other gradients always do.
static void readXml(XmlElement& element, SwfFocalGradient& gradient) {
    if (element.fullForm()) {
        readFocalPoint(element, "FocalPoint", gradient.focalPoint);
    } else {
        gradient.focalPoint[0] = element.ui8("High");
        gradient.focalPoint[1] = element.ui8("Low");
    }
    for (XmlElement child : element.children()) {
        if (child.is("BitsField"))
            readFlags(child, gradient.flags);
        else if (child.is("GradientRecord"))
            readRecord(child, gradient.records);
        else
            child.skip();
    }
    if (element.fullForm())
        setCount(gradient.flags, gradient.records.size());
}

static void writeXml(XmlNode& node, const SwfSolidFillStyle& style) { node.attribute("Color", style.color); }

static void readXml(XmlElement& element, SwfSolidFillStyle& style) { style.color = element.color("Color"); }

static void writeXml(XmlNode& node, const SwfGradientFillStyle& style) {
    node.attribute("Type", findName(gradientTypes, style.type));
    writeChild(node, "Matrix", style.matrix);
    if (style.isFocal())
        writeChild(node, "GradientRecords", style.focal);
    else
        writeChild(node, "GradientRecords", style.gradients);
}

static void readXml(XmlElement& element, SwfGradientFillStyle& style) {
    constexpr uint32_t unknown = UINT32_MAX;
    const uint32_t type = element.named("Type", gradientTypes, unknown);
    if (auto matrix = element.childAt(0, "Matrix"))
        readXml(*matrix, style.matrix);
    if (type == unknown)
        return; // a linear gradient without records
    style.type = type;
    auto records = element.childAt(1, "GradientRecords");
    if (records && style.isFocal())
        readXml(*records, style.focal);
    else if (records)
        readXml(*records, style.gradients);
}

static void writeXml(XmlNode& node, const SwfBitmapFillStyle& style) {
    node.attribute("Type", findName(bitmapFillTypes, style.type));
    node.attribute("BitmapId", style.bitmapId);
    writeChild(node, "Matrix", style.matrix);
}

static void readXml(XmlElement& element, SwfBitmapFillStyle& style) {
    style.type = element.named("Type", bitmapFillTypes, SwfFillType::clippedBitmap);
    style.bitmapId = element.ui16("BitmapId");
    if (auto matrix = element.childAt(0, "Matrix"))
        readXml(*matrix, style.matrix);
}

// A gradient or bitmap of a type that no file has is left out.
static void writeFillStyle(XmlNode& parent, const SwfFillStyle& style) {
    if (const auto* solid = dynamic_cast<const SwfSolidFillStyle*>(&style)) {
        writeChild(parent, "SolidFillStyle", *solid);
    } else if (const auto* gradient = dynamic_cast<const SwfGradientFillStyle*>(&style)) {
        if (!findName(gradientTypes, style.type).empty())
            writeChild(parent, "GradientFillStyle", *gradient);
    } else if (const auto* bitmap = dynamic_cast<const SwfBitmapFillStyle*>(&style)) {
        if (!findName(bitmapFillTypes, style.type).empty())
            writeChild(parent, "BitmapFillStyle", *bitmap);
    }
}

template <class Style>
static std::unique_ptr<SwfFillStyle> readAs(XmlElement& element) {
    auto style = std::make_unique<Style>();
    readXml(element, *style);
    return style;
}

// Null for an element that is no fill style.
static std::unique_ptr<SwfFillStyle> readFillStyle(XmlElement& element) {
    if (element.is("SolidFillStyle"))
        return readAs<SwfSolidFillStyle>(element);
    if (element.is("GradientFillStyle"))
        return readAs<SwfGradientFillStyle>(element);
    if (element.is("BitmapFillStyle"))
        return readAs<SwfBitmapFillStyle>(element);
    element.skip();
    return nullptr;
}

void writeXml(XmlNode& node, const SwfFillStyles& styles) {
    writeInParts(node, styles.items.size(), [&](XmlNode& parent, size_t first, size_t end) {
        for (size_t i = first; i < end; ++i)
            writeFillStyle(parent, *styles.items.data()[i]);
    });
}

void readXml(XmlElement& element, SwfFillStyles& styles) {
    for (XmlElement child : element.children()) {
        if (auto style = readFillStyle(child))
            styles.items.add(std::move(style));
    }
}

static void writeXml(XmlNode& node, const SwfLineStyle& style) {
    node.attribute("Width", style.width);
    node.attribute("Color", style.color);
}

static void readXml(XmlElement& element, SwfLineStyle& style) {
    style.width = element.ui16("Width");
    style.color = element.color("Color");
}

static void writeXml(XmlNode& node, const SwfLineStyle2& style) {
    if (style.flags.hasMiter())
        node.attribute("MitterLimitFactor", style.miterLimitFactor);
    if (!style.flags.hasFill())
        node.attribute("Color", style.color);
    node.attribute("Width", style.width);
    {
        XmlNode bits(node, "BitsField");
        writeLineFlags(bits, style.flags, "EndCapStyle");
    }
    if (style.flags.hasFill() && style.fillType != nullptr) {
        XmlNode fill(node, "FillStyle");
        writeFillStyle(fill, *style.fillType);
    }
}

static void readXml(XmlElement& element, SwfLineStyle2& style) {
    style.miterLimitFactor = element.ui16("MitterLimitFactor");
    style.color = element.color("Color");
    style.width = element.ui16("Width");
    for (XmlElement child : element.children()) {
        if (child.is("BitsField")) {
            readLineFlags(child, style.flags, "EndCapStyle");
        } else if (child.is("FillStyle")) {
            if (auto fill = child.childAt(0, ""))
                style.fillType = readFillStyle(*fill);
        } else {
            child.skip();
        }
    }
}

void writeLineFlags(XmlNode& node, const SwfLineFlags& flags, const char* endCapName) {
    node.attribute(endCapName, flags.ends & 3);
    node.attribute("NoClose", flags.ends >> 2 & 1);
    node.attribute("PixelHinting", flags.paint & 1);
    node.attribute("NoVScale", flags.paint >> 1 & 1);
    node.attribute("NoHScale", flags.paint >> 2 & 1);
    node.attribute("HasFill", flags.paint >> 3 & 1);
    node.attribute("JoinStyle", flags.joinStyle());
    node.attribute("StartCapStyle", flags.paint >> 6);
    if (const int reserved = flags.ends >> 3; node.fullForm() && reserved != 0)
        node.attribute("Reserved", reserved);
}

void readLineFlags(XmlElement& element, SwfLineFlags& flags, const char* endCapName) {
    auto ends = element.masked(endCapName, 2);
    ends |= uint32_t(element.boolean("NoClose")) << 2;
    uint32_t paint = element.boolean("PixelHinting");
    paint |= uint32_t(element.boolean("NoVScale")) << 1;
    paint |= uint32_t(element.boolean("NoHScale")) << 2;
    paint |= uint32_t(element.boolean("HasFill")) << 3;
    paint |= element.masked("JoinStyle", 2) << 4;
    paint |= element.masked("StartCapStyle", 2) << 6;
    ends |= element.masked("Reserved", 5) << 3; // never written in the classic form
    flags.paint = static_cast<uint8_t>(paint);
    flags.ends = static_cast<uint8_t>(ends);
}

void writeStrokeFlags(XmlNode& node, uint8_t flags, bool hasWindingRule) {
    node.attribute("UseScalingStrokes", (flags & 1) != 0);
    node.attribute("UseNonScalingStrokes", (flags & 2) != 0);
    if (!node.fullForm())
        return node.differs(hasWindingRule && (flags & 4) != 0); // which is not shown
    if (hasWindingRule)
        node.attribute("UseFillWindingRule", (flags & 4) != 0);
    if (const int reserved = flags >> (hasWindingRule ? 3 : 2); reserved != 0)
        node.attribute("Reserved", reserved);
}

uint8_t readStrokeFlags(XmlElement& element, bool hasWindingRule) {
    uint32_t flags = element.boolean("UseScalingStrokes");
    flags |= uint32_t(element.boolean("UseNonScalingStrokes")) << 1;
    if (element.fullForm() && hasWindingRule)
        flags |= uint32_t(element.boolean("UseFillWindingRule")) << 2 | element.masked("Reserved", 5) << 3;
    else
        flags |= element.masked("Reserved", 6) << 2;
    return static_cast<uint8_t>(flags);
}

void writeLineStyles(XmlNode& node, const SwfLineStyles& styles, LineStyleKind kind) {
    for (const SwfLineStyleGeneric* style : styles.items) {
        if (kind == LineStyleKind::lineStyle2)
            writeChild(node, "LineStyle", dynamic_cast<const SwfLineStyle2&>(*style));
        else
            writeChild(node, "LineStyle", dynamic_cast<const SwfLineStyle&>(*style));
    }
}

template <class Style>
static void addLineStyle(XmlElement& element, SwfLineStyles& styles) {
    auto style = std::make_unique<Style>();
    readXml(element, *style);
    styles.items.add(std::move(style));
}

void readLineStyles(XmlElement& element, SwfLineStyles& styles, LineStyleKind kind) {
    for (XmlElement child : element.anyChildren("LineStyle")) {
        if (kind == LineStyleKind::lineStyle2)
            addLineStyle<SwfLineStyle2>(child, styles);
        else
            addLineStyle<SwfLineStyle>(child, styles);
    }
}

} // namespace xml2swf
