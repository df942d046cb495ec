// Finds which tags of two lists belong together.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace xml2swf {

/// What a tag is recognised by, the strictest key first: all it says, its code and first value (mostly an id or a
/// depth), its code. Tags of equal strict keys have equal weak ones.
using TagKeys = std::array<uint64_t, 3>;

constexpr uint32_t noPartner = UINT32_MAX;

/// For each tag of `a` the index of its partner in `b`, or noPartner. Partners stand in the same order on both sides.
/// Linear memory, n log n time. Not always the longest alignment: in places where tags repeat, tags are looked for no
/// further than a few places off.
std::vector<uint32_t> alignTags(std::span<const TagKeys> a, std::span<const TagKeys> b);

} // namespace xml2swf
