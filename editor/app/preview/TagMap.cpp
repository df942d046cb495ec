#include "TagMap.h"

#include <algorithm>
#include <charconv>
#include <exception>
#include <string>

#include "XmlTagSpans.h"

namespace zelk {

using namespace xml2swf;

namespace {

constexpr std::string_view space = " \t\r\n";

std::string_view nameOf(std::string_view element) {
    const size_t end = std::min(element.find_first_of(" \t\r\n/>"), element.size());
    return element.substr(1, end - 1);
}

// Other tags whose names begin with "Define" say more about a character that has its own tag.
bool definesCharacter(std::string_view name) {
    constexpr std::string_view others[] = {
        "DefineButtonCxform", "DefineButtonSound", "DefineFontAlignZones", "DefineFontInfo",
        "DefineFontInfo2",    "DefineFontName",    "DefineScalingGrid",    "DefineSceneAndFrameLabelData"};
    return name.starts_with("Define") && std::ranges::find(others, name) == std::end(others);
}

// The value of the first attribute whose name ends in "Id". The element is well-formed.
std::optional<uint16_t> idOf(std::string_view element) {
    for (size_t at = element.find_first_of(space); at != element.npos;) {
        const size_t name = element.find_first_not_of(space, at);
        const size_t nameEnd = element.find_first_of(" \t\r\n=/>", name);
        const size_t quote = element.find_first_of("\"'>", nameEnd);
        if (nameEnd == name || quote == element.npos || element[quote] == '>')
            return std::nullopt;
        const size_t end = element.find(element[quote], quote + 1);
        if (end == element.npos)
            return std::nullopt;
        at = end + 1;
        if (!element.substr(name, nameEnd - name).ends_with("Id"))
            continue;
        uint16_t id = 0;
        const auto parsed = std::from_chars(element.data() + quote + 1, element.data() + end, id);
        return parsed.ec == std::errc() ? std::optional(id) : std::nullopt;
    }
    return std::nullopt;
}

} // namespace

TagMap::TagMap(std::string_view text) {
    try {
        const auto spans = findTagSpans(text).spans;
        if (spans.empty())
            return;
        _layout = movieLayout(text.substr(0, spans.front().start));
        _tags.reserve(spans.size());
        for (const ElementSpan& span : spans)
            _tags.push_back({span.start, span.end});
        addDefinitions(text);
    } catch (const std::exception&) { // While one types, a text often is not well-formed.
    }
}

void TagMap::addDefinitions(std::string_view text) {
    for (const TagRange& tag : _tags) {
        const std::string_view element = text.substr(tag.start, tag.end - tag.start);
        const std::string_view name = nameOf(element);
        if (name == "JPEGTables" && !_jpegTables)
            _jpegTables = tag;
        if (!definesCharacter(name))
            continue;
        if (const auto id = idOf(element))
            _definitions.try_emplace(*id, tag);
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
    const auto found = _definitions.find(characterId);
    return found == _definitions.end() ? std::nullopt : std::optional(found->second);
}

} // namespace zelk
