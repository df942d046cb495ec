// Comparison of two movies, tag by tag.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "SwfMovie.h"

namespace xml2swf {

/// A field whose values differ. A value is none where the field is missing on that side. Values are cut to the part
/// around the first difference when they are long.
struct FieldDifference {
    std::string path; ///< "PlaceObject2/Matrix/Translate/@TranslateX"; "Name[2]" is the second child of that name
    std::optional<std::string> a, b;
};

enum class TagRelation : uint8_t {
    identical,   ///< the bodies have the same bytes
    sameMeaning, ///< the XML is the same, the bytes are not (wider bit fields and the like)
    different,
    onlyInA,
    onlyInB
};
constexpr size_t tagRelations = 5;

/// "same meaning" and so on.
const char* relationText(TagRelation relation);

/// One tag of both movies, or one that only one of them has.
struct TagComparison {
    TagRelation relation = TagRelation::identical;
    uint16_t code = 0;
    std::string pathA, pathB;             ///< "4.2" for the third tag in the sprite at 4; empty where it is missing
    uint32_t sizeA = 0, sizeB = 0;        ///< of the bodies, in bytes
    std::optional<FieldDifference> field; ///< the first that differs; set for `different`
};

struct MovieComparison {
    std::vector<FieldDifference> header; ///< and what follows the last tag
    /// In the order of the movies; the tags of a sprite that both have follow the sprite's entry.
    std::vector<TagComparison> tags;

    std::array<uint64_t, tagRelations> counts() const;
    /// Every tag is identical or means the same, and so does the header.
    bool same() const;
};

/// Compares movies that were read with keepRaw. One tag more or less on one side does not make the others differ.
/// Takes time and memory in proportion to the XML of both.
MovieComparison compareMovies(libswf::SwfMovieSafe& a, libswf::SwfMovieSafe& b);

} // namespace xml2swf
