// Branches of scripts by label, and back to numbers.
#pragma once

#include <string_view>
#include <vector>

#include "EditableText.h"
#include "TagIndex.h"

namespace zelk {

enum class BranchTargets : uint8_t { labels, numbers };

/// Changes after which the branches of scripts go by label, or by number without any label left. All else stays as it
/// is typed, and what is compiled stays the same. Of the scripts that the range from `start` to `end` touches; of all
/// when it is empty. A branch that leads to no place keeps its number. Throws as xmlToSwf does for scripts that do not
/// compile.
std::vector<TextChange> changeBranches(BranchTargets targets, std::string_view text, const TagIndex& tags, size_t start,
                                       size_t end, xml2swf::IProgressReporter* progress = nullptr);

} // namespace zelk
