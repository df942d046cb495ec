#include "TagCheck.h"

#include "Conversion.h"
#include "Exceptions.h"
#include "SingleTag.h"
#include "TagText.h"
#include "XmlTags.h"

namespace zelk {

using namespace xml2swf;

static constexpr int noCompression = 0;

void checkTag(std::string_view text, MovieLayout layout, libswf::SwfWarnings& warnings, const FontTables* fonts) {
    const std::vector<std::string> elements = splitElements(text);
    if (elements.size() > 1)
        throw NotMovieException("Exactly one element has to stand here.", 1, 1);
    auto tag = compileTag(text, layout, &warnings, fonts);
    if (tag == nullptr)
        throw NotMovieException::noTag(elementName(elements[0]), 1, 1);
    MovieTarget target; // What does not fit shows when the tag is written.
    target.movie.version = layout.version;
    target.movie.fullForm = layout.fullForm;
    target.append(std::move(tag));
    target.movie.serialise(noCompression, &warnings);
}

void checkMovieText(std::string_view text, IProgressReporter* progress) {
    const TagIndex index(text, progress);
    const bool fullForm = layoutAtStart(text).fullForm;
    for (uint32_t tag = 0; tag < index.count(); ++tag) {
        const std::string_view name = elementName(text.substr(index.start(tag)));
        if (isTagElement(name, fullForm)) [[likely]]
            continue;
        XmlPlace place{index.start(tag)};
        place.locate(text);
        throw NotMovieException::noTag(name, place.row, place.column);
    }
}

} // namespace zelk
