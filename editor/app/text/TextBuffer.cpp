#include "TextBuffer.h"

#include "Utf8.h"

namespace zelk {

void TextBuffer::decode() {
    const Utf8Char c = utf8CharAt(_bytes, _position);
    _length = c.length;
    _unitsRead = 0;
    if (c.code < 0x10000) {
        _unitCount = 1;
        _units[0] = static_cast<char16_t>(c.code);
    } else {
        _unitCount = 2;
        _units[0] = QChar::highSurrogate(c.code);
        _units[1] = QChar::lowSurrogate(c.code);
    }
}

char16_t TextBuffer::peek() {
    if (_unitsRead == _unitCount) {
        if (_position == _bytes.size())
            return 0;
        decode();
    }
    return _units[_unitsRead];
}

char16_t TextBuffer::next() {
    _last = peek();
    if (_unitsRead < _unitCount && ++_unitsRead == _unitCount)
        _position += _length;
    if (_collecting && _collected.size() < longestWord)
        _collected += _last;
    return _last;
}

void TextBuffer::collect() {
    _collecting = true;
    _collected.assign(1, _last);
}

} // namespace zelk
