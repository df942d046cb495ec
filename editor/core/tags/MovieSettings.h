// What the Movie element says of a movie as a whole, read from a document's text and changed in it.
#pragma once

#include <string>
#include <string_view>

#include "EditableText.h"

namespace zelk {

/// As a user types it: nothing is checked. What the text does not say has the value that compiling gives it.
struct MovieSettings {
    std::string version, width, height, frameRate; ///< width and height in pixels
    bool isCompressed = true;
    bool fullForm = false; ///< anything but "full" is shown as the classic form
    bool operator==(const MovieSettings&) const = default;
};

/// "[ SWF version: 7 Width: 550 Height: 400 Frame rate: 12 Compressed: Yes ]".
std::string headerLine(const MovieSettings& settings);

/// Throws XmlSyntaxError, and NotMovieException for a text without a Movie element.
MovieSettings movieSettings(std::string_view text);

/// All but the form, which more than the Movie element depends on. Changes the attributes whose values are not those of
/// the settings and leaves everything else as it stands. A stage that the text gives in twips keeps its origin. Throws
/// like movieSettings, and for a value that does not compile MovieAttributeError or XmlValueError, whose place means
/// nothing.
TextChange changeMovieSettings(std::string_view text, const MovieSettings& settings);

} // namespace zelk
