#include "Symbols.h"

#include <algorithm>

#include "CodeOutline.h"
#include "Conversion.h"
#include "ScriptText.h"
#include "XmlSurroundings.h"

namespace zelk {

using namespace xml2swf;

namespace {

// What tells tags of one kind apart, the first that there is.
constexpr std::string_view namings[] = {"Name",     "FontName", "ClassName", "CharacterId", "ShapeId",
                                        "Id",       "SoundId",  "ButtonId",  "FontId",      "TextId",
                                        "SpriteId", "StreamId", "URL",       "Depth"};

class SymbolReader {
public:
    SymbolReader(std::string_view text, std::vector<Symbol>& symbols) : _text(text), _symbols(symbols) {}

    void readTag(size_t start, size_t end) {
        const auto tag = tagTokenAt(_text, start, end);
        if (!tag)
            return;
        const std::string name = nameOf(*tag);
        if (tag->name == "FrameLabel")
            add(Symbol::Kind::label, start, name, "FrameLabel");
        else if (!name.empty() || tag->name.starts_with("DoA"))
            add(Symbol::Kind::tag, start, name.empty() ? std::string(tag->name) : std::string(tag->name) + " " + name,
                std::string(tag->name));
        if (tag->name.starts_with("DoABC"))
            readCode(start, end);
        else if (holdsScripts(tag->name))
            readFunctions(tag->end, end);
    }

private:
    void add(Symbol::Kind kind, size_t offset, std::string name, std::string where) {
        _symbols.push_back({kind, offset, std::move(name), std::move(where)});
    }

    std::string_view startTag(const XmlTagToken& tag) const { return _text.substr(tag.open, tag.end - tag.open); }

    std::string nameOf(const XmlTagToken& tag) const {
        const std::vector<TagAttribute> attributes = attributesOf(startTag(tag));
        for (std::string_view naming : namings) {
            const auto found = std::ranges::find(attributes, naming, &TagAttribute::name);
            if (found != attributes.end() && !found->value.empty())
                return naming == "Depth" ? "at " + decoded(found->value) : decoded(found->value);
        }
        return {};
    }

    void readCode(size_t start, size_t end) {
        const CodeOutline outline(_text, start, end);
        std::string type;
        for (uint32_t i = 0; i < outline.count(); ++i) {
            const auto tag = tagTokenAt(_text, outline.start(i), end);
            const std::string name = nameOf(*tag);
            if (outline.isClass(i)) {
                add(Symbol::Kind::type, tag->open, type = name, "Class");
                continue;
            }
            if (outline.parent(i) == CodeOutline::top)
                type.clear();
            add(Symbol::Kind::method, tag->open, tag->name == "Constructor" ? type : name, of(tag->name, type));
        }
    }

    static std::string of(std::string_view element, const std::string& type) {
        return std::string(element) + (type.empty() ? "" : " of " + type);
    }

    void readFunctions(size_t start, size_t end) {
        const std::string_view text = _text.substr(0, end);
        constexpr std::string_view begin = "<DefineFunction";
        for (size_t at = text.find(begin, start); at != text.npos; at = text.find(begin, at + 1)) {
            const auto tag = tagTokenAt(text, at, end);
            const std::string name = tag ? nameOf(*tag) : std::string();
            if (!name.empty())
                add(Symbol::Kind::method, at, name, std::string(tag->name));
        }
    }

    const std::string_view _text;
    std::vector<Symbol>& _symbols;
};

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool holds(std::string_view text, std::string_view word) {
    const auto same = [](char a, char b) { return lower(a) == lower(b); };
    return std::search(text.begin(), text.end(), word.begin(), word.end(), same) != text.end() || word.empty();
}

bool holdsAll(const Symbol& symbol, std::string_view filter) {
    for (size_t start = 0; start < filter.size();) {
        const size_t end = std::min(filter.find(' ', start), filter.size());
        const std::string_view word = filter.substr(start, end - start);
        if (!holds(symbol.name, word) && !holds(symbol.where, word))
            return false;
        start = end + 1;
    }
    return true;
}

bool beginsWith(std::string_view name, std::string_view filter) {
    return name.size() >= filter.size() && std::ranges::equal(name.substr(0, filter.size()), filter, {}, lower, lower);
}

} // namespace

std::vector<Symbol> symbolsOf(std::string_view text, const TagIndex& tags, size_t start, size_t end,
                              IProgressReporter* progress) {
    std::vector<Symbol> symbols;
    SymbolReader reader(text, symbols);
    for (uint32_t tag = 0; tag < tags.count(); ++tag) {
        if (progress != nullptr)
            progress->report(double(tag) / tags.count());
        if (start == end || (start <= tags.start(tag) && tags.end(tag) <= end))
            reader.readTag(tags.start(tag), tags.end(tag));
    }
    return symbols;
}

std::vector<uint32_t> matchingSymbols(const std::vector<Symbol>& symbols, std::string_view filter, size_t most) {
    std::vector<uint32_t> first, others;
    for (uint32_t i = 0; i < symbols.size() && first.size() < most; ++i) {
        if (beginsWith(symbols[i].name, filter))
            first.push_back(i);
        else if (others.size() < most && holdsAll(symbols[i], filter))
            others.push_back(i);
    }
    others.resize(std::min(others.size(), most - first.size()));
    first.insert(first.end(), others.begin(), others.end());
    return first;
}

} // namespace zelk
