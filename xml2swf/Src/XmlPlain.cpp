#include "XmlPlain.h"

#include "XmlBytes.h"

namespace xml2swf {

static std::string_view between(const char* start, const char* end) {
    return {start, static_cast<size_t>(end - start)};
}

bool XmlPlainReader::readContent(std::string_view text) {
    _at = text.data();
    _end = _at + text.size();
    while ((_at = findFirst<NotBlank>(_at, _end)) != _end) {
        if (*_at != '<' || _end - _at < 3)
            return false;
        const bool isPlain = _at[1] == '/' ? close() : _at[1] == '!' ? section() : open();
        if (!isPlain)
            return false;
    }
    return _open.empty();
}

bool XmlPlainReader::readStartTag(std::string_view tag) {
    _at = tag.data();
    _end = _at + tag.size();
    if (tag.size() < 3 || *_at != '<' || !open() || _at != _end || _open.empty())
        return false;
    _items.back().end = static_cast<uint32_t>(_items.size());
    return true;
}

// `at` stands at the blank before an attribute; it moves behind the closing quote.
[[gnu::always_inline]] static inline bool readAttribute(const char*& at, const char* end,
                                                        std::vector<XmlAttribute>& attributes) {
    const char* name = at + 1;
    const char* nameEnd = findFirst<NameEnd>(name, end);
    if (nameEnd == name || end - nameEnd < 3 || nameEnd[0] != '=' || nameEnd[1] != '"')
        return false;
    const char* value = nameEnd + 2;
    const char* valueEnd = findFirst<QuoteOrReference>(value, end);
    if (valueEnd == end || *valueEnd != '"')
        return false;
    attributes.push_back({between(name, nameEnd), between(value, valueEnd)});
    at = valueEnd + 1;
    return true;
}

bool XmlPlainReader::open() {
    const char* name = _at + 1;
    const char* end = _end;
    const char* at = findFirst<NameEnd>(name, end);
    if (at == name)
        return false;
    const auto index = static_cast<uint32_t>(_items.size());
    XmlItem& item = _items.emplace_back();
    item.text = between(name, at);
    item.firstAttribute = static_cast<uint32_t>(_attributes.size());
    while (end - at >= 3 && *at == ' ' && at[1] != '/') {
        if (!readAttribute(at, end, _attributes))
            return false;
    }
    item.attributeCount = static_cast<uint32_t>(_attributes.size()) - item.firstAttribute;
    item.end = index + 1;
    if (at != end && *at == '>') {
        _open.push_back(index);
        _at = at + 1;
        return true;
    }
    at += at != end && *at == ' ';
    _at = at + 2;
    return between(at, end).starts_with("/>");
}

bool XmlPlainReader::close() {
    if (_open.empty())
        return false;
    XmlItem& item = _items[_open.back()];
    const std::string_view rest = between(_at + 2, _end);
    const size_t length = item.text.size();
    if (rest.size() <= length || rest[length] != '>' || !rest.starts_with(item.text))
        return false;
    item.end = static_cast<uint32_t>(_items.size());
    _open.pop_back();
    _at = rest.data() + length + 1;
    return true;
}

bool XmlPlainReader::section() {
    constexpr std::string_view start = "<![CDATA[", end = "]]>";
    const std::string_view rest = between(_at, _end);
    const size_t length = rest.starts_with(start) ? rest.find(end, start.size()) : rest.npos;
    if (length == rest.npos)
        return false;
    XmlItem& item = _items.emplace_back();
    item.kind = XmlItem::Kind::cdata;
    item.text = rest.substr(start.size(), length - start.size());
    item.end = static_cast<uint32_t>(_items.size());
    _at += length + end.size();
    return true;
}

} // namespace xml2swf
