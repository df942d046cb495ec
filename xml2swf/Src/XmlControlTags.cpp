// Tags that set up or mark the timeline, as XML.
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

void writeXml(XmlNode& node, const SwfTagSetBackgroundColor& tag) { node.attribute("Color", tag.color); }

void readXml(XmlElement& element, SwfTagSetBackgroundColor& tag) { tag.color = element.color("Color"); }

void writeXml(XmlNode& node, const SwfTagFrameLabel& tag) {
    node.attribute("Name", tag.name);
    node.attribute("IsAnchor", tag.isAnchor);
}

void readXml(XmlElement& element, SwfTagFrameLabel& tag) {
    tag.name = element.string("Name");
    tag.isAnchor = element.boolean("IsAnchor");
}

} // namespace xml2swf
