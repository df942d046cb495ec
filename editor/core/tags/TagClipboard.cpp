#include "TagClipboard.h"

#include "Exceptions.h"
#include "SingleTag.h"
#include "TagText.h"

namespace zelk {

// The same numbers mean other things in the other form.
static std::string inForm(const std::string& element, MovieLayout from, bool fullForm) {
    try {
        return withLineEnds(reindented(tagInForm(element, from, fullForm), "    ", ""), lineEndOf(element));
    } catch (const std::exception&) { // Compiling the movie says what is wrong with it.
        return element;
    }
}

std::vector<std::string> tagsOnClipboard(IClipboard& clipboard, MovieLayout layout) {
    const std::optional<std::string> tags = clipboard.tags();
    try {
        std::vector<std::string> elements = splitElements(tags ? *tags : clipboard.plainText());
        if (tags && clipboard.tagsAreFull() != layout.fullForm) {
            for (std::string& element : elements)
                element = inForm(element, {layout.version, !layout.fullForm}, layout.fullForm);
        }
        return elements;
    } catch (const XmlException&) {
        return {};
    } catch (const NotMovieException&) {
        return {};
    }
}

bool putOnClipboard(IClipboard& clipboard, const std::vector<std::string>& elements, std::string_view lineEnd,
                    bool fullForm) {
    std::string text;
    for (const std::string& element : elements)
        text.append(element).append(lineEnd);
    return clipboard.setTags(text, fullForm);
}

} // namespace zelk
