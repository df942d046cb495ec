// The texts of a document, and another text in the place of one of them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "EditableText.h"
#include "MovieTexts.h"

namespace zelk {

struct DocumentText {
    static constexpr size_t nowhere = SIZE_MAX;

    MovieText text;
    size_t start = nowhere; ///< of its tag's element
};

/// [any thread] The texts of a movie's XML in either form, those of scripts and names among them. Takes as long as
/// compiling it, and throws as xmlToSwf does; NotMovieException for a text without a Movie element.
std::vector<DocumentText> documentTexts(std::string_view document);

/// [any thread] The change that puts `text` in the place of one of them: the tag's element, written anew in the form
/// of the document. Throws std::runtime_error with the reason when it cannot be done, and as documentTexts does.
TextChange documentTextChange(std::string_view document, const MovieText& which, const std::string& text);

} // namespace zelk
