// The first field in which two elements differ.
#pragma once

#include <string_view>

#include "MovieCompare.h"

namespace xml2swf {

/// The texts of two elements as the tag writers give them, which are not the same.
FieldDifference firstDifference(std::string_view a, std::string_view b);

} // namespace xml2swf
