#include "XmlStructs.h"

namespace xml2swf {

using namespace libswf;

void writeXml(XmlNode& node, const SwfRect& rect) {
    node.attribute("MaxX", rect.Xmax);
    node.attribute("MaxY", rect.Ymax);
    node.attribute("MinX", rect.Xmin);
    node.attribute("MinY", rect.Ymin);
}

void readXml(XmlElement& element, SwfRect& rect) {
    rect.Xmax = element.si32("MaxX");
    rect.Ymax = element.si32("MaxY");
    rect.Xmin = element.si32("MinX");
    rect.Ymin = element.si32("MinY");
}

void writeXml(XmlNode& node, const SwfMatrix& matrix) {
    {
        XmlNode translate(node, "Translate");
        translate.attribute("TranslateX", matrix.translateX);
        translate.attribute("TranslateY", matrix.translateY);
    }
    if (matrix.hasScale) {
        XmlNode scale(node, "Scale");
        scale.attribute("ScaleX", matrix.scaleX);
        scale.attribute("ScaleY", matrix.scaleY);
    }
    if (matrix.hasRotate) {
        XmlNode rotate(node, "Rotate");
        rotate.attribute("RotateSkew0", matrix.rotateSkew0);
        rotate.attribute("RotateSkew1", matrix.rotateSkew1);
    }
}

void readXml(XmlElement& element, SwfMatrix& matrix) {
    for (XmlElement child : element.children()) {
        if (child.is("Translate")) {
            matrix.translateX = child.si32("TranslateX");
            matrix.translateY = child.si32("TranslateY");
        } else if (child.is("Scale")) {
            matrix.hasScale = true;
            matrix.scaleX = child.real("ScaleX");
            matrix.scaleY = child.real("ScaleY");
        } else if (child.is("Rotate") || child.has("RotateSkew0") || child.has("RotateSkew1")) {
            matrix.hasRotate = true;
            matrix.rotateSkew0 = child.real("RotateSkew0");
            matrix.rotateSkew1 = child.real("RotateSkew1");
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
}

} // namespace xml2swf
