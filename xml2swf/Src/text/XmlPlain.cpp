#include "XmlPlain.h"

#include <algorithm>
#include <iterator>

#include "XmlBytes.h"

namespace xml2swf {

static std::string_view between(const char* start, const char* end) {
    return {start, static_cast<size_t>(end - start)};
}

const char* appendResolved(const char* at, const char* end, std::string& text) {
    static constexpr struct {
        std::string_view text;
        char meaning;
    } references[] = {{"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&quot;", '"'}, {"&apos;", '\''}};
    for (;;) {
        const char* stop = findFirst<QuoteOrReference>(at, end);
        text.append(at, stop);
        if (stop == end)
            return nullptr;
        if (*stop == '"')
            return stop;
        const auto* found = std::find_if(std::begin(references), std::end(references), [&](const auto& reference) {
            return between(stop, end).starts_with(reference.text);
        });
        if (found == std::end(references))
            return nullptr;
        text += found->meaning;
        at = stop + found->text.size();
    }
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

// Moves `at` to the quote that ends the value; to the end when the value is not plain.
[[gnu::noinline]] static std::string_view resolved(const char*& at, const char* end, std::string& buffer) {
    // No value is longer than its text: what is reserved for the first one is enough for all, and none of them moves.
    if (buffer.empty())
        buffer.reserve(static_cast<size_t>(end - at));
    const size_t start = buffer.size();
    const char* quote = appendResolved(at, end, buffer);
    at = quote != nullptr ? quote : end;
    return std::string_view(buffer).substr(start);
}

// `at` stands at the blank before an attribute; it moves behind the closing quote.
[[gnu::always_inline]] static inline bool readAttribute(const char*& at, const char* end,
                                                        std::vector<XmlAttribute>& attributes, std::string& buffer) {
    const char* name = at + 1;
    const char* nameEnd = findFirst<NameEnd>(name, end);
    if (nameEnd == name || end - nameEnd < 3 || nameEnd[0] != '=' || nameEnd[1] != '"')
        return false;
    const char* value = nameEnd + 2;
    at = findFirst<QuoteOrReference>(value, end);
    if (at == end)
        return false;
    if (*at == '"') [[likely]] {
        attributes.push_back({between(name, nameEnd), between(value, at)});
    } else {
        at = value;
        attributes.push_back({between(name, nameEnd), resolved(at, end, buffer)});
    }
    if (at == end)
        return false;
    ++at;
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
        if (!readAttribute(at, end, _attributes, _resolved))
            return false;
    }
    item.attributeCount = static_cast<uint32_t>(_attributes.size()) - item.firstAttribute;
    item.end = index + 1;
    if (at != end && *at == '>') {
        _at = at + 1;
        if (_readScript != nullptr && item.text == "Actions")
            readScript();
        _open.push_back(index);
        return true;
    }
    at += at != end && *at == ' ';
    _at = at + 2;
    return between(at, end).starts_with("/>");
}

// Only of tags, which stand in no other actions: how deep they nest is known.
void XmlPlainReader::readScript() {
    const std::string_view parent = _open.empty() ? std::string_view() : _items[_open.back()].text;
    if (parent != "DoAction" && parent != "DoInitAction")
        return;
    std::string_view rest = between(_at, _end);
    if (std::optional<libswf::SwfBytes> records = (*_readScript)(rest)) {
        _scripts->push_back({static_cast<uint32_t>(_items.size() - 1), std::move(*records)});
        _at = rest.data();
    }
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
