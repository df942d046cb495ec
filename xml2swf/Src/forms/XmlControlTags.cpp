// Tags that set up the movie or mark its timeline, as XML.
#include "XmlIdentifiers.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

void writeXml(XmlNode& node, const SwfTagSetBackgroundColor& tag) { node.attribute("Color", tag.color); }

void readXml(XmlElement& element, SwfTagSetBackgroundColor& tag) { tag.color = element.color("Color"); }

// Without a password the element has no attribute; an empty one is not the same.
void writeXml(XmlNode& node, const SwfTagProtect& tag) {
    if (tag.hasReserved)
        node.attribute("Reserved", 0);
    if (tag.hasPassword)
        node.attribute("Password", tag.password);
}

void readXml(XmlElement& element, SwfTagProtect& tag) {
    tag.hasReserved = element.fullForm() && element.has("Reserved");
    if (tag.hasReserved)
        element.ranged("Reserved", 0, 0); // another number reads as a password
    tag.hasPassword = element.has("Password");
    tag.password = element.string("Password");
}

void writeXml(XmlNode& node, const SwfTagFrameLabel& tag) {
    node.attribute("Name", tag.name);
    node.attribute("IsAnchor", tag.isAnchor);
    if (tag.anchorByte)
        node.attribute("AnchorByte", *tag.anchorByte);
}

void readXml(XmlElement& element, SwfTagFrameLabel& tag) {
    tag.name = element.string("Name");
    tag.isAnchor = element.boolean("IsAnchor");
    if (element.fullForm() && element.has("AnchorByte"))
        tag.anchorByte = element.ui8("AnchorByte");
}

void writeXml(XmlNode& node, const SwfTagEnableDebugger& tag) { node.attribute("Password", tag.password); }

void readXml(XmlElement& element, SwfTagEnableDebugger& tag) { tag.password = element.string("Password"); }

void writeXml(XmlNode& node, const SwfTagEnableDebugger2& tag) {
    if (node.fullForm())
        node.attribute("Reserved", tag.reserved);
    node.attribute("Password", tag.password);
}

void readXml(XmlElement& element, SwfTagEnableDebugger2& tag) {
    if (element.fullForm())
        tag.reserved = element.ui16("Reserved");
    tag.password = element.string("Password");
}

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
    for (const XmlName& flag : fileAttributes)
        tag.flags |= element.boolean(flag.name) ? flag.value : 0;
    tag.flags |= element.ui32("Reserved") & ~uint32_t(SwfTagFileAttributes::named);
}

void writeXml(XmlNode& node, const SwfTagProductInfo& tag) {
    node.attribute("ProductID", tag.productId);
    node.attribute("Edition", tag.edition);
    node.attribute("MajorVersion", tag.majorVersion);
    node.attribute("MinorVersion", tag.minorVersion);
    node.attribute("BuildLow", tag.buildLow);
    node.attribute("BuildHigh", tag.buildHigh);
    node.attribute("CompilationDate", formatDate(tag.compilationDate));
}

// The bytes or the date behind an attribute's text; a missing one leaves the value as it is.
template <class Value>
static void readText(XmlElement& element, const char* name, const XmlTextForm& form,
                     bool (*parse)(std::string_view, Value), Value value) {
    const auto text = element.attribute(name, XmlValueForm::text(form));
    if (text && !parse(*text, value))
        element.refuse(name, "\"" + std::string(*text) + "\" is not a value that fits");
}

void readXml(XmlElement& element, SwfTagProductInfo& tag) {
    tag.productId = element.ui32("ProductID");
    tag.edition = element.ui32("Edition");
    tag.majorVersion = element.ui8("MajorVersion");
    tag.minorVersion = element.ui8("MinorVersion");
    tag.buildLow = element.ui32("BuildLow");
    tag.buildHigh = element.ui32("BuildHigh");
    readText<uint64_t&>(element, "CompilationDate", dateForm, parseDate, tag.compilationDate);
}

void writeXml(XmlNode& node, const SwfTagDebugID& tag) { node.attribute("UUID", formatUuid(tag.uuid)); }

void readXml(XmlElement& element, SwfTagDebugID& tag) {
    readText<std::span<uint8_t, 16>>(element, "UUID", uuidForm, parseUuid, tag.uuid);
}

void writeXml(XmlNode& node, const SwfTagEnableTelemetry& tag) {
    if (tag.reserved != 0)
        node.attribute("Reserved", tag.reserved);
    if (tag.hasPasswordHash)
        node.attribute("PasswordHash", formatHexBytes(tag.passwordHash));
}

void readXml(XmlElement& element, SwfTagEnableTelemetry& tag) {
    tag.reserved = element.ui16("Reserved");
    tag.hasPasswordHash = element.has("PasswordHash");
    readText<std::span<uint8_t>>(element, "PasswordHash", hashForm, parseHexBytes, tag.passwordHash);
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
