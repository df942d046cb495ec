// Where a place of a text stands, told from the bytes before it and no more of them than needed.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "XmlVocabulary.h"

namespace zelk {

constexpr size_t surroundingsReach = size_t(1) << 20; ///< bytes that are looked at before or behind a place

struct XmlTagToken {
    enum class Kind : uint8_t { start, end, empty };
    Kind kind;
    size_t open, end; ///< from the "<" to behind the ">"
    std::string_view name;
};

/// The tag that begins at a "<" and ends before `limit`. None for a comment and the like, or when it does not end.
std::optional<XmlTagToken> tagTokenAt(std::string_view text, size_t open, size_t limit);
/// The next "<" that begins no comment, CDATA section or the like; the text's size when there is none.
size_t skipSections(std::string_view text, size_t position);
/// The end of the element in which a place stands: its end tag, if it ends within `reach`.
std::optional<XmlTagToken> endTagBehind(std::string_view text, size_t position, size_t reach = surroundingsReach);

/// The start tag of the element around a place. Beyond the reach, the nearest line above that begins with a start tag
/// and is indented less than the one with the last tag.
std::optional<XmlTagToken> openTagBefore(std::string_view text, size_t position);

/// The tags before a place, the nearest first. What stands in comments and CDATA sections is passed over.
class XmlTagsBefore {
public:
    XmlTagsBefore(std::string_view text, size_t position, size_t reach = surroundingsReach);
    /// None at the end of the reach.
    std::optional<XmlTagToken> next();
    bool isAtStart() const { return _least == 0; }

private:
    bool skipSection(size_t open);

    std::string_view _text;
    size_t _at, _least;
    bool _hasNoCData = false, _hasNoComment = false; // before the place that was reached
};

/// The vocabulary of a form; of the one that the text begins in, where it is not said.
const xml2swf::XmlVocabulary& vocabularyOf(std::string_view text, std::optional<bool> fullForm);

/// What a place itself is in.
struct XmlPlaceKind {
    enum class In : uint8_t { content, name, endName, attributeName, value, elsewhere };
    In in = In::elsewhere;
    size_t open = 0;  ///< of the tag that it is in: the "<"
    size_t start = 0; ///< of the name or value, as far as it stands before the place
    std::string_view element = {}, attribute = {};
};
XmlPlaceKind placeKindAt(std::string_view text, size_t position);

/// The element around a place.
struct XmlSurroundings {
    const xml2swf::XmlVocabulary* vocabulary = nullptr; ///< of the text's form
    const xml2swf::XmlElementType* type = nullptr;      ///< null when it is not known, or there is none
    std::string_view name;                              ///< may be empty though the type is known
    bool isTop = false;                                 ///< no element stands around the place or before it
    std::vector<std::string_view> siblings;             ///< before the place, as far as they had to be looked at
};
/// `position` is outside of tags.
XmlSurroundings surroundingsOf(const xml2swf::XmlVocabulary& vocabulary, std::string_view text, size_t position);
/// The type of an element of this name there; null when it is not known.
const xml2swf::XmlElementType* typeOfElement(const XmlSurroundings& around, std::string_view name);

} // namespace zelk
