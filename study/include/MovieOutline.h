// A movie's tags sorted by what they are, with the frames of sprites and the classes of code.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelk {

enum class TagKind : uint8_t { shape, sprite, font, text, picture, sound, button, script, other };
constexpr size_t tagKinds = 9;

/// Of a tag's element.
TagKind kindOfTag(std::string_view element);

/// A frame of a sprite or a class of a block of code.
struct OutlinePart {
    uint32_t tag;    ///< number of the sprite or block
    uint32_t offset; ///< byte of the "<" that it begins with
    std::string name;
};

class MovieOutline {
public:
    struct Tag {
        uint32_t start, end; ///< bytes of its element
        TagKind kind;
    };

    MovieOutline() = default;
    /// [any thread] Goes over the whole text. Empty for one that is no movie. Throws XmlSyntaxError.
    explicit MovieOutline(std::string_view text);

    /// All of them, nested ones too, in the order in which they start, as in TagIndex.
    const std::vector<Tag>& tags() const { return _tags; }
    /// Numbers of the tags of a kind: those of the movie's own list, and scripts wherever they stand.
    const std::vector<uint32_t>& ofKind(TagKind kind) const { return _kinds[static_cast<size_t>(kind)]; }
    std::span<const OutlinePart> parts(uint32_t tag) const;

private:
    friend class OutlineReader;
    std::vector<Tag> _tags;
    std::array<std::vector<uint32_t>, tagKinds> _kinds;
    std::vector<OutlinePart> _parts; // by tag
};

} // namespace zelk
