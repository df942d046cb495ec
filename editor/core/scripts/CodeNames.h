// Names in code of ActionScript 3: where they are declared, and which there are.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelk {

/// Whether the place is in a block of code.
bool isInCode(std::string_view text, size_t position);

/// Whether elements of this name declare the class or member that their Name says.
bool declaresName(std::string_view element);

/// The "<" of the declaration that a name in the code at `position` means, as far as the text tells: in the block
/// around it that of the same class first, else a class of another block.
std::optional<size_t> declarationOf(std::string_view text, size_t position, std::string_view name);
/// The "<" of the method with this Id in the block around `position`.
std::optional<size_t> methodOf(std::string_view text, size_t position, std::string_view id);

/// Names that occur in the code near `position`, in the order of the alphabet.
std::vector<std::string> namesAround(std::string_view text, size_t position);

} // namespace zelk
