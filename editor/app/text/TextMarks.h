// The numbers of what the control draws beside and under the text.
#pragma once

namespace zelk {

enum Margin { numbers, folds, bookmarks };
constexpr int tagIndicator = 8, targetIndicator = 9, matchIndicator = 10, bookmark = 1;

} // namespace zelk
