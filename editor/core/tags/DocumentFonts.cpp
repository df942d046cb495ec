#include "DocumentFonts.h"

#include <algorithm>

#include "AttributeText.h"
#include "ElementText.h"
#include "SingleTag.h"
#include "TagText.h"
#include "XmlNumbers.h"

namespace zelk {

using namespace xml2swf;

std::vector<uint16_t> spelledFonts(std::string_view element, bool fullForm) {
    constexpr std::string_view font = "FontId=";
    std::vector<uint16_t> ids;
    if (!fullForm || element.find("Character=") == element.npos)
        return ids;
    for (size_t at = element.find(font); at != element.npos; at = element.find(font, at + 1)) {
        const size_t start = std::min(at + font.size() + 1, element.size());
        const auto id = parseInteger(element.substr(start, element.find(element[start - 1], start) - start));
        if (id && *id >= 0 && *id <= UINT16_MAX)
            ids.push_back(static_cast<uint16_t>(*id));
    }
    std::ranges::sort(ids);
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    return ids;
}

void addFonts(FontTables& fonts, std::string_view elements, MovieLayout layout) {
    libswf::SwfContext movie;
    movie.version = layout.version;
    movie.fullForm = layout.fullForm;
    try {
        for (const std::string& element : splitElements(elements)) {
            if (const auto tag = compileTag(element, layout, nullptr))
                fonts.add(*tag, movie);
        }
    } catch (const std::exception&) { // compiling the movie says what is wrong with it
    }
}

FontTables fontsOf(std::string_view document, const TagIndex& tags, const std::vector<uint16_t>& ids) {
    FontTables fonts;
    const MovieLayout layout = layoutAtStart(document);
    for (uint32_t i = 0; !ids.empty() && i < tags.childCount(TagIndex::movie); ++i) {
        const uint32_t tag = tags.child(TagIndex::movie, i);
        const std::string_view text = document.substr(tags.start(tag), tags.end(tag) - tags.start(tag));
        if (!hasFontCodes(elementName(text)))
            continue;
        const auto id = parseInteger(attributeText(text.substr(0, text.find('>') + 1), "FontId").value_or(""));
        if (id && std::ranges::find(ids, *id) != ids.end())
            addFonts(fonts, text, layout);
    }
    return fonts;
}

} // namespace zelk
