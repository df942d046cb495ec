// The XML form of the shared records.
#pragma once

#include "XmlElement.h"
#include "XmlElementWriter.h"

namespace xml2swf {

/// Bits: the width of a record's fields, where the full form keeps one.
void writeBits(XmlNode& node, const libswf::SwfKeptWidth& width);
void readBits(XmlElement& element, libswf::SwfKeptWidth& width, uint8_t most);

/// Attributes MaxX, MaxY, MinX, MinY in twips on the enclosing element.
void writeXml(XmlNode& node, const libswf::SwfRect& rect);
void readXml(XmlElement& element, libswf::SwfRect& rect);

/// Children Translate, Scale (when present) and Rotate (when present).
void writeXml(XmlNode& node, const libswf::SwfMatrix& matrix);
void readXml(XmlElement& element, libswf::SwfMatrix& matrix);

/// Attributes MulR … AddA as raw 8.8 numbers; 256 is 1.0. Alpha terms are written with their group even where the
/// record has none. A missing term of a group that is there is 0: MulR alone takes the other colours away.
void writeXml(XmlNode& node, const libswf::SwfColorTransform& transform);
void readXml(XmlElement& element, libswf::SwfColorTransform& transform);

} // namespace xml2swf
