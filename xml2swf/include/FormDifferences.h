// How much of a movie the classic form shows otherwise than players read it.
#pragma once

#include <cstdint>

namespace xml2swf {

/// Counted where each layout differs, while the movie is written as XML in the classic form.
struct FormDifferences {
    uint64_t values = 0; ///< attributes with another value, and actions that stand as UnknownAction
    uint64_t tags = 0;   ///< that stand as Unknown, and that the full form shows

    FormDifferences& operator+=(const FormDifferences& other) {
        values += other.values;
        tags += other.tags;
        return *this;
    }
    bool operator==(const FormDifferences&) const = default;
};

} // namespace xml2swf
