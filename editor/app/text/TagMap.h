// Where the tags of a text stand, and which characters they define and use.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "CharacterIndex.h"
#include "MovieLayout.h"
#include "MovieOutline.h"

namespace zelk {

/// A range of bytes: from an element's "<" to behind its last ">".
struct TagRange {
    size_t start = 0, end = 0;
};

class TagMap {
public:
    TagMap() = default;
    /// [any thread] Goes over the whole text. Empty when it is not well-formed or no movie.
    explicit TagMap(std::string_view text);

    /// The innermost tag around the caret; in front of a tag in its line, that one. The text is the one the map is of.
    std::optional<TagRange> at(std::string_view text, size_t caret) const;
    /// The first tag that defines a character.
    std::optional<TagRange> definition(uint16_t characterId) const;
    /// The tags that say, apart from its definition, what the glyphs of a font stand for.
    std::vector<TagRange> fontInfos(uint16_t fontId) const;
    std::optional<TagRange> jpegTables() const { return _jpegTables; }
    const CharacterIndex& characters() const { return _characters; }
    const MovieOutline& outline() const { return _outline; }
    /// Of the movie.
    MovieLayout layout() const { return _layout; }

private:
    std::optional<TagRange> startingAt(size_t start) const;

    std::vector<TagRange> _tags;
    CharacterIndex _characters;
    MovieOutline _outline;
    std::optional<TagRange> _jpegTables;
    MovieLayout _layout;
};

} // namespace zelk
