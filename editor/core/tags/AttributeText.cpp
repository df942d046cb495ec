#include "AttributeText.h"

#include "TagText.h"

namespace zelk {

static constexpr std::string_view blanks = " \t\r\n";

std::optional<std::string> attributeText(std::string_view startTag, std::string_view name) {
    const auto attribute = attributeOf(startTag, name);
    return attribute ? std::optional(std::string(attribute->value)) : std::nullopt;
}

void setAttributeText(std::string& startTag, std::string_view name, std::string_view value) {
    if (const auto attribute = attributeOf(startTag, name)) {
        const auto start = static_cast<size_t>(attribute->value.data() - startTag.data());
        startTag.replace(start, attribute->value.size(), escapedAttribute(value));
        return;
    }
    size_t end = startTag.size() - 1;
    end -= startTag[end - 1] == '/' ? 1 : 0;
    end = startTag.find_last_not_of(blanks, end - 1) + 1;
    startTag.insert(end, " " + std::string(name) + "=\"" + escapedAttribute(value) + "\"");
}

std::string escapedAttribute(std::string_view value) {
    std::string result;
    for (char c : value) {
        switch (c) {
        case '<': result += "&lt;"; break;
        case '&': result += "&amp;"; break;
        case '"': result += "&quot;"; break;
        case '\'': result += "&apos;"; break;
        default: result += c;
        }
    }
    return result;
}

} // namespace zelk
