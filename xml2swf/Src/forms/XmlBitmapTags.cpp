// Bitmaps as XML.
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

void writeXml(XmlNode& node, const SwfTagJPEGTables& tag) { writePayload(node, "JPEGData", tag.jpegData.span()); }

void readXml(XmlElement& element, SwfTagJPEGTables& tag) { tag.jpegData = element.payload("JPEGData"); }

static void writeJpeg(XmlNode& node, const SwfJpegBitmap& tag) {
    node.attribute("CharacterId", tag.characterId);
    writePayload(node, "JPEGData", tag.jpegData.span());
}

static void readJpeg(XmlElement& element, SwfJpegBitmap& tag) {
    tag.characterId = element.ui16("CharacterId");
    tag.jpegData = element.payload("JPEGData");
}

void writeXml(XmlNode& node, const SwfTagDefineBits& tag) { writeJpeg(node, tag); }
void readXml(XmlElement& element, SwfTagDefineBits& tag) { readJpeg(element, tag); }

void writeXml(XmlNode& node, const SwfTagDefineBitsJPEG2& tag) { writeJpeg(node, tag); }
void readXml(XmlElement& element, SwfTagDefineBitsJPEG2& tag) { readJpeg(element, tag); }

void writeXml(XmlNode& node, const SwfTagDefineBitsJPEG3& tag) {
    node.attribute("CharacterId", tag.characterId);
    writePayload(node, "JPEGData", tag.jpegData.span());
    writePayload(node, "BitmapAlphaData", tag.bitmapAlphaData.span());
}

void readXml(XmlElement& element, SwfTagDefineBitsJPEG3& tag) {
    tag.characterId = element.ui16("CharacterId");
    tag.jpegData = element.payload("JPEGData");
    tag.bitmapAlphaData = element.payload("BitmapAlphaData");
}

void writeXml(XmlNode& node, const SwfTagDefineBitsJPEG4& tag) {
    node.attribute("CharacterId", tag.characterId);
    node.attribute("DeblockParam", tag.deblockParam);
    writePayload(node, "JPEGData", tag.jpegData.span());
    writePayload(node, "BitmapAlphaData", tag.bitmapAlphaData.span());
}

void readXml(XmlElement& element, SwfTagDefineBitsJPEG4& tag) {
    tag.characterId = element.ui16("CharacterId");
    tag.deblockParam = element.ui16("DeblockParam");
    tag.jpegData = element.payload("JPEGData");
    tag.bitmapAlphaData = element.payload("BitmapAlphaData");
}

void writeXml(XmlNode& node, const SwfTagDefineBitsLossless& tag) {
    node.attribute("CharacterId", tag.characterId);
    node.attribute("BitmapFormat", tag.bitmapFormat);
    node.attribute("BitmapWidth", tag.bitmapWidth);
    node.attribute("BitmapHeight", tag.bitmapHeight);
    node.attribute("BitmapColorTableSize", tag.bitmapColorTableSize);
    writePayload(node, "PngData", tag.pngData.span());
}

void readXml(XmlElement& element, SwfTagDefineBitsLossless& tag) {
    tag.characterId = element.ui16("CharacterId");
    tag.bitmapFormat = element.ui8("BitmapFormat");
    tag.bitmapWidth = element.ui16("BitmapWidth");
    tag.bitmapHeight = element.ui16("BitmapHeight");
    tag.bitmapColorTableSize = element.ui8("BitmapColorTableSize");
    tag.pngData = element.payload("PngData");
}

void writeXml(XmlNode& node, const SwfTagDefineBitsLossless2& tag) {
    writeXml(node, static_cast<const SwfTagDefineBitsLossless&>(tag));
}

void readXml(XmlElement& element, SwfTagDefineBitsLossless2& tag) {
    readXml(element, static_cast<SwfTagDefineBitsLossless&>(tag));
}

} // namespace xml2swf
