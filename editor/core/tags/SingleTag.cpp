#include "SingleTag.h"

#include <algorithm>

#include "Conversion.h"
#include "Exceptions.h"

namespace zelk {

using namespace libswf;
using namespace xml2swf;

namespace {

XmlPlace inElement(XmlPlace place, size_t before) {
    place.row -= place.row > 1 ? 1 : 0;
    place.offset -= std::min(place.offset, before);
    return place;
}

} // namespace

std::shared_ptr<SwfTag> compileTag(std::string_view element, MovieLayout layout, SwfWarnings* warnings,
                                   const FontTables* fonts) {
    std::string text = "<Movie SwfVersion=\"" + std::to_string(layout.version) + "\"";
    if (layout.fullForm)
        text.append(" Form=\"").append(fullForm) += '"';
    text += ">\n"; // one row more than the element has
    const size_t before = text.size();
    text.append(element) += "\n</Movie>";
    SwfWarnings found;
    ConversionOptions options;
    options.keepRaw = true;
    options.warnings = &found;
    options.fonts = fonts;
    MovieTarget target;
    try {
        xmlToSwf(text, target, options);
    } catch (const XmlSyntaxError& error) {
        throw XmlException(error.what(), inElement(error.place, before).row, error.place.column);
    } catch (XmlValueError& error) {
        error.place = inElement(error.place, before);
        throw;
    } catch (Base64Error& error) {
        error.place = inElement(error.place, before);
        throw;
    }
    for (SwfWarning warning : found.items()) {
        warning.row -= warning.row > 1 ? 1 : 0;
        if (warnings != nullptr)
            warnings->add(std::move(warning));
    }
    return target.movie.tags.count() == 0 ? nullptr : target.movie.tags.sharedAt(0);
}

std::string tagElement(const std::shared_ptr<SwfTag>& tag, MovieLayout layout, const FontTables* fonts) {
    SwfMovieSafe movie;
    movie.version = layout.version;
    movie.fullForm = layout.fullForm;
    movie.tags.append(tag);
    std::vector<TagText> texts;
    ConversionOptions options;
    options.keepRaw = true;
    options.tagTexts = &texts;
    options.fonts = fonts;
    const std::string text = swfToXmlDocument(movie, options);
    const TagText& own = texts.back(); // tags inside it come before it
    return text.substr(own.start, own.end - own.start);
}

std::string tagInForm(std::string_view element, MovieLayout from, bool fullForm, const FontTables* fonts) {
    std::shared_ptr<SwfTag> tag = compileTag(element, from, nullptr, fonts);
    if (tag == nullptr)
        return std::string(element);
    constexpr int noCompression = 0;
    SwfMovie movie;
    movie.version = from.version;
    movie.fullForm = from.fullForm;
    movie.tags.append(std::move(tag));
    const SwfVector<uint8_t> file = movie.serialise(noCompression);
    SwfMovieSafe read;
    SwfLoadOptions options;
    options.fullForm = fullForm;
    options.keepRaw = true;
    read.parse({file.begin(), file.end()}, options);
    return tagElement(read.tags.sharedAt(0), {from.version, fullForm}, fonts);
}

} // namespace zelk
