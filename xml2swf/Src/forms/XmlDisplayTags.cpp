// Tags that place and remove objects, as XML.
#include "XmlActions.h"
#include "XmlFilters.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

void writeXml(XmlNode& node, const SwfTagPlaceObject& tag) {
    node.attribute("CharacterId", tag.characterId);
    node.attribute("Depth", tag.depth);
    writeChild(node, "Matrix", tag.matrix);
    if (tag.hasColorTransform)
        writeChild(node, "ColorTransform", tag.colorTransform);
}

void readXml(XmlElement& element, SwfTagPlaceObject& tag) {
    tag.characterId = element.ui16("CharacterId");
    tag.depth = element.ui16("Depth");
    readChild(element, "Matrix", tag.matrix);
    tag.hasColorTransform = readChild(element, "ColorTransform", tag.colorTransform);
}

void writeXml(XmlNode& node, const SwfTagPlaceObject2& tag) {
    node.attribute("Depth", tag.depth);
    if (tag.hasCharacter)
        node.attribute("CharacterId", tag.characterId);
    if (tag.hasRatio)
        node.attribute("Ratio", tag.ratio);
    if (tag.hasName)
        node.attribute("Name", tag.name);
    if (tag.hasClipDepth)
        node.attribute("ClipDepth", tag.clipDepth);
    node.attribute("Move", tag.move);
    if (tag.hasMatrix)
        writeChild(node, "Matrix", tag.matrix);
    if (tag.hasColorTransform)
        writeChild(node, "ColorTransform", tag.colorTransform);
    if (tag.hasClipActions)
        writeChild(node, "ClipActions", tag.clipActions);
}

void readXml(XmlElement& element, SwfTagPlaceObject2& tag) {
    tag.depth = element.ui16("Depth");
    tag.hasCharacter = element.has("CharacterId");
    tag.characterId = element.ui16("CharacterId");
    tag.hasRatio = element.has("Ratio");
    tag.ratio = element.ui16("Ratio");
    tag.hasName = element.has("Name");
    tag.name = element.string("Name");
    tag.hasClipDepth = element.has("ClipDepth");
    tag.clipDepth = element.ui16("ClipDepth");
    tag.move = element.boolean("Move");
    tag.hasMatrix = readChild(element, "Matrix", tag.matrix);
    tag.hasColorTransform = readChild(element, "ColorTransform", tag.colorTransform);
    tag.hasClipActions = readChild(element, "ClipActions", tag.clipActions);
}

// Both flag bytes of the classic form.
static void writeFlags(XmlNode& node, const SwfTagPlaceObject3& tag) {
    node.attribute("PlaceObject2Value", tag.placeFlags);
    node.attribute("ExtendedValue", tag.extendedFlags);
}

// The flags of the full form that no field tells, in it.
static void writeFullFlags(XmlNode& node, const SwfTagPlaceObject3& tag) {
    node.attribute("Move", tag.hasPlace(SwfPlaceFlag::move));
    if (tag.hasExtended(SwfPlaceFlag3::image))
        node.attribute("HasImage", true);
    if (tag.hasClassName(node.context().swf) && !tag.hasExtended(SwfPlaceFlag3::className))
        node.attribute("HasClassName", false);
    if (tag.hasExtended(SwfPlaceFlag3::cacheAsBitmap) && !tag.bitmapCache)
        node.attribute("HasCacheAsBitmap", true);
    if (tag.hasExtended(SwfPlaceFlag3::reserved))
        node.attribute("Reserved", 1);
}

// The fields that the classic form does not have.
static void writeFullFields(XmlNode& node, const SwfTagPlaceObject3& tag) {
    if (tag.bitmapCache)
        node.attribute("BitmapCache", *tag.bitmapCache);
    if (tag.hasExtended(SwfPlaceFlag3::visible))
        node.attribute("Visible", tag.visible);
    if (tag.hasExtended(SwfPlaceFlag3::opaqueBackground))
        node.attribute("BackgroundColor", tag.backgroundColor);
}

void writeXml(XmlNode& node, const SwfTagPlaceObject3& tag) {
    const bool fullForm = node.fullForm();
    if (!fullForm)
        writeFlags(node, tag);
    node.attribute("Depth", tag.depth);
    if (tag.hasClassName(node.context().swf))
        node.attribute("ClassName", tag.className);
    if (tag.hasPlace(SwfPlaceFlag::character))
        node.attribute("CharacterId", tag.characterId);
    if (tag.hasPlace(SwfPlaceFlag::ratio)) // in the classic form the low 8 bits only, on purpose
        node.attribute("Ratio", fullForm ? tag.ratio : static_cast<uint8_t>(tag.ratio));
    if (!fullForm)
        node.differs(tag.hasPlace(SwfPlaceFlag::ratio) && tag.ratio > UINT8_MAX);
    if (tag.hasPlace(SwfPlaceFlag::name))
        node.attribute("Name", tag.name);
    if (tag.hasPlace(SwfPlaceFlag::clipDepth))
        node.attribute("ClipDepth", tag.clipDepth);
    if (tag.hasExtended(SwfPlaceFlag3::blendMode))
        node.attribute("BlendMode", tag.blendMode);
    if (fullForm) {
        writeFullFields(node, tag);
        writeFullFlags(node, tag);
    }
    if (tag.hasPlace(SwfPlaceFlag::matrix))
        writeChild(node, "Matrix", tag.matrix);
    if (tag.hasPlace(SwfPlaceFlag::colorTransform))
        writeChild(node, "ColorTransform", tag.colorTransform);
    if (tag.hasExtended(SwfPlaceFlag3::filters))
        writeChild(node, "FilterList", tag.filters);
    if (tag.hasPlace(SwfPlaceFlag::clipActions))
        writeChild(node, "ClipActions", tag.clipActions);
}

static void readFull(XmlElement& element, SwfTagPlaceObject3& tag) {
    auto extend = [&](uint8_t flag, bool isThere) { tag.extendedFlags |= isThere ? flag : 0; };
    if (element.boolean("Move"))
        tag.placeFlags |= SwfPlaceFlag::move;
    if (element.has("BitmapCache"))
        tag.bitmapCache = element.ui8("BitmapCache");
    extend(SwfPlaceFlag3::cacheAsBitmap, element.boolean("HasCacheAsBitmap") || tag.bitmapCache);
    extend(SwfPlaceFlag3::visible, element.has("Visible"));
    tag.visible = element.ui8("Visible");
    extend(SwfPlaceFlag3::opaqueBackground, element.has("BackgroundColor"));
    tag.backgroundColor = element.color("BackgroundColor");
    extend(SwfPlaceFlag3::image, element.boolean("HasImage"));
    extend(SwfPlaceFlag3::reserved, element.ranged("Reserved", 0, 1) != 0);
    if (element.has("HasClassName") && !element.boolean("HasClassName"))
        tag.extendedFlags &= static_cast<uint8_t>(~SwfPlaceFlag3::className);
}

// A field that is there sets its flag. In the classic form flags that are set without their field stay.
void readXml(XmlElement& element, SwfTagPlaceObject3& tag) {
    auto place = [&](uint8_t flag, bool isThere) { tag.placeFlags |= isThere ? flag : 0; };
    auto extend = [&](uint8_t flag, bool isThere) { tag.extendedFlags |= isThere ? flag : 0; };
    if (!element.fullForm()) {
        tag.placeFlags = element.ui8("PlaceObject2Value");
        tag.extendedFlags = element.ui8("ExtendedValue");
    }
    tag.depth = element.ui16("Depth");
    extend(SwfPlaceFlag3::className, element.has("ClassName"));
    tag.className = element.string("ClassName");
    place(SwfPlaceFlag::character, element.has("CharacterId"));
    tag.characterId = element.ui16("CharacterId");
    place(SwfPlaceFlag::ratio, element.has("Ratio"));
    tag.ratio = element.ui16("Ratio");
    place(SwfPlaceFlag::name, element.has("Name"));
    tag.name = element.string("Name");
    place(SwfPlaceFlag::clipDepth, element.has("ClipDepth"));
    tag.clipDepth = element.ui16("ClipDepth");
    extend(SwfPlaceFlag3::blendMode, element.has("BlendMode"));
    tag.blendMode = element.ui8("BlendMode");
    if (element.fullForm())
        readFull(element, tag);
    place(SwfPlaceFlag::matrix, readChild(element, "Matrix", tag.matrix));
    place(SwfPlaceFlag::colorTransform, readChild(element, "ColorTransform", tag.colorTransform));
    extend(SwfPlaceFlag3::filters, readChild(element, "FilterList", tag.filters));
    place(SwfPlaceFlag::clipActions, readChild(element, "ClipActions", tag.clipActions));
}

void writeXml(XmlNode& node, const SwfTagPlaceObject4& tag) {
    writeXml(node, static_cast<const SwfTagPlaceObject3&>(tag));
    if (!tag.metadata.empty())
        writePayload(node, "Metadata", tag.metadata.span());
}

void readXml(XmlElement& element, SwfTagPlaceObject4& tag) {
    readXml(element, static_cast<SwfTagPlaceObject3&>(tag));
    tag.metadata = element.payload("Metadata");
}

void writeXml(XmlNode& node, const SwfTagRemoveObject& tag) {
    node.attribute("Id", tag.characterId);
    node.attribute("Depth", tag.depth);
}

void readXml(XmlElement& element, SwfTagRemoveObject& tag) {
    tag.characterId = element.ui16("Id");
    tag.depth = element.ui16("Depth");
}

void writeXml(XmlNode& node, const SwfTagRemoveObject2& tag) { node.attribute("Depth", tag.depth); }

void readXml(XmlElement& element, SwfTagRemoveObject2& tag) { tag.depth = element.ui16("Depth"); }

} // namespace xml2swf
