#include "CharacterText.h"

#include <algorithm>

#include "ElementText.h"
#include "IdAttributes.h"
#include "XmlNumbers.h"
#include "XmlSurroundings.h"

namespace zelk {

namespace {

std::optional<uint16_t> idOf(std::string_view value) {
    const std::optional<int64_t> id = xml2swf::parseInteger(value);
    return id && *id >= 0 && *id <= UINT16_MAX ? std::optional(static_cast<uint16_t>(*id)) : std::nullopt;
}

// What may be meant by an id in this role.
bool fits(IdRole role, std::string_view attribute, std::string_view definition) {
    const auto begins = [&](std::string_view with) { return definition.starts_with(with); };
    switch (role) {
    case IdRole::fills: return begins("DefineBits");
    case IdRole::writes: return begins("DefineFont");
    case IdRole::plays: return begins("DefineSound");
    case IdRole::scripts: return begins("DefineSprite");
    case IdRole::details:
        return attribute == "FontId"     ? begins("DefineFont")
               : attribute == "ButtonId" ? begins("DefineButton")
               : attribute == "TextId"   ? begins("DefineText") || begins("DefineEditText")
               : attribute == "StreamId" ? begins("DefineVideo")
                                         : true;
    default: return true;
    }
}

} // namespace

std::optional<IdAtPlace> characterIdAt(std::string_view text, size_t position) {
    XmlPlaceKind place = placeKindAt(text, position);
    if (place.in == XmlPlaceKind::In::content) {
        const size_t next = text.find_first_not_of(" \t", position);
        if (next < text.size() && text[next] == '<')
            place = placeKindAt(text, next + 1);
    }
    if (place.element.empty() && place.in != XmlPlaceKind::In::name)
        return {};
    const auto token = tagTokenAt(text, place.open, std::min(place.open + surroundingsReach, text.size()));
    if (!token || token->kind == XmlTagToken::Kind::end)
        return {};
    const auto attributes = attributesOf(text.substr(token->open, token->end - token->open));
    std::optional<IdAtPlace> found;
    for (const IdAttribute& row : idAttributes(token->name, {})) {
        const auto attribute = std::ranges::find(attributes, row.attribute, &TagAttribute::name);
        const auto id = attribute == attributes.end() ? std::nullopt : idOf(attribute->value);
        if (!id || (row.isOptional && *id == 0))
            continue;
        const IdAtPlace here{*id, row.role};
        const auto start = static_cast<size_t>(attribute->value.data() - text.data());
        if (start <= position && position <= start + attribute->value.size())
            return here;
        if (!found || (isDefinition(found->role) && !isDefinition(row.role)))
            found = here;
    }
    return found;
}

IdProposals idsFor(const CharacterIndex& characters, std::string_view element, std::string_view attribute) {
    constexpr size_t most = 5000; // nobody looks through more
    IdProposals result;
    const auto rows = idAttributes(element, {});
    const auto row = std::ranges::find(rows, attribute, &IdAttribute::attribute);
    if (row == rows.end())
        return result;
    if (row->role == IdRole::defines) {
        if (const auto id = characters.freeId()) {
            result.ids.push_back(std::to_string(*id));
            result.notes.emplace_back("free");
        }
        return result;
    }
    std::vector<const CharacterId*> definitions;
    for (const CharacterId& id : characters.all()) {
        if (isDefinition(id.role) && fits(row->role, attribute, id.role == IdRole::imports ? "" : id.element))
            definitions.push_back(&id);
    }
    std::ranges::stable_sort(definitions, {}, [](const CharacterId* id) { return id->id; });
    for (const CharacterId* id : definitions) {
        const std::string_view name = characters.name(id->id);
        if (result.ids.size() == most)
            break;
        result.ids.push_back(std::to_string(id->id));
        result.notes.push_back(std::string(id->element) + (name.empty() ? "" : " " + std::string(name)));
    }
    return result;
}

Renaming renamedCharacter(const CharacterIndex& characters, uint16_t from, int64_t to) {
    Renaming result;
    const std::vector<CharacterId> places = characters.of(from);
    if (to < 1 || to > UINT16_MAX)
        result.refusal = "An id is a number from 1 to 65535.";
    else if (places.empty())
        result.refusal = "No tag has the id " + std::to_string(from) + ".";
    else if (to != from && !characters.of(static_cast<uint16_t>(to)).empty())
        result.refusal = "Another character has the id " + characters.shown(static_cast<uint16_t>(to)) + ".";
    else if (std::ranges::any_of(places, &CharacterId::isInBytes))
        result.refusal = "A tag that is kept as bytes has the id " + characters.shown(from) + ".";
    if (!result.refusal.empty() || to == from)
        return result;
    for (const CharacterId& place : places)
        result.changes.push_back({place.start, place.end, std::to_string(to)});
    std::ranges::sort(result.changes, {}, &TextChange::start);
    return result;
}

} // namespace zelk
