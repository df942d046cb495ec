// Files that translators work on: the texts of a movie as PO (gettext), CSV and JSON.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "MovieTexts.h"

namespace zelk {

enum class TextFileKind : uint8_t { po, csv, json };

/// By the extension, whatever the case of its letters: po or pot, csv, json.
std::optional<TextFileKind> textFileKind(std::string_view fileName);

/// Every text with its key, what is known of it, and room for the translation. `movieName` is only told.
std::string writeTexts(const std::vector<MovieText>& texts, TextFileKind kind, std::string_view movieName);

/// A file that cannot be read, with its line (0 for a file of JSON).
class TextFileError : public std::runtime_error {
public:
    TextFileError(const std::string& what, size_t line_) : std::runtime_error(what), line(line_) {}
    size_t line;
};

/// The translations that a file has. Texts without one, and those of a PO that are marked as fuzzy, are left out.
std::vector<NewText> readTexts(std::string_view content, TextFileKind kind);

/// "DefineText 37, frame 3, font 5 (Arial)".
std::string tagContext(const MovieText& text);
/// "at most 20 characters", "98 of 120 px wide"; empty where there is no limit.
std::string limitText(const MovieText& text);

} // namespace zelk
