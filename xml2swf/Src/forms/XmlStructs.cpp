#include "XmlStructs.h"

#include "SwfBits.h"

namespace xml2swf {

using namespace libswf;

static constexpr uint8_t mostPairBits = 31, mostTermBits = 15; // of fields of 5 and 4 bits

void writeBits(XmlNode& node, const SwfKeptWidth& width) {
    if (width)
        node.attribute("Bits", width.bits());
}

void readBits(XmlElement& element, SwfKeptWidth& width, uint8_t most) {
    if (element.fullForm() && element.has("Bits"))
        width.set(static_cast<uint32_t>(element.ranged("Bits", 0, most)));
}

void writeXml(XmlNode& node, const SwfRect& rect) {
    node.attribute("MaxX", rect.Xmax);
    node.attribute("MaxY", rect.Ymax);
    node.attribute("MinX", rect.Xmin);
    node.attribute("MinY", rect.Ymin);
    writeBits(node, rect.bits);
}

void readXml(XmlElement& element, SwfRect& rect) {
    rect.Xmax = element.si32("MaxX");
    rect.Ymax = element.si32("MaxY");
    rect.Xmin = element.si32("MinX");
    rect.Ymin = element.si32("MinY");
    readBits(element, rect.bits, mostPairBits);
}

// The full form keeps all bits of the scale and rotation, the classic one those that a float has.
static constexpr uint32_t fixedOne = 65536;

static void writeFixed(XmlNode& node, const char* name, double value) {
    if (node.fullForm())
        node.fixed(name, nearestFixed16(value), fixedOne);
    else
        node.attribute(name, static_cast<float>(value));
}

static double readFixed(XmlElement& element, const char* name) {
    return element.fullForm() ? element.realDouble(name) : element.real(name);
}

void writeXml(XmlNode& node, const SwfMatrix& matrix) {
    {
        XmlNode translate(node, "Translate");
        translate.attribute("TranslateX", matrix.translateX);
        translate.attribute("TranslateY", matrix.translateY);
        writeBits(translate, matrix.translateBits);
    }
    if (matrix.hasScale) {
        XmlNode scale(node, "Scale");
        writeFixed(scale, "ScaleX", matrix.scaleX);
        writeFixed(scale, "ScaleY", matrix.scaleY);
        writeBits(scale, matrix.scaleBits);
    }
    if (matrix.hasRotate) {
        XmlNode rotate(node, "Rotate");
        writeFixed(rotate, "RotateSkew0", matrix.rotateSkew0);
        writeFixed(rotate, "RotateSkew1", matrix.rotateSkew1);
        writeBits(rotate, matrix.rotateBits);
    }
}

void readXml(XmlElement& element, SwfMatrix& matrix) {
    for (XmlElement child : element.children()) {
        if (child.is("Translate")) {
            matrix.translateX = child.si32("TranslateX");
            matrix.translateY = child.si32("TranslateY");
            readBits(child, matrix.translateBits, mostPairBits);
        } else if (child.is("Scale")) {
            matrix.hasScale = true;
            matrix.scaleX = readFixed(child, "ScaleX");
            matrix.scaleY = readFixed(child, "ScaleY");
            readBits(child, matrix.scaleBits, mostPairBits);
        } else if (child.is("Rotate") || child.has("RotateSkew0") || child.has("RotateSkew1")) {
            matrix.hasRotate = true;
            matrix.rotateSkew0 = readFixed(child, "RotateSkew0");
            matrix.rotateSkew1 = readFixed(child, "RotateSkew1");
            readBits(child, matrix.rotateBits, mostPairBits);
        } else {
            child.skip();
        }
    }
}

void writeXml(XmlNode& node, const SwfColorTransform& transform) {
    if (transform.hasMultTerms) {
        node.attribute("MulR", transform.redMult);
        node.attribute("MulG", transform.greenMult);
        node.attribute("MulB", transform.blueMult);
        node.attribute("MulA", transform.alphaMult);
    }
    if (transform.hasAddTerms) {
        node.attribute("AddR", transform.redAdd);
        node.attribute("AddG", transform.greenAdd);
        node.attribute("AddB", transform.blueAdd);
        node.attribute("AddA", transform.alphaAdd);
    }
    writeBits(node, transform.bits);
}

void readXml(XmlElement& element, SwfColorTransform& transform) {
    auto anyOf = [&](auto... names) { return (element.has(names) || ...); };
    transform.hasMultTerms = anyOf("MulR", "MulG", "MulB", "MulA");
    transform.hasAddTerms = anyOf("AddR", "AddG", "AddB", "AddA");
    transform.redMult = element.si16("MulR");
    transform.greenMult = element.si16("MulG");
    transform.blueMult = element.si16("MulB");
    transform.alphaMult = element.si16("MulA");
    transform.redAdd = element.si16("AddR");
    transform.greenAdd = element.si16("AddG");
    transform.blueAdd = element.si16("AddB");
    transform.alphaAdd = element.si16("AddA");
    readBits(element, transform.bits, mostTermBits);
}

} // namespace xml2swf
