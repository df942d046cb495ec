#include "TagCheck.h"

#include "Conversion.h"
#include "Exceptions.h"
#include "SingleTag.h"
#include "TagText.h"

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
        throw XmlException("exactly one element has to stand here", 1, 1);
    auto tag = compileTag(text, version, &warnings);
    if (tag == nullptr)
        throw XmlException(std::string(elementName(elements[0])) + " is no tag", 1, 1);
    MovieTarget target; // What does not fit shows when the tag is written.
    target.movie.version = version;
    target.append(std::move(tag));
    target.movie.serialise(noCompression, &warnings);
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
