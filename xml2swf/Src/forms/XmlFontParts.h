// The XML of what several font and text tags have in common.
#pragma once

#include <limits>

#include "SwfVector.h"
#include "XmlElement.h"
#include "XmlElementWriter.h"

namespace xml2swf {

/// A font name that stands behind a length byte in the file, and FontNameNuls for NULs at its end. One with a NUL
/// inside has no XML form: SwfException code 3.
void writeFontName(XmlNode& node, const libswf::SwfString& name, uint8_t nuls);

/// An integer of `bits` bits; a larger one is an error.
uint32_t smallInteger(XmlElement& element, std::string_view name, uint32_t bits);

/// A table of numbers, one Code element with a Value each.
template <class Int>
void writeCodeTable(XmlNode& parent, std::string_view name, const libswf::SwfVector<Int>& values) {
    XmlNode table(parent, name);
    for (const Int value : values)
        XmlNode(table, "Code").attribute("Value", value);
}

template <class Int>
void readCodeTable(XmlElement& table, libswf::SwfVector<Int>& values) {
    for (XmlElement child : table.children()) {
        if (child.is("Code"))
            values.append(child.integer<Int>("Value"));
        else
            child.skip();
    }
}

} // namespace xml2swf
