// Tags on the clipboard.
#pragma once

#include <string>
#include <vector>

#include "EditableText.h"

namespace zelk {

/// The elements on the clipboard, as splitElements gives them: tags, or plain text that is one or more elements. Empty
/// for anything else.
std::vector<std::string> tagsOnClipboard(IClipboard& clipboard);
/// Each on lines of its own. False when the clipboard does not take them.
bool putOnClipboard(IClipboard& clipboard, const std::vector<std::string>& elements, std::string_view lineEnd);

} // namespace zelk
