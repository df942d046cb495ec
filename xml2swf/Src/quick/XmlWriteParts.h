// Writing the children of very big elements on several threads.
#pragma once

#include <functional>
#include <mutex>
#include <vector>

#include "XmlElementWriter.h"

namespace xml2swf {

/// Memory of texts that were taken over, for the next ones: new memory would have to be cleared by the system. For any
/// thread.
class XmlFreeTexts {
public:
    /// An empty text.
    XmlText take() {
        const std::lock_guard lock(_mutex);
        if (_texts.empty())
            return {};
        XmlText text = std::move(_texts.back());
        _texts.pop_back();
        text.cut(0);
        return text;
    }
    void giveBack(XmlText text) {
        const std::lock_guard lock(_mutex);
        _texts.push_back(std::move(text));
    }

private:
    std::mutex _mutex;
    std::vector<XmlText> _texts;
};

/// Lets `write` write children `first` to `end` to a node, for all of `count` in order. It writes no tags; many
/// children are written in parts on several threads, each to a node with the parent's depth.
void writeInParts(XmlNode& parent, size_t count,
                  const std::function<void(XmlNode& node, size_t first, size_t end)>& write);

} // namespace xml2swf
