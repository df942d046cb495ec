// Bytes in UTF-8 as UTF-16 units. A byte that is not part of a character counts as one U+FFFD.
#pragma once

#include <string>
#include <string_view>

#include "ITextBuffer.h"

namespace zelk {

class TextBuffer : public ITextBuffer {
public:
    /// The bytes have to live as long as the buffer.
    explicit TextBuffer(std::string_view bytes) : _bytes(bytes) {}

    char16_t next() override;
    char16_t peek() override;
    void collect() override;
    std::u16string_view collected() const override { return _collected; }
    size_t position() const override { return _position; }

private:
    void decode(); // the character at _position into _units

    static constexpr size_t longestWord = 64;
    std::string_view _bytes;
    size_t _position = 0;
    char16_t _units[2] = {};
    unsigned _unitCount = 0, _unitsRead = 0; // of the character at _position
    unsigned _length = 0;                    // of that character in bytes
    char16_t _last = 0;
    bool _collecting = false;
    std::u16string _collected;
};

} // namespace zelk
