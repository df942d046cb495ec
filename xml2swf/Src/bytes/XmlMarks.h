// Finding the tags of a text, many at a time.
#pragma once

#include <cstddef>
#include <cstdint>

#include "XmlWide.h"

namespace xml2swf {

/// Where tags start and end in a stretch of text: the "<" and ">" that stand in no double quotes. Only a guess about
/// what stands between them: quotes may have no meaning there.
class XmlMarks {
public:
    static constexpr size_t most = 4096; ///< bytes of a stretch

    explicit XmlMarks(bool wide = canBeWide()) : _isWide(wide) {}

    /// Goes over the text from a place outside of tags on, up to `stop` and `most` bytes. Ends earlier where quotes
    /// could be misread (single ones, "<" in double ones), at a NUL, and before the last bytes of the text. Gives the
    /// place where it ended.
    const char* find(const char* at, const char* stop, const char* textEnd);
    /// Offsets from where find began, in order.
    const uint32_t* begin() const { return _offsets; }
    const uint32_t* end() const { return _offsets + _count; }

private:
    const bool _isWide;
    size_t _count = 0;
    uint32_t _offsets[most + 8];
};

} // namespace xml2swf
