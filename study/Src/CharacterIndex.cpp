#include "CharacterIndex.h"

#include <algorithm>
#include <utility>

#include "Base64.h"
#include "Conversion.h"
#include "IdAttributes.h"
#include "MovieScan.h"
#include "SwfTagCodes.h"
#include "WrittenTexts.h"
#include "XmlErrors.h"
#include "XmlNumbers.h"

namespace zelk {

using namespace xml2swf;

class CharacterReader : public MovieVisitor {
public:
    CharacterReader(std::string_view text, std::string_view movieTag, CharacterIndex& result)
        : _text(text), _result(result), _version(versionOf(movieTag)) {}

    void tagBegins(const ScannedTag& tag, std::string_view startTag) override {
        _unknown.reset();
        _texts.tagBegins(tag, startTag);
        if (tag.name == "Unknown")
            readUnknown(tag, startTag);
        else
            element(tag, startTag, tag.start);
    }

    void tagEnds(const ScannedTag& tag, size_t end) override {
        if (_unknown)
            readBytes(tag, end);
        _unknown.reset();
    }

    void element(const ScannedTag& around, std::string_view startTag, size_t) override {
        _texts.element(startTag);
        const auto rows = idAttributes(elementName(startTag), around.name);
        if (rows.empty())
            return;
        const std::vector<TagAttribute> attributes = attributesOf(startTag);
        for (const IdAttribute& row : rows) {
            const std::string_view* value = find(attributes, row.attribute);
            if (value == nullptr)
                continue;
            const std::optional<uint16_t> id = add(around, *value, row.role, row.element, row.isOptional);
            const std::string_view* name = id && !row.name.empty() ? find(attributes, row.name) : nullptr;
            if (name != nullptr && !name->empty())
                addName(*id, {row.kind, decoded(*name)});
        }
    }

    /// At the end.
    void nameTexts() {
        _texts.tell(_version, [this](uint16_t id, std::string text) {
            addName(id, {CharacterName::Kind::text, std::move(text)});
        });
    }

private:
    static uint8_t versionOf(std::string_view movieTag) {
        constexpr int64_t otherwise = 7;
        const auto version = attributeOf(movieTag, "SwfVersion");
        return static_cast<uint8_t>(version ? parseInteger(version->value).value_or(otherwise) : otherwise);
    }

    static const std::string_view* find(const std::vector<TagAttribute>& attributes, std::string_view name) {
        const auto found = std::ranges::find(attributes, name, &TagAttribute::name);
        return found == attributes.end() ? nullptr : &found->value;
    }

    std::optional<uint16_t> add(const ScannedTag& tag, std::string_view value, IdRole role, std::string_view element,
                                bool isOptional = false) {
        const std::optional<int64_t> id = parseInteger(value);
        if (!id || *id < 0 || *id > UINT16_MAX || (isOptional && *id == 0))
            return {};
        const auto start = static_cast<uint32_t>(value.data() - _text.data());
        const auto end = static_cast<uint32_t>(start + value.size());
        const auto number = static_cast<uint16_t>(*id);
        _result._ids.push_back(
            {number, role, element, false, tag.number, static_cast<uint32_t>(tag.start), tag.list, start, end});
        return number;
    }

    void addName(uint16_t id, CharacterName name) {
        std::vector<CharacterName>& names = _result._names[id];
        const bool isKnown = std::ranges::find(names, name.text, &CharacterName::text) != names.end();
        if (names.size() < mostNames && !isKnown)
            names.push_back(std::move(name));
    }

    void readUnknown(const ScannedTag& tag, std::string_view startTag) {
        const std::vector<TagAttribute> attributes = attributesOf(startTag);
        const std::string_view* type = find(attributes, "TagType");
        const int64_t code = type == nullptr ? 0 : parseInteger(*type).value_or(0);
        if (code <= 0 || code > 1023)
            return;
        const std::optional<IdRole> role = roleInBytes(static_cast<uint16_t>(code));
        const std::string_view* value = find(attributes, "CharacterId");
        if (value != nullptr && !role) // the first bytes of something else
            return;
        _unknown = UnknownTag{static_cast<uint16_t>(code), {}};
        if (value != nullptr)
            _unknown->id = add(tag, *value, *role, libswf::knownTagName(static_cast<uint16_t>(code)));
    }

    // What the full form would show of a tag that is kept as bytes: its ids are those of the tag.
    void readBytes(const ScannedTag& tag, size_t end) {
        const std::string shown = inFullForm(_text.substr(tag.start, end - tag.start));
        if (shown.empty())
            return;
        const CharacterIndex inside(shown);
        bool isFirst = _unknown->id.has_value(); // which stands in an attribute
        for (CharacterId id : inside._ids) {
            if (std::exchange(isFirst, false))
                continue;
            id.isInBytes = true;
            id.tag = tag.number;
            id.list = tag.list;
            id.tagStart = id.start = static_cast<uint32_t>(tag.start);
            id.end = static_cast<uint32_t>(end);
            _result._ids.push_back(id);
        }
        for (const auto& [id, names] : inside._names) {
            for (const CharacterName& name : names)
                addName(id, name);
        }
    }

    // Empty for a tag that the full form keeps as bytes as well, and for one that is too big to hold ids worth the
    // time.
    std::string inFullForm(std::string_view element) const {
        const size_t start = element.find("<![CDATA[");
        if (start == element.npos || element.size() > mostOfUnknown || libswf::knownTagName(_unknown->code) == nullptr)
            return {};
        try {
            const size_t first = start + 9;
            std::vector<uint8_t> body = decodeBase64(element.substr(first, element.find("]]>", first) - first));
            if (_unknown->id)
                body.insert(body.begin(),
                            {static_cast<uint8_t>(*_unknown->id), static_cast<uint8_t>(*_unknown->id >> 8)});
            libswf::SwfMovieSafe movie;
            libswf::SwfLoadOptions reading;
            reading.fullForm = reading.keepRaw = true;
            movie.parse(fileOf(_unknown->code, body), reading);
            ConversionOptions options;
            options.keepRaw = options.abcAsData = true;
            std::string shown = swfToXml(movie, options);
            return shown.find("<Unknown") == shown.npos ? shown : std::string();
        } catch (const std::exception&) { // which compiling tells
            return {};
        }
    }

    // A movie of one tag.
    std::vector<uint8_t> fileOf(uint16_t code, const std::vector<uint8_t>& body) const {
        std::vector<uint8_t> file = {'F', 'W', 'S', _version, 0, 0, 0, 0, /* stage */ 0, /* rate */ 0, 12, 1, 0};
        const auto put = [&file](uint64_t value, int bytes) {
            for (int i = 0; i < bytes; ++i)
                file.push_back(static_cast<uint8_t>(value >> (8 * i)));
        };
        put(uint64_t(code) << 6 | 63, 2);
        put(body.size(), 4);
        file.insert(file.end(), body.begin(), body.end());
        put(0, 2);
        for (int i = 0; i < 4; ++i)
            file[static_cast<size_t>(4 + i)] = static_cast<uint8_t>(file.size() >> (8 * i));
        return file;
    }

    struct UnknownTag {
        uint16_t code;
        std::optional<uint16_t> id; // that stands in an attribute
    };

    static constexpr size_t mostNames = 16; // instances may have thousands
    static constexpr size_t mostOfUnknown = 1 << 20;

    const std::string_view _text;
    CharacterIndex& _result;
    const uint8_t _version;
    std::optional<UnknownTag> _unknown; // that is being read
    WrittenTexts _texts;
};

CharacterIndex::CharacterIndex(std::string_view text) {
    const MovieSpan movie = findTagSpans(text).movie;
    if (movie.start == MovieSpan::none)
        return;
    CharacterReader reader(text, text.substr(movie.start, movie.tagEnd - movie.start), *this);
    MovieScan(text, movie, reader).run();
    reader.nameTexts();
    finish();
}

void CharacterIndex::finish() {
    _byId.resize(_ids.size());
    for (uint32_t i = 0; i < _byId.size(); ++i)
        _byId[i] = i;
    std::ranges::stable_sort(_byId, {}, [this](uint32_t i) { return _ids[i].id; });
    for (auto& [id, names] : _names)
        std::ranges::stable_sort(names, {}, &CharacterName::kind);
}

std::span<const uint32_t> CharacterIndex::indicesOf(uint16_t id) const {
    const auto idOf = [this](uint32_t i) { return _ids[i].id; };
    return {std::ranges::lower_bound(_byId, id, {}, idOf), std::ranges::upper_bound(_byId, id, {}, idOf)};
}

std::vector<CharacterId> CharacterIndex::of(uint16_t id) const {
    std::vector<CharacterId> result;
    for (uint32_t i : indicesOf(id))
        result.push_back(_ids[i]);
    return result;
}

const CharacterId* CharacterIndex::definition(uint16_t id) const {
    for (uint32_t i : indicesOf(id)) {
        if (isDefinition(_ids[i].role))
            return &_ids[i];
    }
    return nullptr;
}

const CharacterId* CharacterIndex::at(size_t offset) const {
    // Attributes of a sprite stand before the tags in it.
    auto id = std::ranges::upper_bound(_ids, offset, {}, [](const CharacterId& id) { return size_t(id.tagStart); });
    if (id == _ids.begin())
        return nullptr;
    for (const uint32_t tag = std::prev(id)->tag; id != _ids.begin() && std::prev(id)->tag == tag;) {
        --id;
        if (!id->isInBytes && id->start <= offset && offset <= id->end)
            return &*id;
    }
    return nullptr;
}

const CharacterId* CharacterIndex::ofTag(uint32_t tag) const {
    const auto found = std::ranges::lower_bound(_ids, tag, {}, &CharacterId::tag);
    return found != _ids.end() && found->tag == tag ? &*found : nullptr;
}

const CharacterId* CharacterIndex::ofTagAt(size_t start) const {
    const auto found = std::ranges::lower_bound(_ids, start, {}, &CharacterId::tagStart);
    return found != _ids.end() && found->tagStart == start ? &*found : nullptr;
}

const std::vector<CharacterName>& CharacterIndex::names(uint16_t id) const {
    static const std::vector<CharacterName> none;
    const auto found = _names.find(id);
    return found == _names.end() ? none : found->second;
}

std::vector<uint16_t> CharacterIndex::named(const std::function<bool(std::string_view name)>& fits) const {
    std::vector<uint16_t> ids;
    for (const auto& [id, names] : _names) {
        if (std::ranges::any_of(names, fits, &CharacterName::text))
            ids.push_back(id);
    }
    return ids;
}

std::string_view CharacterIndex::name(uint16_t id) const {
    const std::vector<CharacterName>& all = names(id);
    return all.empty() ? std::string_view() : all.front().text;
}

std::string CharacterIndex::shown(uint16_t id) const {
    const std::string_view called = name(id);
    return std::to_string(id) + (called.empty() ? "" : " (" + std::string(called) + ")");
}

std::optional<uint16_t> CharacterIndex::freeId() const {
    uint32_t id = 1;
    for (uint32_t i : _byId) {
        if (_ids[i].id == id)
            ++id;
        else if (_ids[i].id > id)
            break;
    }
    return id <= UINT16_MAX ? std::optional(static_cast<uint16_t>(id)) : std::nullopt;
}

} // namespace zelk
