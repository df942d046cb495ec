// Where markup ends, as the parser sees it.
#pragma once

#include <string_view>

namespace xml2swf {

/// Position of the ">" that ends a tag, quoted values passed over; npos when there is none.
size_t endOfTag(std::string_view text, size_t at);

/// Passes over markup that is no element: "<!" or "<?" stands at `at`. Gives the position after it, or npos when it has
/// no end.
size_t skipSpecial(std::string_view text, size_t at);

} // namespace xml2swf
