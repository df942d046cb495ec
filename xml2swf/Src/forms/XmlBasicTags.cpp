// Unknown, End, ShowFrame and DefineSprite as XML.
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

void writeXml(XmlNode& node, const SwfTagUnknown& tag) {
    node.attribute("TagType", tag.type);
    if (tag.hasCharacterId)
        node.attribute("CharacterId", tag.characterId);
    writePayload(node, "Data", tag.data.span());
}

void readXml(XmlElement& element, SwfTagUnknown& tag) {
    constexpr int64_t maxCode = 1023; // 10 bits of the record header
    tag.type = static_cast<uint16_t>(element.ranged("TagType", 0, maxCode));
    // Without the attribute all bytes stand in Data, whatever the code.
    tag.hasCharacterId = SwfTagUnknown::carriesCharacterId(tag.type) && element.has("CharacterId");
    if (tag.hasCharacterId)
        tag.characterId = element.ui16("CharacterId");
    tag.data = element.payload("Data");
}

void writeXml(XmlNode&, const SwfTagEnd&) {}
void readXml(XmlElement&, SwfTagEnd&) {}

void writeXml(XmlNode&, const SwfTagShowFrame&) {}
void readXml(XmlElement&, SwfTagShowFrame&) {}

void writeXml(XmlNode& node, const SwfTagDefineSprite& tag) {
    node.attribute("Id", tag.spriteId);
    node.attribute("FrameCount", tag.frameCount);
    writeRecordForm(node, tag);
    writeTagList(node, tag.tags);
}

void readXml(XmlElement& element, SwfTagDefineSprite& tag) {
    XmlReadContext& context = element.context();
    tag.spriteId = element.ui16("Id");
    tag.keepsFrameCount = element.fullForm() && element.has("FrameCount");
    if (tag.keepsFrameCount)
        tag.frameCount = element.ui16("FrameCount");
    else
        tag.frameCount = static_cast<uint16_t>(element.masked("FrameCount", 16)); // for the reader's eyes only
    if (context.spriteDepth >= SwfContext::maxDepth)
        throw SwfException(SwfError::doesNotFit, "sprites nested more than 256 deep");
    const SwfDepthScope depth(context.spriteDepth);
    readTagList(element, tag.tags);
}

} // namespace xml2swf
