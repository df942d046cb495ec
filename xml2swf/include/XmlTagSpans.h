// Where the tags of a movie stand in its XML text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace xml2swf {

class IProgressReporter;

/// A range of the text: from an element's "<" to behind its last ">".
struct ElementSpan {
    size_t start, end;
    uint32_t depth = 0; ///< elements around it
};

/// The first Movie element that stands in no other.
struct MovieSpan {
    static constexpr size_t none = SIZE_MAX;
    size_t start = none;      ///< of "<"; `none` when there is no such element
    size_t tagEnd = none;     ///< behind the ">" of the start tag
    size_t contentEnd = none; ///< of the "</"; tagEnd for an element that closes itself
    size_t end = none;        ///< behind the last ">"
};

struct XmlTagSpans {
    MovieSpan movie;
    /// The children of every Movie and DefineSprite element, in the order of their starts, whatever stands around
    /// those.
    std::vector<ElementSpan> spans;
};

/// Goes over the whole text. Throws XmlSyntaxError, with its place, when it is not well-formed.
XmlTagSpans findTagSpans(std::string_view text, IProgressReporter* progress = nullptr);

/// Position behind the markup that begins with the "<" at `start`: a tag, a comment, a CDATA section or the like. The
/// text's end when it does not end.
size_t markupEnd(std::string_view text, size_t start);

} // namespace xml2swf
