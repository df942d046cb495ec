// The payload of a tag that stands in a movie's text.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "MovieLayout.h"
#include "Payload.h"
#include "SwfTag.h"

namespace zelk {

/// A tag's element and those that its payload needs, as they stand in a text.
struct PayloadElements {
    std::string_view text; ///< the whole
    std::string_view element;
    std::string_view jpegTables;                ///< empty when the movie has none
    std::vector<std::string_view> streamBlocks; ///< that follow a SoundStreamHead in its list
    MovieLayout layout;                         ///< of the movie

    /// Where the element starts in the text.
    size_t start() const { return static_cast<size_t>(element.data() - text.data()); }
};

/// The innermost tag around a place in a movie's text, or the one that follows it in its line; none between tags. Goes
/// over the whole text. Throws XmlSyntaxError when it is not well-formed, and for its header as xmlToSwf does.
std::optional<PayloadElements> payloadElementsAt(std::string_view text, size_t offset);
/// The same for the tag that defines a character; the last one, where there are several.
std::optional<PayloadElements> payloadElementsOf(std::string_view text, uint16_t characterId);

/// The compiled form of such elements.
class TagPayload {
public:
    /// Throws as compileTag does, with places in the whole text, and NotMovieException for an element that is no tag.
    explicit TagPayload(const PayloadElements& elements);

    const libswf::SwfTag& tag() const { return *_tag; }
    PayloadContext context() const;

private:
    std::shared_ptr<libswf::SwfTag> _tag, _tables;
    std::vector<std::shared_ptr<libswf::SwfTag>> _blocks;
};

} // namespace zelk
