#include "TagClipboard.h"

#include "Exceptions.h"
#include "TagText.h"

namespace zelk {

std::vector<std::string> tagsOnClipboard(IClipboard& clipboard) {
    const std::optional<std::string> tags = clipboard.tags();
    try {
        return splitElements(tags ? *tags : clipboard.plainText());
    } catch (const XmlException&) {
        return {};
    } catch (const NotMovieException&) {
        return {};
    }
}

bool putOnClipboard(IClipboard& clipboard, const std::vector<std::string>& elements, std::string_view lineEnd) {
    std::string text;
    for (const std::string& element : elements)
        text.append(element).append(lineEnd);
    return clipboard.setTags(text);
}

} // namespace zelk
