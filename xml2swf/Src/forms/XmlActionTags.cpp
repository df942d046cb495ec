// DoAction, DoInitAction and clip actions as XML.
#include "XmlActions.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

namespace {

void writeActionsChild(XmlNode& node, const SwfActions& actions) {
    XmlNode child(node, "Actions");
    writeActions(child, actions);
}

// The first child holds the actions, whatever its name.
void readActionsChild(XmlElement& element, SwfActions& actions) {
    if (auto child = element.childAt(0, "Actions"))
        readActions(*child, actions);
}

} // namespace

void writeXml(XmlNode& node, const SwfTagDoAction& tag) { writeActionsChild(node, tag.actions); }

void readXml(XmlElement& element, SwfTagDoAction& tag) { readActionsChild(element, tag.actions); }

void writeXml(XmlNode& node, const SwfTagDoInitAction& tag) {
    node.attribute("SpriteId", tag.spriteId);
    writeActionsChild(node, tag.actions);
}

void readXml(XmlElement& element, SwfTagDoInitAction& tag) {
    tag.spriteId = element.ui16("SpriteId");
    readActionsChild(element, tag.actions);
}

static void writeXml(XmlNode& node, const SwfClipAction& record) {
    for (const SwfClipAction::Event& event : SwfClipAction::events)
        node.attribute(event.name, record.*event.field);
    node.attribute("KeyCode", record.keyCode);
    if (record.otherEvents != 0)
        node.attribute("OtherEvents", record.otherEvents);
    writeActions(node, record.actions);
}

static void readXml(XmlElement& element, SwfClipAction& record) {
    for (const SwfClipAction::Event& event : SwfClipAction::events)
        record.*event.field = element.boolean(event.name);
    record.keyCode = element.ui8("KeyCode");
    if (element.fullForm())
        record.otherEvents = element.ui32("OtherEvents");
    readActions(element, record.actions);
}

void writeXml(XmlNode& node, const SwfClipActions& actions) {
    if (node.fullForm() && actions.reserved != 0)
        node.attribute("Reserved", actions.reserved);
    if (actions.allEvents)
        node.attribute("AllEventFlags", *actions.allEvents);
    if (actions.lacksEnd)
        node.attribute("MissingEnd", true);
    for (const SwfClipAction& record : actions.records)
        writeChild(node, "ClipAction", record);
}

void readXml(XmlElement& element, SwfClipActions& actions) {
    if (element.fullForm()) {
        actions.reserved = element.ui16("Reserved");
        if (element.has("AllEventFlags"))
            actions.allEvents = element.ui32("AllEventFlags");
        actions.lacksEnd = element.boolean("MissingEnd");
    }
    readEach(element, "ClipAction", [&](XmlElement& child) { readXml(child, actions.records.emplace_back()); });
}

} // namespace xml2swf
