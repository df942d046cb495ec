// What the layout of a movie's tags depends on besides the tags: its version and its form.
#pragma once

#include <cstdint>
#include <string_view>

namespace zelk {

struct MovieLayout {
    uint8_t version;
    bool fullForm;

    MovieLayout(uint8_t version = 7, bool fullForm = false) : version(version), fullForm(fullForm) {}
    bool operator==(const MovieLayout&) const = default;
};

/// What a text's Movie element says. `untilFirstTag` is the text up to the first tag, without the end of the Movie
/// element. Throws as xmlToSwf does.
MovieLayout movieLayout(std::string_view untilFirstTag);

/// The start tag of a text's Movie element as far as its beginning tells; empty when no such element begins there.
std::string_view movieTagAtStart(std::string_view text);
/// The same as far as the beginning of a text tells, for one that is being typed: nothing else of it is looked at, and
/// nothing has to be right.
MovieLayout layoutAtStart(std::string_view text);

} // namespace zelk
