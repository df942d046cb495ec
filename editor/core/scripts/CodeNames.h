// Names in code of ActionScript 3: where they are declared, and which there are.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelk {

/// Whether elements of this name declare the class or member that their Name says.
bool declaresName(std::string_view element);

/// The "<" of the block of code that the place is in; none outside of code.
std::optional<size_t> blockAround(std::string_view text, size_t position);
/// The "<" of the declaration that a name in the code at `position` means, as far as the text tells: that of the same
/// class first, else one in this or a later block, else a class of an earlier one.
std::optional<size_t> declarationOf(std::string_view text, size_t block, size_t position, std::string_view name);
/// The "<" of the method with this Id in a block.
std::optional<size_t> methodOf(std::string_view text, size_t block, std::string_view id);

/// Names that occur in the code near `position`, in the order of the alphabet.
std::vector<std::string> namesAround(std::string_view text, size_t position);

} // namespace zelk
