// A quick reader for XML in the form in which it is mostly written: a fifth faster than rapidxml alone on real movies,
// and held equal to it by XmlPlainTest (quick/README.md).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "XmlWindow.h"

namespace xml2swf {

/// Appends the value that starts at `at` and ends at a double quote, the five references by name resolved. Gives the
/// place of the quote; null, with any text appended, for other references and where there is no quote.
const char* appendResolved(const char* at, const char* end, std::string& text);

/// Nodes of the window's kind for a text of nothing but elements, blanks between them, and CDATA sections: names of
/// letters and digits, one blank before each attribute, double quotes, no references but the five by name. Every such
/// text is well-formed, and the parser would give the same nodes. Names and sections refer to the text; so do values,
/// but those with references refer to `resolved`, which has to be empty before.
class XmlPlainReader {
public:
    XmlPlainReader(std::vector<XmlItem>& items, std::vector<XmlAttribute>& attributes, std::string& resolved)
        : _items(items), _attributes(attributes), _resolved(resolved) {}

    /// Actions that `reader` makes bytes of go there instead of to the nodes.
    void readScripts(const XmlScriptReader& reader, std::vector<XmlScript>& scripts) {
        _readScript = reader ? &reader : nullptr;
        _scripts = &scripts;
    }

    /// Reads a whole text. False, with the vectors in any state, when it is not of the plain form.
    bool readContent(std::string_view text);
    /// Reads one start tag, as an element without content. False as above.
    bool readStartTag(std::string_view tag);

private:
    bool open();
    bool close();
    bool section();
    void readScript();

    std::vector<XmlItem>& _items;
    std::vector<XmlAttribute>& _attributes;
    std::string& _resolved;
    std::vector<uint32_t> _open; // items whose end tag has not come yet
    const XmlScriptReader* _readScript = nullptr;
    std::vector<XmlScript>* _scripts = nullptr;
    const char* _at = nullptr;
    const char* _end = nullptr;
};

} // namespace xml2swf
