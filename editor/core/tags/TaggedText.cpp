#include "TaggedText.h"

namespace zelk {

std::shared_ptr<const TagIndex> TaggedText::sharedTags() {
    if (!isCurrent())
        setTags(std::make_shared<TagIndex>(_text.text()));
    return _index;
}

void TaggedText::setTags(std::shared_ptr<const TagIndex> tags) {
    _index = std::move(tags);
    _indexed = _text.changeCount();
}

std::string_view TaggedText::element(uint32_t tag) {
    const TagIndex& index = tags();
    return text().substr(index.start(tag), index.end(tag) - index.start(tag));
}

std::string TaggedText::movieElement() {
    const xml2swf::MovieSpan& movie = tags().movieSpan();
    std::string element(text().substr(movie.start, movie.tagEnd - movie.start));
    return element.ends_with("/>") ? element : element + "</Movie>";
}

} // namespace zelk
