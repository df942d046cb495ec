// The initial text of a text field: whole, or the runs between the marks of one with HTML.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelk {

/// A run that is more than blanks, as it stands and as people read it.
struct HtmlRun {
    size_t start = 0, end = 0;
    std::string text; ///< UTF-8
};

/// The runs of a text with marks; both are UTF-8.
std::vector<HtmlRun> htmlRuns(std::string_view markup);
/// A text as it stands between marks.
std::string asHtml(std::string_view text);

} // namespace zelk
