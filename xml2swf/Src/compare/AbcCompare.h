// Where two blocks of ActionScript 3 differ.
#pragma once

#include <optional>
#include <span>

#include "MovieCompare.h"

namespace xml2swf {

/// The first difference of two blocks, in the order of A's text, by class, member and instruction:
/// "Abc/Class[pkg::Name]/Method[run]/Code/GetLex[2]/@Name". Nothing when a block has no text, or when both have the
/// same.
std::optional<FieldDifference> abcDifference(std::span<const uint8_t> a, std::span<const uint8_t> b);

} // namespace xml2swf
