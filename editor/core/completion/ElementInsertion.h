// Putting new elements into a movie's XML where they may stand.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MovieSettings.h"
#include "XmlVocabulary.h"

namespace zelk {

enum class ElementKind : uint8_t { tag, action, structure };

/// Where a new element goes.
struct ElementPlace {
    std::vector<xml2swf::XmlChildForm> choices;
    std::string_view likely;          ///< the name of one of them for a tag, else empty
    size_t start, end;                ///< what is replaced
    std::string before, after;        ///< what stands around the new element then
    std::string indentation, lineEnd; ///< of its lines
};

/// The tags that may stand in a movie, by their names.
std::vector<xml2swf::XmlChildForm> tagChoices(const xml2swf::XmlVocabulary& vocabulary);

/// The tag that is most likely wanted behind the one of this name; in front of all others of a movie for none.
std::string_view likelyTag(std::string_view before);

/// The nearest place for elements of this kind: in the element at `position`, else at the beginning of the next one,
/// else behind the one that it is in. None when none of these holds elements of this kind, or they are too big to tell.
/// The form is what the text begins in, where it is not said.
std::optional<ElementPlace> placeForElement(std::string_view text, size_t position, ElementKind kind,
                                            std::optional<bool> fullForm = {});

/// Puts a new element there, complete with the attributes and children that belong to it.
TextChange insertElement(const ElementPlace& place, const xml2swf::XmlChildForm& choice);

} // namespace zelk
