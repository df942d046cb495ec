#include "XmlErrors.h"

namespace xml2swf {

// Moves a place on to an offset.
static void walk(std::string_view text, XmlPlace& place, size_t end) {
    for (size_t& i = place.offset; i < end; ++i) {
        const bool lineEnd = text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n'));
        if (lineEnd) {
            ++place.row;
            place.column = 1;
        } else {
            place.column += (static_cast<uint8_t>(text[i]) & 0xC0) != 0x80; // the rest belongs to the character before
        }
    }
}

void XmlPlace::locate(std::string_view text) {
    XmlPlace place{0, 1, 1};
    walk(text, place, std::min(offset, text.size()));
    row = place.row;
    column = place.column;
}

XmlPlace XmlPlaces::at(size_t offset) {
    constexpr size_t step = 4096;
    if (_stops.empty()) {
        _stops.push_back({0, 1, 1});
        for (size_t next = step; next < _text.size(); next += step) {
            _stops.push_back(_stops.back());
            walk(_text, _stops.back(), next);
        }
    }
    offset = std::min(offset, _text.size());
    XmlPlace place = _stops[std::min(offset / step, _stops.size() - 1)];
    walk(_text, place, offset);
    return place;
}

XmlValueError::XmlValueError(std::string_view element_, std::string_view attribute_, std::string reason_, size_t offset)
    : element(element_), attribute(attribute_), reason(std::move(reason_)) {
    place.offset = offset;
}

XmlValueError::XmlValueError(std::string_view element_, std::string reason_, size_t offset)
    : XmlValueError(element_, {}, std::move(reason_), offset) {
    isElement = true;
}

std::string XmlValueError::description() const {
    if (isElement)
        return element + ": " + reason;
    const std::string what = attribute.empty() ? "text" : "attribute " + attribute;
    return element + ": " + what + ": " + reason;
}

MovieAttributeError::MovieAttributeError(std::string_view attribute_, std::string fitting_, size_t offset)
    : std::runtime_error("Incorrect value of attribute " + std::string(attribute_)), attribute(attribute_),
      fitting(std::move(fitting_)) {
    place.offset = offset;
}

} // namespace xml2swf
