// What has to be replaced in a text so that tags go and come. Everything else stays as it is, comments and formatting
// included.
#pragma once

#include "TaggedText.h"

namespace zelk {

/// The tags at these positions, each once, in ascending order: without those inside another one, and without
/// positions at which there is none.
std::vector<uint32_t> tagsAt(const TagIndex& index, const std::vector<TagPath>& positions);

/// Takes tags out, in ascending order. A tag that has its lines for itself takes its indentation and line end with it.
std::vector<TextChange> removal(TaggedText& text, const std::vector<uint32_t>& tags);

/// Puts elements behind a tag, or before the first one of `parent` when `before` is TagIndex::movie, with the
/// indentation of their neighbours and the line ends that they have. They are as splitElements gives them.
TextChange insertion(TaggedText& text, uint32_t parent, uint32_t before, const std::vector<std::string>& elements);

/// The same at a position: its last number is the first element's row. Behind the last row when it is too high.
TextChange insertionAt(TaggedText& text, const TagPath& position, const std::vector<std::string>& elements);

/// Puts one element in place of a tag.
TextChange replacement(TaggedText& text, uint32_t tag, std::string_view element);

/// A tag's element with the indentation of its line taken away.
std::string loneElement(TaggedText& text, uint32_t tag);

} // namespace zelk
