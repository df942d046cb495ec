// A parsed XML text.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "XmlElement.h"

namespace xml2swf {

/// A range of the text: from an element's "<" to behind its last ">".
struct ElementSpan {
    size_t start, end;
};

/// Parses a private copy of the text: the parser writes into what it parses. Throws XmlSyntaxError.
class XmlDocument {
public:
    static constexpr uint32_t maxDepth = 1000; ///< of nested elements; the parser recurses

    /// With `spans`, also tells where the children of Movie and DefineSprite stand, in the order of their start.
    explicit XmlDocument(std::string_view text, std::vector<ElementSpan>* spans = nullptr);

    /// The first top-level element of this name; null when there is none.
    RawNode* root(const char* name) const;
    const char* text() const { return _copy.data(); }

private:
    std::vector<char> _copy;
    std::unique_ptr<rapidxml::xml_document<char>> _document; // more than 64 KB: not for a worker's stack
};

} // namespace xml2swf
