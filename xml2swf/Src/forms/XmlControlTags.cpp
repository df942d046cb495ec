// Tags that set up the movie or mark its timeline, as XML.
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

void writeXml(XmlNode& node, const SwfTagSetBackgroundColor& tag) { node.attribute("Color", tag.color); }

void readXml(XmlElement& element, SwfTagSetBackgroundColor& tag) { tag.color = element.color("Color"); }

// Without a password the element has no attribute; an empty one is not the same.
void writeXml(XmlNode& node, const SwfTagProtect& tag) {
    if (tag.hasPassword)
        node.attribute("Password", tag.password);
}

void readXml(XmlElement& element, SwfTagProtect& tag) {
    tag.hasPassword = element.has("Password");
    tag.password = element.string("Password");
}

void writeXml(XmlNode& node, const SwfTagFrameLabel& tag) {
    node.attribute("Name", tag.name);
    node.attribute("IsAnchor", tag.isAnchor);
}

void readXml(XmlElement& element, SwfTagFrameLabel& tag) {
    tag.name = element.string("Name");
    tag.isAnchor = element.boolean("IsAnchor");
}

void writeXml(XmlNode& node, const SwfTagEnableDebugger& tag) { node.attribute("Password", tag.password); }

void readXml(XmlElement& element, SwfTagEnableDebugger& tag) { tag.password = element.string("Password"); }

void writeXml(XmlNode& node, const SwfTagEnableDebugger2& tag) { node.attribute("Password", tag.password); }

void readXml(XmlElement& element, SwfTagEnableDebugger2& tag) { tag.password = element.string("Password"); }

void writeXml(XmlNode& node, const SwfTagScriptLimits& tag) {
    node.attribute("MaxRecursionDepth", tag.maxRecursionDepth);
    node.attribute("ScriptTimeoutSeconds", tag.scriptTimeoutSeconds);
}

void readXml(XmlElement& element, SwfTagScriptLimits& tag) {
    tag.maxRecursionDepth = element.ui16("MaxRecursionDepth");
    tag.scriptTimeoutSeconds = element.ui16("ScriptTimeoutSeconds");
}

void writeXml(XmlNode& node, const SwfTagSetTabIndex& tag) {
    node.attribute("Depth", tag.depth);
    node.attribute("TabIndex", tag.tabIndex);
}

void readXml(XmlElement& element, SwfTagSetTabIndex& tag) {
    tag.depth = element.ui16("Depth");
    tag.tabIndex = element.ui16("TabIndex");
}

static constexpr XmlName fileAttributes[] = {{"UseNetwork", SwfTagFileAttributes::useNetwork},
                                             {"ActionScript3", SwfTagFileAttributes::actionScript3},
                                             {"HasMetadata", SwfTagFileAttributes::hasMetadata},
                                             {"UseGPU", SwfTagFileAttributes::useGPU},
                                             {"UseDirectBlit", SwfTagFileAttributes::useDirectBlit}};

void writeXml(XmlNode& node, const SwfTagFileAttributes& tag) {
    for (const XmlName& flag : fileAttributes)
        node.attribute(flag.name, (tag.flags & flag.value) != 0);
    const uint32_t reserved = tag.flags & ~uint32_t(SwfTagFileAttributes::named);
    if (reserved != 0)
        node.attribute("Reserved", reserved);
}

void readXml(XmlElement& element, SwfTagFileAttributes& tag) {
    tag.flags = 0;
    for (const XmlName& flag : fileAttributes)
        tag.flags |= element.boolean(flag.name) ? flag.value : 0;
    tag.flags |= element.ui32("Reserved") & ~uint32_t(SwfTagFileAttributes::named);
}

void writeXml(XmlNode& node, const SwfTagMetadata& tag) { XmlNode(node, "Data").text(tag.data.view()); }

// The text may stand in an attribute as well.
void readXml(XmlElement& element, SwfTagMetadata& tag) {
    tag.data = element.string("Data");
    if (auto child = element.child("Data"))
        tag.data = child->content();
}

void writeXml(XmlNode& node, const SwfTagDefineSceneAndFrameLabelData& tag) {
    for (const SwfScene& scene : tag.scenes) {
        XmlNode child(node, "Scene");
        child.attribute("Offset", scene.offset);
        child.attribute("Name", scene.name);
    }
    for (const SwfSceneFrameLabel& label : tag.frameLabels) {
        XmlNode child(node, "FrameLabel");
        child.attribute("FrameNum", label.frameNum);
        child.attribute("FrameLabel", label.frameLabel);
    }
}

void readXml(XmlElement& element, SwfTagDefineSceneAndFrameLabelData& tag) {
    for (XmlElement child : element.children()) {
        if (child.is("Scene"))
            tag.scenes.append({child.ui32("Offset"), child.string("Name")});
        else if (child.is("FrameLabel"))
            tag.frameLabels.append({child.ui32("FrameNum"), child.string("FrameLabel")});
        else
            child.skip();
    }
}

} // namespace xml2swf
