// What is wrong with a movie though it reads and compiles, and what keeps a text from compiling.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SwfWarnings.h"

namespace xml2swf {
class IProgressReporter;
}

namespace zelk {

class CharacterIndex;

struct Problem {
    enum class Severity : uint8_t {
        error,  ///< the text does not compile, or players do not show what the movie says
        warning ///< passed over: it means nothing, or less than it says
    };
    enum class Kind : uint8_t {
        wrongValue,   ///< no value of its field
        strayText,    ///< between elements
        undefined,    ///< an id that nothing defines
        definedTwice, ///< of which players keep one
        usedTooEarly, ///< before its definition
        emptyDepth,   ///< moved or removed, but nothing was ever placed there
        missingGlyph,
        missingTables, ///< of a JPEG picture
        conversion     ///< a warning of reading or compiling
    };
    static constexpr size_t nowhere = SIZE_MAX;

    Severity severity = Severity::warning;
    Kind kind = Kind::conversion;
    size_t offset = nowhere;      ///< in the text: of the "<" of the element, or of the text, that is meant
    uint32_t row = 0, column = 0; ///< of it, from 1; 0 without a place
    std::string path;             ///< of the tag: "4.2"; empty outside of tags
    std::string tag;              ///< its name, or that of the element
    std::optional<uint16_t> id;   ///< of the character concerned
    std::string reason;
    libswf::SwfWarning warning = {}; ///< of a conversion
};

/// "undefined-id" and the like, for machines.
std::string_view kindName(Problem::Kind kind);
std::string_view severityName(Problem::Severity severity);
/// One line: "row 3, column 5: tag 4.2 (PlaceObject2): ...". Without row and column where `isOfMovie`.
std::string lineOf(const Problem& problem, bool isOfMovie = false);

struct Problems {
    static constexpr size_t limit = 10000;

    std::vector<Problem> items; ///< by place; at most `limit`
    uint64_t more = 0;          ///< beyond those
    uint64_t errors = 0, warnings = 0;

    void add(Problem problem);
    void add(const libswf::SwfWarnings& conversion);
};

/// What the tags of a movie's text say that players cannot follow. Throws XmlSyntaxError.
void findMovieProblems(std::string_view text, const CharacterIndex& characters, Problems& problems);

/// What compiling a text refuses, as far as it is worth looking for more, and values that it takes for another.
/// Warnings of compiling come with it. Throws XmlSyntaxError, and what the reporter throws.
void findValueProblems(std::string_view text, Problems& problems, xml2swf::IProgressReporter* progress = nullptr);

/// [any thread] All of it, in the order of the text, with rows and columns.
Problems problemsOfText(std::string_view text, xml2swf::IProgressReporter* progress = nullptr);
/// Of a movie file that was turned into this text.
Problems problemsOfMovie(std::string_view text, const libswf::SwfWarnings& ofReading);

} // namespace zelk
