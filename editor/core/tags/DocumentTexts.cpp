#include "DocumentTexts.h"

#include <array>
#include <stdexcept>

#include "Conversion.h"
#include "ElementText.h"
#include "Exceptions.h"
#include "SingleTag.h"
#include "SwfTagDefineSprite.h"
#include "TagIndex.h"
#include "TagText.h"

namespace zelk {

using namespace libswf;

namespace {

// A document as a movie that was read in the full form, whatever its own.
struct Compiled {
    SwfMovieSafe movie;
    MovieLayout layout; ///< of the document
    TagIndex index;

    explicit Compiled(std::string_view document) : index(document) {
        xml2swf::MovieTarget target;
        xml2swf::ConversionOptions options;
        options.keepRaw = true;
        options.toWrite = true;
        if (!xml2swf::xmlToSwf(document, target, options))
            throw NotMovieException::noMovie();
        layout = {target.movie.version, target.movie.fullForm};
        target.movie.isCompressed = false;
        constexpr int noCompression = 0;
        const SwfVector<uint8_t> file = target.movie.serialise(noCompression);
        SwfLoadOptions load;
        load.fullForm = true;
        load.keepRaw = true;
        movie.parse({file.begin(), file.end()}, load);
    }

    /// The number of the tag's element; TagIndex::movie when something that is no tag stands before it.
    uint32_t elementOf(std::string_view document, const MovieText& text) const {
        const uint32_t tag = index.find(text.tagPath);
        if (tag == TagIndex::movie)
            return tag;
        const std::string_view name = elementName(document.substr(index.start(tag), index.end(tag) - index.start(tag)));
        return name == tagName(text.tagCode) || name == "Unknown" ? tag : TagIndex::movie;
    }
};

const SwfTagWrapper& tagAt(const SwfTags& tags, const std::vector<uint32_t>& path) {
    const SwfTags* list = &tags;
    for (size_t i = 0; i + 1 < path.size(); ++i)
        list = &dynamic_cast<const SwfTagDefineSprite&>(list->at(path[i])).tags;
    return list->sharedAt(path.back());
}

xml2swf::FontTables fontsOf(const SwfMovie& movie) {
    SwfContext context;
    context.version = movie.version;
    context.fullForm = movie.fullForm;
    xml2swf::FontTables fonts;
    for (const SwfTagWrapper& tag : movie.tags.items())
        fonts.add(*tag, context);
    return fonts;
}

} // namespace

std::vector<DocumentText> documentTexts(std::string_view document) {
    const Compiled compiled(document);
    std::vector<DocumentText> result;
    for (MovieText& text : findTexts(compiled.movie, {true, true}).texts) {
        const uint32_t tag = compiled.elementOf(document, text);
        const size_t start = tag == TagIndex::movie ? DocumentText::nowhere : compiled.index.start(tag);
        result.push_back({std::move(text), start});
    }
    return result;
}

TextChange documentTextChange(std::string_view document, const MovieText& which, const std::string& text) {
    Compiled compiled(document);
    const std::array<NewText, 1> change = {{{which.key, which.text, text}}};
    const ChangedTexts changed = changeTexts(compiled.movie, change);
    if (!changed.problems.empty())
        throw std::runtime_error(changed.problems[0].reason);
    const uint32_t tag = compiled.elementOf(document, which);
    if (tag == TagIndex::movie)
        throw std::runtime_error("an element before it is no tag");
    const MovieLayout full(compiled.layout.version, true);
    const bool isFull = compiled.layout.fullForm;
    const xml2swf::FontTables fonts = isFull ? fontsOf(changed.movie) : xml2swf::FontTables();
    std::string element = tagElement(tagAt(changed.movie.tags, which.tagPath), full, &fonts);
    if (!isFull)
        element = tagInForm(element, full, false);
    const size_t start = compiled.index.start(tag), end = compiled.index.end(tag);
    return {start, end, withLineEnds(reindented(element, "    ", lineIndent(document, start)), lineEndOf(document))};
}

} // namespace zelk
