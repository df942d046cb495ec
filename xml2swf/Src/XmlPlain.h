// A quick reader for XML in the form in which it is mostly written.
#pragma once

#include <string_view>
#include <vector>

#include "XmlWindow.h"

namespace xml2swf {

/// Nodes of the window's kind for a text of nothing but elements, blanks between them, and CDATA sections: names of
/// letters and digits, one blank before each attribute, double quotes, no references. Every such text is well-formed,
/// and the parser would give the same nodes. Names and values refer to the text.
class XmlPlainReader {
public:
    XmlPlainReader(std::vector<XmlItem>& items, std::vector<XmlAttribute>& attributes)
        : _items(items), _attributes(attributes) {}

    /// Reads a whole text. False, with the vectors in any state, when it is not of the plain form.
    bool readContent(std::string_view text);
    /// Reads one start tag, as an element without content. False as above.
    bool readStartTag(std::string_view tag);

private:
    bool open();
    bool close();
    bool section();

    std::vector<XmlItem>& _items;
    std::vector<XmlAttribute>& _attributes;
    std::vector<uint32_t> _open; // items whose end tag has not come yet
    const char* _at = nullptr;
    const char* _end = nullptr;
};

} // namespace xml2swf
