#include "XmlErrors.h"

namespace xml2swf {

void XmlPlace::locate(std::string_view text) {
    const size_t end = std::min(offset, text.size());
    size_t lineStart = 0;
    row = 1;
    for (size_t i = 0; i < end; ++i) {
        const bool lineEnd = text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n'));
        if (!lineEnd)
            continue;
        ++row;
        lineStart = i + 1;
    }
    column = 1;
    for (size_t i = lineStart; i < end; ++i)
        column += (static_cast<uint8_t>(text[i]) & 0xC0) != 0x80; // continuation bytes belong to the character before
}

XmlValueError::XmlValueError(std::string_view element_, std::string_view attribute_, std::string_view value_,
                             size_t offset)
    : element(element_), attribute(attribute_), value(value_) {
    place.offset = offset;
}

std::string XmlValueError::description() const {
    return element + ": attribute " + attribute + ": \"" + value + "\" is not a value that fits";
}

MovieAttributeError::MovieAttributeError(std::string_view attribute_, size_t offset)
    : std::runtime_error("Incorrect value of attribute " + std::string(attribute_)), attribute(attribute_) {
    place.offset = offset;
}

} // namespace xml2swf
