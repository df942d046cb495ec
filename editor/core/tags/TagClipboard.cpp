#include "TagClipboard.h"

#include "DocumentFonts.h"
#include "Exceptions.h"
#include "SingleTag.h"
#include "TagText.h"

namespace zelk {

// The same numbers mean other things in the other form.
static std::string inForm(const std::string& element, TaggedText& into, MovieLayout own) {
    const MovieLayout from(own.version, !own.fullForm);
    try {
        const xml2swf::FontTables fonts = fontsOf(into.text(), into.tags(), spelledFonts(element, from.fullForm));
        const std::string tag = tagInForm(element, from, own.fullForm, &fonts);
        return withLineEnds(reindented(tag, "    ", ""), lineEndOf(element));
    } catch (const std::exception&) { // Compiling the movie says what is wrong with it.
        return element;
    }
}

std::vector<std::string> tagsOnClipboard(IClipboard& clipboard, TaggedText& into) {
    const std::optional<std::string> tags = clipboard.tags();
    const MovieLayout own = layoutAtStart(into.text());
    try {
        std::vector<std::string> elements = splitElements(tags ? *tags : clipboard.plainText());
        if (tags && clipboard.tagsAreFull() != own.fullForm) {
            for (std::string& element : elements)
                element = inForm(element, into, own);
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
