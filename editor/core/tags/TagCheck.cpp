#include "TagCheck.h"

#include "Conversion.h"
#include "Exceptions.h"
#include "SingleTag.h"
#include "TagText.h"
#include "XmlTags.h"

namespace zelk {

using namespace xml2swf;

namespace {

constexpr uint8_t usualVersion = 7;
constexpr int noCompression = 0;

struct VersionTarget : MovieTarget {
    uint8_t version = usualVersion;
    void movieHeader(uint8_t movieVersion, int32_t, int32_t, float, bool) override { version = movieVersion; }
};

} // namespace

void checkTag(std::string_view text, uint8_t version, libswf::SwfWarnings& warnings) {
    const std::vector<std::string> elements = splitElements(text);
    if (elements.size() > 1)
        throw NotMovieException("Exactly one element has to stand here.", 1, 1);
    auto tag = compileTag(text, version, &warnings);
    if (tag == nullptr)
        throw NotMovieException::noTag(elementName(elements[0]), 1, 1);
    MovieTarget target; // What does not fit shows when the tag is written.
    target.movie.version = version;
    target.append(std::move(tag));
    target.movie.serialise(noCompression, &warnings);
}

void checkMovieText(std::string_view text, IProgressReporter* progress) {
    const TagIndex index(text, progress);
    for (uint32_t tag = 0; tag < index.count(); ++tag) {
        const std::string_view name = elementName(text.substr(index.start(tag)));
        if (isTagElement(name)) [[likely]]
            continue;
        XmlPlace place{index.start(tag)};
        place.locate(text);
        throw NotMovieException::noTag(name, place.row, place.column);
    }
}

uint8_t movieVersion(TaggedText& text) {
    VersionTarget target;
    try {
        xmlToSwf(text.movieElement(), target, {});
    } catch (const std::exception&) { // Saving says what is wrong with the attributes.
    }
    return target.version;
}

} // namespace zelk
