#include "OriginalMovie.h"

#include <algorithm>
#include <functional>

#include "Conversion.h"
#include "FontCharacters.h"
#include "XmlElementWriter.h"

namespace xml2swf {

using namespace libswf;

OriginalMovie::TextKey OriginalMovie::keyOf(std::string_view text) {
    return {std::hash<std::string_view>()(text), text.size()};
}

OriginalMovie::OriginalMovie(SwfMovieSafe& movie)
    : _version(movie.version), _fullForm(movie.fullForm), _source(movie.source()), _wholeFile(movie.body()) {
    std::vector<TagText> tags;
    ConversionOptions options;
    options.keepRaw = true;
    options.tagTexts = &tags;
    const std::string text = swfToXml(movie, options);
    remember(text, 0, tags);
}

OriginalMovie::OriginalMovie(SwfMovieSafe& movie, std::string_view document, std::span<const TagText> tags)
    : _version(movie.version), _fullForm(movie.fullForm), _source(movie.source()), _wholeFile(movie.body()) {
    remember(document, xmlDeclaration.size(), tags);
}

void OriginalMovie::remember(std::string_view text, size_t movieElement, std::span<const TagText> tags) {
    _wholeText = keyOf(text.substr(movieElement));
    for (const TagText& tag : tags) {
        if (hasFontCodes(tag.tag->type) && !tag.tag->isUnknown())
            _fonts.push_back(keyOf(text.substr(tag.start, tag.end - tag.start)));
        if (!tag.tag->source.empty())
            _records[keyOf(text.substr(tag.start, tag.end - tag.start))].push_back(
                {tag.start, tag.end, tag.tag->source});
    }
    for (auto& [key, entries] : _records)
        std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.start < b.start; });
}

bool OriginalMovie::isWholeText(std::string_view movieElement) const { return keyOf(movieElement) == _wholeText; }

bool OriginalMovie::hasFonts(std::span<const std::string_view> elements) const {
    return std::equal(elements.begin(), elements.end(), _fonts.begin(), _fonts.end(),
                      [](std::string_view element, const TextKey& key) { return keyOf(element) == key; });
}

SwfBytes OriginalMovie::Search::find(std::string_view elementText) {
    _lastIsFinal = false;
    const auto found = _original._records.find(keyOf(elementText));
    if (found == _original._records.end())
        return {};
    const std::vector<Entry>& entries = found->second;
    auto entry = std::lower_bound(entries.begin(), entries.end(), _next,
                                  [](const Entry& e, uint64_t order) { return e.start < order; });
    if (entry == entries.end())
        entry = entries.begin();
    _next = entry->end;
    const SwfBytes& record = entry->record;
    const SwfBytes& whole = _original._wholeFile;
    _lastIsFinal = record.data() + record.size() + _original._source.tail->size() == whole.data() + whole.size();
    return record;
}

} // namespace xml2swf
