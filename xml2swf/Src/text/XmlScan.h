// A quick look over an XML text before it is parsed: nesting, big elements, and where tags stand.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "XmlTagSpans.h"

namespace xml2swf {

/// A part of a big element's content: some small children with what stands around them, or one big child.
struct XmlPiece {
    static constexpr uint32_t small = UINT32_MAX;
    size_t start, end;
    uint32_t block;      ///< index of the big child; `small` for a run of small ones
    uint32_t firstChild; ///< index of the first child element in it
    bool parsed = false; ///< the parser has seen it
};

/// An element of windowSize bytes or more.
struct XmlBlock {
    size_t start = 0;      ///< of "<"
    size_t tagEnd = 0;     ///< behind the ">" of the start tag
    size_t contentEnd = 0; ///< of the "</"
    size_t end = 0;        ///< behind the last ">"
    uint32_t children = 0; ///< child elements
    std::vector<XmlPiece> pieces;
};

/// What is parsed at a time: pieces of at most about this many bytes, so that the parsed form of a big text never
/// stands in memory as a whole.
constexpr size_t windowSize = 16 * 1024;

struct XmlStructure {
    std::vector<XmlBlock> blocks; ///< in any order
    XmlBlock document;            ///< the text as a whole
    MovieSpan movie;
    bool regular = true; ///< elements close as they open; otherwise the parser has to see the text as a whole
};

/// Throws XmlSyntaxError for a NUL (the parser would take it for the end) and for elements nested more than `maxDepth`
/// deep (the parser recurses). With `spans`, also tells where the children of Movie and DefineSprite stand, in the
/// order of their starts. Parts of the text are scanned on so many threads; with `spans` on one.
XmlStructure scanXml(std::string_view text, uint32_t maxDepth, std::vector<ElementSpan>* spans, uint32_t threads = 1);

} // namespace xml2swf
