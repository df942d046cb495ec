// The text that a conversion writes.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "XmlNumbers.h"

namespace xml2swf {

/// The text that stands before the Movie element in every XML file.
constexpr std::string_view xmlDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n";

/// A growing text. Short pieces are put together where they stand in the end: copied from the stack, each would have
/// to wait for its own bytes.
class XmlText {
public:
    XmlText() = default;
    explicit XmlText(std::string_view start) { append(start); }
    XmlText(XmlText&& other) noexcept : _chars(std::move(other._chars)), _size(std::exchange(other._size, 0)) {}
    XmlText& operator=(XmlText&& other) noexcept {
        _chars = std::move(other._chars);
        _size = std::exchange(other._size, 0);
        return *this;
    }

    size_t size() const { return _size; }
    std::string_view view() const { return {_chars.data(), _size}; }

    /// A place behind the text for so many characters, which belong to it once `finish` says where they end.
    char* room(size_t most) {
        if (_chars.size() - _size < most) [[unlikely]]
            makeRoom(most);
        return _chars.data() + _size;
    }
    /// The text ends here, in the room asked for last.
    void finish(const char* end) { _size = static_cast<size_t>(end - _chars.data()); }

    XmlText& append(std::string_view text);
    XmlText& append(size_t count, char c);
    void insert(size_t at, std::string_view text);
    /// Forgets what stands behind a place; its memory is kept.
    void cut(size_t size) { _size = size; }
    /// Memory for the whole text, if there is so much. What is not used of it is never touched.
    void reserve(size_t size);
    /// The text, which is empty then.
    std::string take();

private:
    void makeRoom(size_t most);

    std::string _chars; // with some room behind the text
    size_t _size = 0;
};

/// Short pieces put one behind the other into the room of a text, which has to be big enough.
class XmlLine {
public:
    /// Behind the text.
    explicit XmlLine(char* at) : _at(at) {}
    const char* end() const { return _at; }

    void put(char c) { *_at++ = c; }
    void put(std::string_view text) {
        copyShort(text.data(), text.size());
        _at += text.size();
    }
    void put(int32_t value) { _at = writeInteger(_at, value); }
    /// A line feed and 4 blanks per depth; takes `indentRoom` at least.
    void indent(uint32_t depth) {
        put('\n');
        const size_t blanks = 4 * size_t(depth);
        std::memset(_at, ' ', indentRoom - 1); // of a fixed length: no call
        if (blanks > indentRoom - 1)
            std::memset(_at, ' ', blanks);
        _at += blanks;
    }
    static constexpr size_t indentRoom = 33;

private:
    // Names and numbers are a few bytes long: two copies that may overlap take less time than a call.
    void copyShort(const char* from, size_t n) {
        auto twice = [&]<class Word>(Word) {
            Word first, last;
            std::memcpy(&first, from, sizeof first);
            std::memcpy(&last, from + n - sizeof last, sizeof last);
            std::memcpy(_at, &first, sizeof first);
            std::memcpy(_at + n - sizeof last, &last, sizeof last);
        };
        if (n > 16)
            std::memcpy(_at, from, n);
        else if (n >= 8)
            twice(uint64_t());
        else if (n >= 4)
            twice(uint32_t());
        else if (n >= 2)
            twice(uint16_t());
        else if (n == 1)
            *_at = *from;
    }

    char* _at;
};

} // namespace xml2swf
