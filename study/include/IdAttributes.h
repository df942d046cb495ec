// Which attributes of which elements hold ids of characters.
#pragma once

#include <span>

#include "CharacterIndex.h"

namespace zelk {

struct IdAttribute {
    std::string_view element, attribute;
    IdRole role;
    bool isOptional = false;    ///< 0 means none
    std::string_view name = {}; ///< the attribute that names the character, if there is one
    CharacterName::Kind kind = CharacterName::Kind::instance;
};

/// Those of an element of a tag, or of a tag itself. Empty for an element without.
std::span<const IdAttribute> idAttributes(std::string_view element, std::string_view tag);

/// What a tag of a code that is kept as bytes does with the id that its body begins with; none for other codes.
std::optional<IdRole> roleInBytes(uint16_t code);

} // namespace zelk
