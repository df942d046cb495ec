// The XML form of filter lists, which placed objects and button records hold.
#pragma once

#include "SwfFilters.h"
#include "XmlElement.h"
#include "XmlElementWriter.h"

namespace xml2swf {

/// One child element per filter. The classic form writes Distance with the value of Angle, on purpose: a filter with a
/// direction comes back from XML with its distance equal to its angle.
void writeXml(XmlNode& node, const libswf::SwfFilterList& list);
void readXml(XmlElement& element, libswf::SwfFilterList& list);

} // namespace xml2swf
