// One tag apart from its movie, as XML and compiled.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "FontCharacters.h"
#include "MovieLayout.h"
#include "SwfTag.h"
#include "SwfWarnings.h"

namespace zelk {

/// Compiles one element as a child of a Movie element that says this. Null for an element that is no tag. Throws
/// XmlException and the errors of xmlToSwf, with places in `element`; warnings, which may be null, have them too.
/// `fonts`, which may be null, are those of the movie, for a text (fontsOf).
std::shared_ptr<libswf::SwfTag> compileTag(std::string_view element, MovieLayout layout, libswf::SwfWarnings* warnings,
                                           const xml2swf::FontTables* fonts = nullptr);

/// The element of one tag as it stands among a Movie element's children, from its "<" to behind its last ">". A tag
/// that XML cannot express becomes Unknown.
std::string tagElement(const std::shared_ptr<libswf::SwfTag>& tag, MovieLayout layout,
                       const xml2swf::FontTables* fonts = nullptr);

/// An element of a text of this layout as it stands in the other form, through its bytes. The element itself where it
/// is no tag. Throws as compileTag does, and SwfException.
std::string tagInForm(std::string_view element, MovieLayout from, bool fullForm,
                      const xml2swf::FontTables* fonts = nullptr);

} // namespace zelk
