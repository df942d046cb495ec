// What a tag is that stands as Unknown in a document's text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "MovieLayout.h"

namespace zelk {

/// "DefineFont3, kept raw: 3 bytes are left over after its fields". The tag's bytes are read for it; of an element of
/// more than `most` bytes only "DefineFont3, kept raw" is told. Empty for another element, and for one that is wrong.
std::string unknownTagWords(std::string_view element, MovieLayout layout, size_t most);

/// The Unknown element around a place, if it is no bigger than the reach of surroundings.
std::optional<std::string_view> unknownElementAt(std::string_view text, size_t position);

} // namespace zelk
