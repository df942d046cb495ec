// DefineShape 1 to 4 as XML.
#include "XmlNumbers.h"
#include "XmlShapes.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

static void writeShape(XmlNode& node, const SwfShapeTag& tag) {
    node.attribute("ShapeId", tag.characterId);
    writeChild(node, "Bounds", tag.bounds);
    writeChild(node, "FillStyles", tag.fillStyles);
    {
        XmlNode lines(node, "LineStyles");
        writeLineStyles(lines, tag.lineStyles, LineStyleKind::lineStyle);
    }
    XmlNode edges(node, "Edges");
    writeShapeRecords(edges, tag.records);
}

// By position, whatever the names.
static void readShape(XmlElement& element, SwfShapeTag& tag) {
    if (auto bounds = element.childAt(0, "Bounds"))
        readXml(*bounds, tag.bounds);
    if (auto fills = element.childAt(1, "FillStyles"))
        readXml(*fills, tag.fillStyles);
    if (auto lines = element.childAt(2, "LineStyles"))
        readLineStyles(*lines, tag.lineStyles, LineStyleKind::lineStyle);
    if (auto edges = element.childAt(3, "Edges"))
        readShapeRecords(*edges, tag.records);
}

// In the classic form the id is the first attribute, whatever its name.
static uint16_t readFirstId(XmlElement& element) {
    if (element.fullForm())
        return element.ui16("ShapeId");
    const XmlValueForm form = XmlValueForm::integer(0, UINT16_MAX);
    const auto text = element.firstAttribute("ShapeId", form);
    if (!text)
        return 0;
    const auto id = parseInteger(*text);
    if (!id || *id < 0 || *id > UINT16_MAX)
        element.badValue(element.firstName(), *text, form);
    return static_cast<uint16_t>(*id);
}

void writeXml(XmlNode& node, const SwfTagDefineShape& tag) { writeShape(node, tag); }

void readXml(XmlElement& element, SwfTagDefineShape& tag) {
    tag.characterId = element.ui16("ShapeId");
    readShape(element, tag);
}

void writeXml(XmlNode& node, const SwfTagDefineShape2& tag) { writeShape(node, tag); }

void readXml(XmlElement& element, SwfTagDefineShape2& tag) {
    tag.characterId = readFirstId(element);
    readShape(element, tag);
}

void writeXml(XmlNode& node, const SwfTagDefineShape3& tag) { writeShape(node, tag); }

void readXml(XmlElement& element, SwfTagDefineShape3& tag) {
    tag.characterId = readFirstId(element);
    readShape(element, tag);
}

void writeXml(XmlNode& node, const SwfTagDefineShape4& tag) {
    node.attribute("ShapeId", tag.characterId);
    writeStrokeFlags(node, tag.flags, true);
    writeChild(node, "ShapeBounds", tag.bounds);
    writeChild(node, "EdgeBounds", tag.edgeBounds);
    writeChild(node, "FillStyles", tag.fillStyles);
    {
        XmlNode lines(node, "LineStyles2");
        writeLineStyles(lines, tag.lineStyles, LineStyleKind::lineStyle2);
    }
    XmlNode edges(node, "Shapes");
    writeShapeRecords(edges, tag.records, LineStyleKind::lineStyle2);
}

void readXml(XmlElement& element, SwfTagDefineShape4& tag) {
    tag.characterId = element.ui16("ShapeId");
    tag.flags = readStrokeFlags(element, true);
    for (XmlElement child : element.children()) {
        if (child.is("ShapeBounds"))
            readXml(child, tag.bounds);
        else if (child.is("EdgeBounds"))
            readXml(child, tag.edgeBounds);
        else if (child.is("FillStyles"))
            readXml(child, tag.fillStyles);
        else if (child.is("LineStyles2"))
            readLineStyles(child, tag.lineStyles, LineStyleKind::lineStyle2);
        else if (child.is("Shapes"))
            readShapeRecords(child, tag.records, LineStyleKind::lineStyle2);
        else
            child.skip();
    }
}

} // namespace xml2swf
