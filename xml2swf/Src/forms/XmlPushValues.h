// The operands of Push as XML.
#pragma once

#include "SwfValues.h"
#include "XmlElementWriter.h"
#include "XmlQuickElement.h"

namespace xml2swf {

/// One child element per value.
void writeValues(XmlNode& node, const libswf::SwfValues& values);
/// Appends the values of all child elements. An unknown name is a value as well, Undefined, so that the stack keeps its
/// depth.
void readValues(XmlElement& element, libswf::SwfValues& values);
void readValues(XmlQuickElement& element, libswf::SwfValues& values);

} // namespace xml2swf
