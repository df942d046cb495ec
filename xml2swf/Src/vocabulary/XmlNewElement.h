// What a new element has.
#pragma once

#include "XmlProbe.h"
#include "XmlVocabulary.h"

namespace xml2swf {

/// Chooses those of its attributes and children that a new element of the type has: what the writers give for one that
/// says nothing.
void chooseNewElement(const ProbeNode& node, XmlElementType& type);

} // namespace xml2swf
