// Quick reading of very big elements on several threads.
#pragma once

#include "XmlElement.h"
#include "XmlScan.h"

namespace xml2swf {

/// How far a quick reader came: the piece in which it stopped, or behind the last one, and the place there.
struct XmlQuickEnd {
    size_t piece = 0, at = 0;
};

/// Reads a big element's children in parts, as far as they are of the form for quick reading. Does nothing when the
/// reader cannot be parted, or the element is not worth it.
XmlQuickEnd readInParts(XmlReadContext& context, XmlBlock& block, XmlQuickReader& quick);

} // namespace xml2swf
