// Tags on the clipboard.
#pragma once

#include <string>
#include <vector>

#include "MovieLayout.h"
#include "TaggedText.h"

namespace zelk {

/// The elements on the clipboard, as splitElements gives them: tags, or plain text that is one or more elements. Tags
/// of a text in another form become those of this one, as far as they compile; texts are taken to be written in its
/// fonts. Empty for anything else.
std::vector<std::string> tagsOnClipboard(IClipboard& clipboard, TaggedText& into);
/// Each on lines of its own. False when the clipboard does not take them.
bool putOnClipboard(IClipboard& clipboard, const std::vector<std::string>& elements, std::string_view lineEnd,
                    bool fullForm);

} // namespace zelk
