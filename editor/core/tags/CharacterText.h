// Ids of characters in a document's text.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CharacterIndex.h"
#include "EditableText.h"

namespace zelk {

struct IdAtPlace {
    uint16_t id;
    IdRole role;
};
/// The id that the place is in; otherwise the first of those in whose start tag it is, one that is used before one that
/// is defined. A place in the blanks before a tag is in that.
std::optional<IdAtPlace> characterIdAt(std::string_view text, size_t position);

/// Ids that may stand in this attribute, and what is said of each beside it. Empty for an attribute that holds none.
struct IdProposals {
    std::vector<std::string> ids, notes;
};
IdProposals idsFor(const CharacterIndex& characters, std::string_view element, std::string_view attribute);

/// What changes so that a character has another id.
struct Renaming {
    std::vector<TextChange> changes;
    std::string refusal; ///< why it cannot; empty when it can
};
Renaming renamedCharacter(const CharacterIndex& characters, uint16_t from, int64_t to);

} // namespace zelk
