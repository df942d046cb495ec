#include "XmlText.h"

#include <algorithm>
#include <new>
#include <utility>

#include "SwfUtils.h"

namespace xml2swf {

XmlText& XmlText::append(std::string_view text) {
    constexpr size_t longText = 4096; // worth no room of zeros first
    if (text.size() >= longText) {
        _chars.resize(_size);
        _chars.append(text);
        _size = _chars.size();
    } else if (!text.empty()) {
        char* place = room(text.size());
        std::memcpy(place, text.data(), text.size());
        finish(place + text.size());
    }
    return *this;
}

XmlText& XmlText::append(size_t count, char c) {
    char* place = room(count);
    std::memset(place, c, count);
    finish(place + count);
    return *this;
}

void XmlText::insert(size_t at, std::string_view text) {
    _chars.resize(_size);
    _chars.insert(at, text);
    _size = _chars.size();
}

void XmlText::reserve(size_t size) {
    try {
        _chars.reserve(size);
        libswf::adviseBigPages(_chars.data(), _chars.capacity());
    } catch (const std::bad_alloc&) {
        // It grows as it must.
    }
}

std::string XmlText::take() {
    _chars.resize(std::exchange(_size, 0));
    return std::move(_chars);
}

void XmlText::makeRoom(size_t most) {
    constexpr size_t least = 1024, usual = 64 * 1024; // what is cleared should still be near when it is written
    _chars.resize(_size + std::max(most, std::clamp(_size, least, usual)));
}

} // namespace xml2swf
