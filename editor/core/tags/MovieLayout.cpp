#include "MovieLayout.h"

#include <string>

#include "AttributeText.h"
#include "Conversion.h"
#include "XmlNumbers.h"
#include "XmlSurroundings.h"

namespace zelk {

using namespace xml2swf;

MovieLayout movieLayout(std::string_view untilFirstTag) {
    std::string text(untilFirstTag);
    if (!text.ends_with("/>"))
        text += "</Movie>";
    MovieTarget target;
    xmlToSwf(text, target, {});
    return {target.movie.version, target.movie.fullForm};
}

std::string_view movieTagAtStart(std::string_view text) {
    text = text.substr(0, surroundingsReach);
    const std::optional<XmlTagToken> tag = tagTokenAt(text, skipSections(text, 0), text.size());
    return tag && tag->name == "Movie" ? text.substr(tag->open, tag->end - tag->open) : std::string_view();
}

MovieLayout layoutAtStart(std::string_view text) {
    const std::string_view start = movieTagAtStart(text);
    if (start.empty())
        return {};
    const auto version = parseInteger(attributeText(start, "SwfVersion").value_or(""));
    const bool isVersion = version && *version >= 0 && *version <= UINT8_MAX;
    return {isVersion ? static_cast<uint8_t>(*version) : MovieLayout().version,
            attributeText(start, "Form") == fullForm};
}

} // namespace zelk
