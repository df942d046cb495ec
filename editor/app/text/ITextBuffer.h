// What a highlighter reads: a text as UTF-16 units, forward only.
#pragma once

#include <cstddef>
#include <string_view>

namespace zelk {

class ITextBuffer {
public:
    virtual ~ITextBuffer() = default;
    /// Reads one unit; 0 at the end of the text, as often as asked.
    virtual char16_t next() = 0;
    /// The unit that next() will give.
    virtual char16_t peek() = 0;
    /// Begins to collect units; the one that was read last is the first of them.
    virtual void collect() = 0;
    /// What was read since, up to a word's length: longer runs are cut there, as no word that has a meaning is as long.
    virtual std::u16string_view collected() const = 0;
    /// Bytes of the text that were read.
    virtual size_t position() const = 0;
};

} // namespace zelk
