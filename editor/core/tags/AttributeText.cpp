#include "AttributeText.h"

namespace zelk {

namespace {

constexpr std::string_view blanks = " \t\r\n";

struct ValuePlace {
    size_t start, end;
};

std::optional<ValuePlace> findValue(std::string_view tag, std::string_view name) {
    size_t at = tag.find_first_of(" \t\r\n/>");
    while ((at = tag.find_first_not_of(blanks, at)) < tag.size() && tag[at] != '/' && tag[at] != '>') {
        const size_t nameEnd = tag.find_first_of(" \t\r\n=", at);
        const size_t quote = tag.find_first_of("\"'", nameEnd);
        const size_t end = quote == tag.npos ? tag.npos : tag.find(tag[quote], quote + 1);
        if (end == tag.npos)
            break;
        if (tag.substr(at, nameEnd - at) == name)
            return ValuePlace{quote + 1, end};
        at = end + 1;
    }
    return {};
}

} // namespace

std::optional<std::string> attributeText(std::string_view startTag, std::string_view name) {
    const auto value = findValue(startTag, name);
    return value ? std::optional(std::string(startTag.substr(value->start, value->end - value->start))) : std::nullopt;
}

void setAttributeText(std::string& startTag, std::string_view name, std::string_view value) {
    if (const auto place = findValue(startTag, name)) {
        startTag.replace(place->start, place->end - place->start, escapedAttribute(value));
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
