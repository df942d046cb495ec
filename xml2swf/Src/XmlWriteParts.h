// Writing the children of very big elements on several threads.
#pragma once

#include <functional>

#include "XmlElementWriter.h"

namespace xml2swf {

/// Lets `write` write children `first` to `end` to a node, for all of `count` in order. It writes no tags; many
/// children are written in parts on several threads, each to a node with the parent's depth.
void writeInParts(XmlNode& parent, size_t count,
                  const std::function<void(XmlNode& node, size_t first, size_t end)>& write);

} // namespace xml2swf
