// The other tag of an element, as far as it can be told without parsing the whole text.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace zelk {

struct TextRange {
    size_t start, end;
    bool operator==(const TextRange&) const = default;
};

/// The names in the two tags of an element.
struct TagPair {
    TextRange here, other;
    bool operator==(const TagPair&) const = default;
};

/// For a place inside a start or end tag the names of both tags. None when there is no second tag within some
/// megabytes.
std::optional<TagPair> matchingTags(std::string_view text, size_t position);

} // namespace zelk
