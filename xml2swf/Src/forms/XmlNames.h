// Values that mostly have a name.
#pragma once

#include "XmlElement.h"
#include "XmlElementWriter.h"

namespace xml2swf {

/// The name, or the number of a value without one. Read by XmlElement::nameOrNumber.
inline void writeNameOrNumber(XmlNode& node, std::string_view attribute, XmlNames names, uint32_t value) {
    const std::string_view name = findName(names, value);
    if (name.empty())
        node.attribute(attribute, value);
    else
        node.attribute(attribute, name);
}

} // namespace xml2swf
