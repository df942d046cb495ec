// The XML form of every tag class: one pair of functions each, both directions next to each other in the source file of
// the tag's family.
#pragma once

#include "SwfAllTags.h"
#include "XmlElement.h"
#include "XmlElementWriter.h"
#include "XmlStructs.h"
#include "XmlTags.h"

namespace xml2swf {

void writeXml(XmlNode& node, const libswf::SwfTagUnknown& tag);
void readXml(XmlElement& element, libswf::SwfTagUnknown& tag);

#define SWF_TAG(code, name)                                                                                            \
    void writeXml(XmlNode& node, const libswf::SwfTag##name& tag);                                                     \
    void readXml(XmlElement& element, libswf::SwfTag##name& tag);
#define SWF_FULL_TAG SWF_TAG
#include "SwfTags.def"

} // namespace xml2swf
