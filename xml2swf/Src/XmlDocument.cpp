#include "XmlDocument.h"

#include <cstring>

namespace xml2swf {

namespace {

// Passes over markup that is no element. Gives the position after it, or npos when it has no end.
size_t skipSpecial(std::string_view text, size_t at) {
    auto after = [&](std::string_view end, size_t from) {
        const size_t found = text.find(end, from);
        return found == text.npos ? text.npos : found + end.size();
    };
    const std::string_view rest = text.substr(at, 9);
    if (rest.starts_with("<!--"))
        return after("-->", at + 4);
    if (rest.starts_with("<![CDATA["))
        return after("]]>", at + 9);
    if (rest.starts_with("<?"))
        return after("?>", at + 2);
    return after(">", at + 2); // <!DOCTYPE, seen again by the parser
}

// Position of the ">" that ends a start tag, quoted values passed over.
size_t endOfTag(std::string_view text, size_t at) {
    for (size_t i = at; (i = text.find_first_of("\"'>", i)) != text.npos; ++i) {
        if (text[i] == '>')
            return i;
        i = text.find(text[i], i + 1);
        if (i == text.npos)
            break;
    }
    return text.npos;
}

// Notes the spans of elements that may be tags: the children of Movie and DefineSprite.
class SpanCollector {
public:
    explicit SpanCollector(std::vector<ElementSpan>* spans) : _spans(spans) {}

    void open(std::string_view text, size_t at, size_t tagEnd, bool closed) {
        if (_spans == nullptr)
            return;
        const bool isTag = !_parents.empty() && _parents.back().holdsTags;
        if (isTag)
            _spans->push_back({at, closed ? tagEnd + 1 : text.npos});
        if (!closed)
            _parents.push_back({holdsTags(text.substr(at + 1)), isTag, _spans->size() - 1});
    }
    void close(size_t tagEnd) {
        if (_spans == nullptr || _parents.empty())
            return;
        if (_parents.back().isTag)
            (*_spans)[_parents.back().span].end = tagEnd + 1;
        _parents.pop_back();
    }

private:
    struct Parent {
        bool holdsTags, isTag;
        size_t span;
    };
    static bool holdsTags(std::string_view text) {
        const std::string_view name = text.substr(0, text.find_first_of(" \t\r\n/>"));
        return name == "Movie" || name == "DefineSprite";
    }

    std::vector<ElementSpan>* _spans;
    std::vector<Parent> _parents;
};

// Refuses what the parser would recurse into too deeply. Text that is not well-formed is left to the parser.
void scanElements(std::string_view text, std::vector<ElementSpan>* spans) {
    SpanCollector collector(spans);
    uint32_t depth = 0;
    for (size_t at = 0; (at = text.find('<', at)) != text.npos;) {
        const char next = at + 1 < text.size() ? text[at + 1] : '\0';
        if (next == '!' || next == '?') {
            at = skipSpecial(text, at);
            if (at == text.npos)
                return;
            continue;
        }
        const size_t end = endOfTag(text, at + 1);
        if (end == text.npos)
            return;
        if (next == '/') {
            depth -= depth != 0;
            collector.close(end);
        } else {
            const bool closed = text[end - 1] == '/';
            if (!closed && ++depth > XmlDocument::maxDepth)
                throw XmlSyntaxError("elements nested more than 1000 deep", at);
            collector.open(text, at, end, closed);
        }
        at = end + 1;
    }
}

} // namespace

XmlDocument::XmlDocument(std::string_view text, std::vector<ElementSpan>* spans) {
    const void* nul = text.empty() ? nullptr : std::memchr(text.data(), 0, text.size());
    if (nul != nullptr) // the parser would take it for the end
        throw XmlSyntaxError("unexpected end of data", static_cast<size_t>(static_cast<const char*>(nul) - text.data()));
    scanElements(text, spans);
    _copy.reserve(text.size() + 1);
    _copy.assign(text.begin(), text.end());
    _copy.push_back('\0');
    _document = std::make_unique<rapidxml::xml_document<char>>();
    try {
        _document->parse<rapidxml::parse_full>(_copy.data());
    } catch (const rapidxml::parse_error& error) {
        throw XmlSyntaxError(error.what(), static_cast<size_t>(error.where<char>() - _copy.data()));
    }
}

RawNode* XmlDocument::root(const char* name) const { return _document->first_node(name); }

} // namespace xml2swf
