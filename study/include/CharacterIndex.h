// The characters of a movie: which tag defines one, which use it, and what it is called.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zelk {

/// What a tag does with the character whose id it has.
enum class IdRole : uint8_t {
    defines,
    imports, ///< from another movie
    places,
    removes,
    button,  ///< shows it as a part of a button
    fills,   ///< fills with the picture
    writes,  ///< writes in the font
    plays,   ///< the sound
    details, ///< says more about it: names of fonts, sounds of buttons, frames of videos
    scripts, ///< runs a script for it
    names,   ///< exports it, or gives it a class or a name
    frees
};

/// "placed", "fill of a shape" and the like.
std::string_view roleText(IdRole role);
constexpr bool isDefinition(IdRole role) { return role == IdRole::defines || role == IdRole::imports; }

/// An id where it stands in a text.
struct CharacterId {
    uint16_t id;
    IdRole role;
    std::string_view element; ///< that has it, or would have it in place of the bytes: "ButtonRecord"
    bool isInBytes;           ///< the id is part of a tag's bytes that the text has as base64
    uint32_t tag;             ///< tags are numbered in the order in which they start, as in TagIndex
    uint32_t tagStart;        ///< byte of its "<"
    uint32_t list;            ///< the number of the sprite that the tag stands in; noTag in the movie's own list
    uint32_t start, end;      ///< of the attribute's value between its quotes; of the element, for one in bytes
};

struct CharacterName {
    /// The first of them says most; `text` is what a static text says.
    enum class Kind : uint8_t { exported, ofClass, given, imported, font, text, instance };
    Kind kind;
    std::string text;
    bool operator==(const CharacterName&) const = default;
};

class CharacterIndex {
public:
    static constexpr uint32_t noTag = UINT32_MAX;
    static constexpr uint16_t noBitmap = UINT16_MAX; ///< the id of a fill with no picture

    CharacterIndex() = default;
    /// [any thread] Goes over the whole text, which is in either form. Without any for a text that is no movie. Throws
    /// XmlSyntaxError.
    explicit CharacterIndex(std::string_view text);

    /// All ids in the order of the text.
    const std::vector<CharacterId>& all() const { return _ids; }
    /// Where one of them stands, in the order of the text.
    std::vector<CharacterId> of(uint16_t id) const;
    /// The first definition; null when there is none.
    const CharacterId* definition(uint16_t id) const;
    /// The id in whose value or between whose quotes a place is.
    const CharacterId* at(size_t offset) const;
    /// The id that a tag is about: the first that it has. Null for a tag without.
    const CharacterId* ofTag(uint32_t tag) const;
    /// The same of the tag whose "<" is there.
    const CharacterId* ofTagAt(size_t start) const;

    /// Different ones, those that say most first.
    const std::vector<CharacterName>& names(uint16_t id) const;
    /// The ids that have a fitting name, in no order.
    std::vector<uint16_t> named(const std::function<bool(std::string_view name)>& fits) const;
    /// The first of them; empty for none.
    std::string_view name(uint16_t id) const;
    /// "37 (ball)"; "37" without a name.
    std::string shown(uint16_t id) const;
    /// That nothing has; none when all are taken.
    std::optional<uint16_t> freeId() const;

private:
    friend class CharacterReader;
    void finish();
    std::span<const uint32_t> indicesOf(uint16_t id) const; // in _ids

    std::vector<CharacterId> _ids;
    std::vector<uint32_t> _byId; // indices into _ids, by id and place
    std::unordered_map<uint16_t, std::vector<CharacterName>> _names;
};

} // namespace zelk
