// Scripts where they stand in the text of a movie.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "ScriptBranches.h"
#include "TagText.h"

namespace zelk {

/// Whether tags of this name hold scripts of ActionScript 1 and 2.
bool holdsScripts(std::string_view tagName);

/// Behind the element that starts with the "<" at `open`; none when it does not end before `limit`.
std::optional<size_t> elementEnd(std::string_view text, size_t open, size_t limit);

/// Whether a list of names separated by blanks holds one.
bool holdsName(std::string_view names, std::string_view name);

/// The scripts of the tag from `start` to `end`, their elements as bytes of `text`; the "<" this time. Throws as
/// xmlToSwf does, with places in `text`.
std::vector<xml2swf::ScriptBranches> scriptsOf(std::string_view text, size_t start, size_t end);

} // namespace zelk
