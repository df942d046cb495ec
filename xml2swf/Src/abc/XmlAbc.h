// Blocks of ActionScript 3 as XML.
#pragma once

#include "SwfBytes.h"
#include "SwfTag.h"
#include "XmlElement.h"
#include "XmlElementWriter.h"

namespace xml2swf {

/// Writes the block of a tag as its child Abc; in the classic form, where the context says so, and when the block
/// cannot be given back from its XML, as bytes in its child `dataName`. The last comes with a warning that says why.
void writeAbc(XmlNode& parent, const libswf::SwfTag& tag, const libswf::SwfBytes& block, std::string_view dataName);
/// The block of a tag's element: in the full form its child Abc compiled, or else the bytes of its child `dataName`.
libswf::SwfBytes readAbc(XmlElement& parent, std::string_view dataName);

} // namespace xml2swf
