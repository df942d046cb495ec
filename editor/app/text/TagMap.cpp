#include "TagMap.h"

#include <algorithm>
#include <exception>

#include "ElementText.h"
#include "FontCharacters.h"
#include "XmlTagSpans.h"

namespace zelk {

using namespace xml2swf;

TagMap::TagMap(std::string_view text) {
    try {
        const auto spans = findTagSpans(text).spans;
        if (spans.empty())
            return;
        try {
            _layout = movieLayout(text.substr(0, spans.front().start));
        } catch (const std::exception&) { // of a Movie element with a value that is wrong
            _layout = layoutAtStart(text);
        }
        _tags.reserve(spans.size());
        for (const ElementSpan& span : spans)
            _tags.push_back({span.start, span.end});
        const auto tables = std::ranges::find_if(_tags, [&](const TagRange& tag) {
            return elementName(text.substr(tag.start, tag.end - tag.start)) == "JPEGTables";
        });
        if (tables != _tags.end())
            _jpegTables = *tables;
        _characters = CharacterIndex(text);
        _outline = MovieOutline(text);
    } catch (const std::exception&) { // While one types, a text often is not well-formed.
    }
}

std::optional<TagRange> TagMap::at(std::string_view text, size_t caret) const {
    const size_t next = std::min(text.find_first_not_of(" \t", std::min(caret, text.size())), text.size());
    const size_t place = next < text.size() && text[next] == '<' ? next : caret;
    auto tag = std::ranges::upper_bound(_tags, place, {}, &TagRange::start);
    while (tag != _tags.begin()) {
        --tag;
        if (place <= tag->end)
            return *tag;
    }
    return std::nullopt;
}

std::optional<TagRange> TagMap::definition(uint16_t characterId) const {
    const CharacterId* definition = _characters.definition(characterId);
    if (definition == nullptr || definition->role != IdRole::defines)
        return std::nullopt;
    return startingAt(definition->tagStart);
}

std::vector<TagRange> TagMap::fontInfos(uint16_t fontId) const {
    std::vector<TagRange> infos;
    for (const CharacterId& id : _characters.of(fontId)) {
        const auto tag = startingAt(id.tagStart);
        if (id.role == IdRole::details && hasFontCodes(id.element) && tag)
            infos.push_back(*tag);
    }
    return infos;
}

std::optional<TagRange> TagMap::startingAt(size_t start) const {
    const auto tag = std::ranges::lower_bound(_tags, start, {}, &TagRange::start);
    return tag == _tags.end() ? std::nullopt : std::optional(*tag);
}

} // namespace zelk
