// Tags that name, share or carry assets, as XML.
#include "XmlAbc.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

// How a table shows one of its entries.
struct EntryNames {
    std::string_view element, id;
};
static constexpr EntryNames assetNames{"Asset", "Id"};
static constexpr EntryNames symbolNames{"Symbol", "Tag"};

static void writeEntries(XmlNode& node, const EntryNames& names, const SwfAssets& entries) {
    for (const SwfAsset& entry : entries) {
        XmlNode child(node, names.element);
        child.attribute(names.id, entry.id);
        child.attribute("Name", entry.name);
    }
}

static void readEntries(XmlElement& element, const EntryNames& names, SwfAssets& entries) {
    readEach(element, names.element, [&](XmlElement& child) {
        entries.append({child.ui16(names.id), child.string("Name")});
    });
}

void writeXml(XmlNode& node, const SwfTagExportAssets& tag) { writeEntries(node, assetNames, tag.assets); }

void readXml(XmlElement& element, SwfTagExportAssets& tag) { readEntries(element, assetNames, tag.assets); }

void writeXml(XmlNode& node, const SwfTagImportAssets& tag) {
    node.attribute("URL", tag.url);
    writeEntries(node, assetNames, tag.assets);
}

void readXml(XmlElement& element, SwfTagImportAssets& tag) {
    tag.url = element.string("URL");
    readEntries(element, assetNames, tag.assets);
}

void writeXml(XmlNode& node, const SwfTagImportAssets2& tag) {
    node.attribute("URL", tag.url);
    if (node.fullForm() && tag.reserved != 1)
        node.attribute("Reserved", tag.reserved);
    writeEntries(node, assetNames, tag.assets);
}

void readXml(XmlElement& element, SwfTagImportAssets2& tag) {
    tag.url = element.string("URL");
    if (element.fullForm() && element.has("Reserved"))
        tag.reserved = element.ui8("Reserved");
    readEntries(element, assetNames, tag.assets);
}

void writeXml(XmlNode& node, const SwfTagSymbolClass& tag) { writeEntries(node, symbolNames, tag.symbols); }

void readXml(XmlElement& element, SwfTagSymbolClass& tag) { readEntries(element, symbolNames, tag.symbols); }

void writeXml(XmlNode& node, const SwfTagFreeCharacter& tag) { node.attribute("CharacterId", tag.characterId); }

void readXml(XmlElement& element, SwfTagFreeCharacter& tag) { tag.characterId = element.ui16("CharacterId"); }

void writeXml(XmlNode& node, const SwfTagNameCharacter& tag) {
    node.attribute("CharacterId", tag.characterId);
    node.attribute("Name", tag.name);
}

void readXml(XmlElement& element, SwfTagNameCharacter& tag) {
    tag.characterId = element.ui16("CharacterId");
    tag.name = element.string("Name");
}

void writeXml(XmlNode& node, const SwfTagDefineScalingGrid& tag) {
    node.attribute("CharacterId", tag.characterId);
    writeChild(node, "Rect", tag.splitter);
}

void readXml(XmlElement& element, SwfTagDefineScalingGrid& tag) {
    tag.characterId = element.ui16("CharacterId");
    readChild(element, "Rect", tag.splitter);
}

void writeXml(XmlNode& node, const SwfTagDoABC& tag) {
    node.attribute("Flags", tag.flags);
    node.attribute("Name", tag.name);
    writeAbc(node, tag, tag.abcData, "DoABCData");
}

void readXml(XmlElement& element, SwfTagDoABC& tag) {
    tag.flags = element.ui32("Flags");
    tag.name = element.string("Name");
    tag.abcData = readAbc(element, "DoABCData");
}

void writeXml(XmlNode& node, const SwfTagDoABCDefine& tag) { writeAbc(node, tag, tag.abcData, "DoABCData"); }

void readXml(XmlElement& element, SwfTagDoABCDefine& tag) { tag.abcData = readAbc(element, "DoABCData"); }

void writeXml(XmlNode& node, const SwfTagDefineBinaryData& tag) {
    node.attribute("CharacterId", tag.characterId);
    if (node.fullForm() && tag.reserved != 0)
        node.attribute("Reserved", tag.reserved);
    writePayload(node, "Data", tag.data.span());
}

void readXml(XmlElement& element, SwfTagDefineBinaryData& tag) {
    tag.characterId = element.ui16("CharacterId");
    if (element.fullForm())
        tag.reserved = element.ui32("Reserved");
    tag.data = element.payload("Data");
}

} // namespace xml2swf
