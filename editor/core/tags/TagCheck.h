// Whether a text is one tag.
#pragma once

#include "FontCharacters.h"
#include "MovieLayout.h"
#include "SwfWarnings.h"
#include "TaggedText.h"

namespace zelk {

/// Throws what keeps a text from being one tag of a movie of this layout, comments around it apart: XmlException,
/// NotMovieException, SwfException and the errors of xmlToSwf, with places in `text`; the warnings have their rows
/// there. `fonts` as for compileTag.
void checkTag(std::string_view text, MovieLayout layout, libswf::SwfWarnings& warnings,
              const xml2swf::FontTables* fonts = nullptr);

/// [any thread] Throws XmlException for a text that is not well-formed, NotMovieException for one without a Movie
/// element or with an element among its tags that is none.
void checkMovieText(std::string_view text, xml2swf::IProgressReporter* progress = nullptr);

} // namespace zelk
