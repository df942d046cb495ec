// The texts of a movie that people read, as a list, and other texts in their places.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "SwfMovie.h"

namespace zelk {

enum class TextKind : uint8_t {
    staticText, ///< glyphs of a font
    field,      ///< what a text field shows at first
    script,     ///< a string that a script pushes
    frameLabel,
    instanceName,
    exportName,
    className,
    variableName ///< of a text field
};

/// "static text" and so on.
std::string_view kindText(TextKind kind);

/// How wide a line may become, in pixels of the text's own coordinates.
struct TextRoom {
    double taken = 0, most = 0;
};

struct MovieText {
    /// Says which text it is by ids, frames and names, so that it stays the same when other tags come or go.
    std::string key;
    std::string text; ///< UTF-8, never empty; lines end with \n
    TextKind kind = TextKind::staticText;
    std::vector<uint32_t> tagPath; ///< of the tag: indices in the movie and in sprites
    uint32_t slot = 0;             ///< which text of its tag
    uint16_t tagCode = 0;
    std::optional<uint16_t> id;     ///< of the character
    std::optional<uint16_t> sprite; ///< whose frames `frame` counts; none for the movie's
    uint32_t frame = 1;             ///< in which the tag stands
    std::optional<uint16_t> font;
    std::string fontName;
    std::string place;                 ///< where the character is first seen: "frame 3, depth 5"; may be empty
    std::optional<uint32_t> maxLength; ///< in characters
    std::optional<TextRoom> room;
};

struct TextChoice {
    bool scripts = false, names = false; ///< beside static texts and text fields
};

struct TextProblem {
    std::string key, reason;
};

struct MovieTexts {
    std::vector<MovieText> texts;        ///< in the order of the movie
    std::vector<TextProblem> unreadable; ///< texts that are there, but cannot be read
};

/// The texts of a movie that was read in the full form with keepRaw.
MovieTexts findTexts(const libswf::SwfMovieSafe& movie, TextChoice choice);

/// A text for a key. With `original` only if that is what stands there.
struct NewText {
    std::string key;
    std::optional<std::string> original;
    std::string text; ///< UTF-8
};

struct TextChangeOptions {
    bool widen = false; ///< let static text become wider than its bounds, which grow with it
};

struct ChangedTexts {
    libswf::SwfMovie movie;            ///< tags without a change keep their bytes
    uint32_t changed = 0;              ///< texts that are other ones now
    std::vector<TextProblem> problems; ///< of the others: they stay as they were
};

/// The movie with other texts. It was read in the full form with keepRaw, and its changed tags are changed in it, too.
ChangedTexts changeTexts(libswf::SwfMovieSafe& movie, std::span<const NewText> changes, TextChangeOptions options = {});

} // namespace zelk
