// Where the tags of a movie stand in its XML text.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace xml2swf {

/// A range of the text: from an element's "<" to behind its last ">".
struct ElementSpan {
    size_t start, end;
};

struct XmlTagSpans {
    /// The children of every Movie and DefineSprite element, in the order of their starts.
    std::vector<ElementSpan> spans;
};

/// Goes over the whole text. Throws XmlSyntaxError, with its place, when it is not well-formed.
XmlTagSpans findTagSpans(std::string_view text);

} // namespace xml2swf
