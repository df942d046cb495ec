#include "IdAttributes.h"

#include <algorithm>
#include <unordered_map>

#include "SwfTagCodes.h"

namespace zelk {

namespace {

using enum IdRole;
using Kind = CharacterName::Kind;

// Rows of one element stand together. "Asset" is in two tables: those of tags that import have another role.
constexpr IdAttribute rows[] = {
    {"DefineShape", "ShapeId", defines},
    {"DefineShape2", "ShapeId", defines},
    {"DefineShape3", "ShapeId", defines},
    {"DefineShape4", "ShapeId", defines},
    {"DefineMorphShape", "ShapeId", defines},
    {"DefineMorphShape2", "ShapeId", defines},
    {"BitmapFillStyle", "BitmapId", fills},
    {"DefineBits", "CharacterId", defines},
    {"DefineBitsJPEG2", "CharacterId", defines},
    {"DefineBitsJPEG3", "CharacterId", defines},
    {"DefineBitsJPEG4", "CharacterId", defines},
    {"DefineBitsLossless", "CharacterId", defines},
    {"DefineBitsLossless2", "CharacterId", defines},
    {"DefineFont", "FontId", defines},
    {"DefineFont2", "FontId", defines, false, "FontName", Kind::font},
    {"DefineFont3", "FontId", defines, false, "FontName", Kind::font},
    {"DefineFont4", "FontId", defines, false, "FontName", Kind::font},
    {"DefineFontInfo", "FontId", details, false, "FontName", Kind::font},
    {"DefineFontInfo2", "FontId", details, false, "FontName", Kind::font},
    {"DefineFontName", "FontId", details, false, "Name", Kind::font},
    {"DefineFontAlignZones", "FontId", details},
    {"DefineText", "Id", defines},
    {"DefineText2", "Id", defines},
    {"TextRecord", "FontId", writes},
    {"DefineEditText", "Id", defines},
    {"DefineEditText", "FontId", writes},
    {"CSMTextSettings", "TextId", details},
    {"DefineButton", "ButtonId", defines},
    {"DefineButton2", "ButtonId", defines},
    {"ButtonRecord", "CharacterId", button},
    {"DefineButtonCxform", "ButtonId", details},
    {"DefineButtonSound", "ButtonId", details},
    {"DefineButtonSound", "SoundIdRollOut", plays, true},
    {"DefineButtonSound", "SoundIdRollOver", plays, true},
    {"DefineButtonSound", "SoundIdPress", plays, true},
    {"DefineButtonSound", "SoundIdRelease", plays, true},
    {"DefineSprite", "Id", defines},
    {"DefineSound", "SoundId", defines},
    {"StartSound", "SoundId", plays},
    {"DefineVideoStream", "CharacterId", defines},
    {"VideoFrame", "StreamId", details},
    {"DefineBinaryData", "CharacterId", defines},
    {"PlaceObject", "CharacterId", places},
    {"PlaceObject2", "CharacterId", places, false, "Name", Kind::instance},
    {"PlaceObject3", "CharacterId", places, false, "Name", Kind::instance},
    {"PlaceObject4", "CharacterId", places, false, "Name", Kind::instance},
    {"RemoveObject", "Id", removes},
    {"DefineScalingGrid", "CharacterId", details},
    {"DoInitAction", "SpriteId", scripts},
    {"Asset", "Id", names, false, "Name", Kind::exported},
    {"Symbol", "Tag", names, true, "Name", Kind::ofClass}, // 0 is the movie itself
    {"NameCharacter", "CharacterId", names, false, "Name", Kind::given},
    {"FreeCharacter", "CharacterId", frees},
};

constexpr IdAttribute imported[] = {{"Asset", "Id", imports, false, "Name", Kind::imported}};

using Rows = std::unordered_map<std::string_view, std::span<const IdAttribute>>;

Rows byElement() {
    Rows result;
    for (const IdAttribute* row = std::begin(rows); row != std::end(rows);) {
        const IdAttribute* end =
            std::find_if(row, std::end(rows), [&](const IdAttribute& other) { return other.element != row->element; });
        result.emplace(row->element, std::span(row, end));
        row = end;
    }
    return result;
}

} // namespace

std::span<const IdAttribute> idAttributes(std::string_view element, std::string_view tag) {
    static const Rows all = byElement();
    if (element == "Asset" && tag.starts_with("ImportAssets"))
        return imported;
    const auto found = all.find(element);
    return found == all.end() ? std::span<const IdAttribute>() : found->second;
}

std::optional<IdRole> roleInBytes(uint16_t code) {
    using namespace libswf;
    constexpr uint16_t laterIds[] = {SwfTagCode::PlaceObject2, SwfTagCode::PlaceObject3, SwfTagCode::PlaceObject4};
    const auto found = idAttributes(tagName(code), {});
    if (found.empty() || std::ranges::find(laterIds, code) != std::end(laterIds))
        return {};
    return found.front().role;
}

std::string_view roleText(IdRole role) {
    switch (role) {
    case defines: return "defined";
    case imports: return "imported";
    case places: return "placed";
    case removes: return "removed";
    case button: return "part of a button";
    case fills: return "fill of a shape";
    case writes: return "font of a text";
    case plays: return "sound";
    case details: return "described";
    case scripts: return "script";
    case names: return "named";
    case frees: return "freed";
    }
    return {};
}

} // namespace zelk
