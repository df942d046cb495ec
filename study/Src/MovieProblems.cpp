// Problems that the tags of a movie have with each other.
#include <algorithm>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "Base64.h"
#include "CharacterIndex.h"
#include "MovieScan.h"
#include "Problems.h"
#include "SwfTagCodes.h"
#include "XmlCharacters.h"
#include "XmlElement.h"
#include "XmlNumbers.h"
#include "XmlVocabulary.h"

namespace zelk {

using namespace xml2swf;

namespace {

using Kind = Problem::Kind;
using Severity = Problem::Severity;

std::optional<uint32_t> numberIn(std::string_view startTag, std::string_view attribute) {
    const auto found = attributeOf(startTag, attribute);
    const auto number = found ? parseInteger(found->value) : std::nullopt;
    return number && *number >= 0 && *number <= UINT32_MAX ? std::optional(static_cast<uint32_t>(*number))
                                                           : std::nullopt;
}

bool isTrue(std::string_view startTag, std::string_view attribute) {
    const auto found = attributeOf(startTag, attribute);
    return found && XmlElement::isTrue(found->value);
}

// Elements that may hold text, of any kind of element around them.
const std::unordered_set<std::string_view>& elementsWithText() {
    static const auto names = [] {
        std::unordered_set<std::string_view> result;
        for (const bool fullForm : {false, true}) {
            for (const XmlElementType& type : XmlVocabulary::get(fullForm).types()) {
                for (const XmlChildForm& child : type.children()) {
                    if (child.type->content != XmlContent::none)
                        result.insert(child.name);
                }
            }
        }
        return result;
    }();
    return names;
}

// What is known of a font by the tags before.
struct FontGlyphs {
    std::optional<uint32_t> count;
    std::unordered_set<uint32_t> codes;
};

class ProblemFinder : public MovieVisitor {
public:
    ProblemFinder(std::string_view text, const CharacterIndex& characters, Problems& problems)
        : _text(text), _characters(characters), _problems(problems) {
        _timelines.emplace_back();
    }

    void finish() {
        checkIds();
        if (!_hasTables) {
            for (const auto& [tag, start] : _picturesWithoutTables)
                add(Kind::missingTables, Severity::error, tag, start, {},
                    "the picture has no tables of its own, and the movie has no JPEGTables");
        }
    }

    void tagBegins(const ScannedTag& tag, std::string_view startTag) override {
        _tags.push_back({tag.list, tag.row});
        if (tag.name == "DefineSprite")
            _timelines.emplace_back();
        else if (tag.name.starts_with("PlaceObject") || tag.name.starts_with("RemoveObject"))
            followDepth(tag, startTag);
        else if (tag.name.starts_with("DefineFont"))
            beginFont(tag, startTag);
        else if (tag.name.starts_with("DefineText"))
            _writtenIn.reset();
        else if (tag.name == "DefineEditText")
            _editText = {numberIn(startTag, "FontId"), false, false};
        else if (tag.name == "JPEGTables")
            _hasTables = true;
        else if (tag.name == "Unknown")
            lookIntoUnknown(startTag);
    }

    void tagEnds(const ScannedTag& tag, size_t end) override {
        const std::string_view element = _text.substr(tag.start, end - tag.start);
        if (tag.name == "DefineSprite")
            _timelines.pop_back();
        else if (tag.name == "DefineBits" && !hasOwnTables(element))
            _picturesWithoutTables.emplace_back(tag.number, tag.start);
        else if (tag.name == "DefineEditText")
            checkEditText(tag, element);
        _font = nullptr;
    }

    void element(const ScannedTag& around, std::string_view startTag, size_t offset) override {
        const std::string_view name = elementName(startTag);
        if (_font != nullptr) {
            readFont(name, startTag);
        } else if (around.name.starts_with("DefineText")) {
            readText(around, name, startTag, offset);
        } else if (around.name == "DefineEditText" && name == "BitsField") {
            _editText.isOutlined = isTrue(startTag, "UseOutlines");
            _editText.isHtml = isTrue(startTag, "HTML");
        }
    }

    void text(const ScannedTag* around, std::string_view element, bool isAlone, size_t offset) override {
        if (isAlone && elementsWithText().contains(element))
            return;
        const std::string_view rest = _text.substr(offset, 40);
        const size_t end = std::min(rest.find_first_of("<\r\n"), rest.size());
        Problem problem;
        problem.kind = Kind::strayText;
        problem.offset = offset;
        if (around != nullptr)
            problem.path = pathOf(around->number);
        problem.tag = element;
        problem.reason = "\"" + std::string(rest.substr(0, end)) + "\" stands between elements, where no text counts";
        _problems.add(std::move(problem));
    }

private:
    struct Tag {
        uint32_t list, row;
    };
    // What a list of tags has done to its depths.
    struct Timeline {
        std::unordered_set<uint32_t> taken;
        bool isUncertain = false; // by a tag that is not read
    };
    struct EditText {
        std::optional<uint32_t> font;
        bool isOutlined, isHtml;
    };

    std::string pathOf(uint32_t tag) const {
        std::vector<uint32_t> path;
        for (; tag != ScannedTag::movie; tag = _tags[tag].list)
            path.push_back(_tags[tag].row);
        std::ranges::reverse(path);
        return libswf::tagPathText(path);
    }

    void add(Kind kind, Severity severity, uint32_t tag, size_t offset, std::optional<uint16_t> id,
             std::string reason) {
        Problem problem;
        problem.kind = kind;
        problem.severity = severity;
        problem.offset = offset;
        problem.path = pathOf(tag);
        problem.tag = elementName(_text.substr(offset));
        problem.id = id;
        problem.reason = std::move(reason);
        _problems.add(std::move(problem));
    }

    // --- depths ---

    void lookIntoUnknown(std::string_view startTag) {
        using namespace libswf;
        switch (numberIn(startTag, "TagType").value_or(0)) {
        case SwfTagCode::PlaceObject:
        case SwfTagCode::PlaceObject2:
        case SwfTagCode::PlaceObject3:
        case SwfTagCode::PlaceObject4:
        case SwfTagCode::RemoveObject:
        case SwfTagCode::RemoveObject2: _timelines.back().isUncertain = true; break;
        case SwfTagCode::JPEGTables: _hasTables = true; break;
        default: break;
        }
    }

    void followDepth(const ScannedTag& tag, std::string_view startTag) {
        constexpr uint32_t moveFlag = 1;
        Timeline& timeline = _timelines.back();
        const uint32_t depth = numberIn(startTag, "Depth").value_or(0);
        const bool isMove =
            isTrue(startTag, "Move") || (numberIn(startTag, "PlaceObject2Value").value_or(0) & moveFlag) != 0;
        const bool isRemoval = tag.name.starts_with("Remove");
        if ((isMove || isRemoval) && !timeline.isUncertain && !timeline.taken.contains(depth))
            add(Kind::emptyDepth, Severity::warning, tag.number, tag.start, {},
                std::string(isRemoval ? "nothing was placed" : "it moves what was never placed") + " at depth " +
                    std::to_string(depth));
        if (!isRemoval)
            timeline.taken.insert(depth); // told once
    }

    // --- fonts ---

    void beginFont(const ScannedTag& tag, std::string_view startTag) {
        const auto id = numberIn(startTag, "FontId");
        if (!id || (tag.name.ends_with("Name") || tag.name.ends_with("Zones")))
            return;
        _font = &_fonts[*id];
        if (!tag.name.starts_with("DefineFontInfo") && tag.name != "DefineFont4")
            _font->count = 0;
        _isInGlyphs = _isInCodes = false;
        _isFirstFont = tag.name == "DefineFont";
    }

    // Glyphs stand in a table: in DefineFont whatever it is called, in the others it has their name.
    void readFont(std::string_view name, std::string_view startTag) {
        if (!_isInGlyphs && (_isFirstFont || name == "Glyphs")) {
            _isInGlyphs = true;
        } else if (name == "Glyphs" && _font->count) {
            ++*_font->count;
        } else if (name != "Code") {
            _isInCodes = name == "CodesTable";
        } else if (_isInCodes) { // advances are called the same
            if (const auto code = numberIn(startTag, "Value"))
                _font->codes.insert(*code);
        }
    }

    void readText(const ScannedTag& around, std::string_view name, std::string_view startTag, size_t offset) {
        if (name == "TextRecord") {
            if (const auto font = numberIn(startTag, "FontId"))
                _writtenIn = font;
        } else if (name == "GlyphEntry" && _writtenIn) {
            const auto font = _fonts.find(*_writtenIn);
            const auto index = numberIn(startTag, "Index");
            if (font == _fonts.end() || !font->second.count || !index || *index < *font->second.count)
                return;
            if (!_told.emplace(around.number, *_writtenIn).second)
                return;
            add(Kind::missingGlyph, Severity::error, around.number, offset, static_cast<uint16_t>(*_writtenIn),
                "glyph " + std::to_string(*index) + ", but " + shown(static_cast<uint16_t>(*_writtenIn)) + " has " +
                    std::to_string(*font->second.count) + " glyphs");
        }
    }

    void checkEditText(const ScannedTag& tag, std::string_view element) {
        if (!_editText.font || !_editText.isOutlined || _editText.isHtml)
            return;
        const auto font = _fonts.find(*_editText.font);
        constexpr std::string_view open = "<![CDATA[";
        const size_t start = element.find(open, std::min(element.find("<InitialText"), element.size()));
        if (font == _fonts.end() || font->second.codes.empty() || start == element.npos)
            return;
        const size_t end = element.find("]]>", start);
        const std::string_view text = element.substr(start + open.size(), end - start - open.size());
        for (const char32_t code : fromUtf8(text).value_or(U"")) {
            if (code <= ' ' || code == 0xA0 || font->second.codes.contains(code))
                continue;
            std::string letter;
            appendUtf8(letter, code);
            return add(Kind::missingGlyph, Severity::warning, tag.number, tag.start,
                       static_cast<uint16_t>(*_editText.font),
                       shown(static_cast<uint16_t>(*_editText.font)) + " has no glyph for \"" + letter + "\"");
        }
    }

    // --- pictures ---

    static bool hasOwnTables(std::string_view element) {
        constexpr size_t most = 4096; // digits; the tables stand in front
        const size_t start = std::min(element.find("CDATA["), element.size());
        std::string digits;
        for (size_t at = start + 6; at < element.size() && digits.size() < most && element[at] != ']'; ++at) {
            if (std::string_view(" \t\r\n").find(element[at]) == std::string_view::npos)
                digits += element[at];
        }
        try {
            const std::vector<uint8_t> bytes = decodeBase64(digits);
            constexpr uint8_t tables[] = {0xFF, 0xDB};
            return bytes.empty() ||
                   std::search(bytes.begin(), bytes.end(), std::begin(tables), std::end(tables)) != bytes.end();
        } catch (const Base64Error&) {
            return true; // told elsewhere
        }
    }

    // --- ids ---

    std::string shown(uint16_t id) const { return "character " + _characters.shown(id); }

    Severity severityOfUndefined(const CharacterId& use) const {
        switch (use.role) {
        case IdRole::details:
        case IdRole::scripts:
        case IdRole::names: return Severity::warning;
        case IdRole::writes: // a text field falls back to a font of the device
            return elementName(_text.substr(use.tagStart)) == "DefineEditText" ? Severity::warning : Severity::error;
        default: return Severity::error;
        }
    }

    // The order of these and the definition does not matter.
    static bool mayComeFirst(IdRole role) {
        return role == IdRole::names || role == IdRole::removes || role == IdRole::frees || role == IdRole::scripts;
    }

    void checkIds() {
        for (const CharacterId& use : _characters.all()) {
            const bool hasNoMeaning = use.role == IdRole::removes || use.role == IdRole::frees ||
                                      (use.role == IdRole::fills && use.id == CharacterIndex::noBitmap);
            if (hasNoMeaning)
                continue;
            const CharacterId* definition = _characters.definition(use.id);
            if (definition == nullptr)
                add(Kind::undefined, severityOfUndefined(use), use.tag, use.tagStart, use.id,
                    "nothing defines " + shown(use.id) + " (" + std::string(roleText(use.role)) + ")");
            else if (isDefinition(use.role) && definition->tag != use.tag)
                add(Kind::definedTwice, Severity::error, use.tag, use.tagStart, use.id,
                    shown(use.id) + " is defined by tag " + pathOf(definition->tag) + " already");
            else if (!isDefinition(use.role) && definition->tag > use.tag && !mayComeFirst(use.role))
                add(Kind::usedTooEarly, Severity::warning, use.tag, use.tagStart, use.id,
                    shown(use.id) + " is defined behind it only, by tag " + pathOf(definition->tag) + " (" +
                        std::string(roleText(use.role)) + ")");
        }
    }

    const std::string_view _text;
    const CharacterIndex& _characters;
    Problems& _problems;
    std::vector<Tag> _tags;
    std::vector<Timeline> _timelines;
    std::unordered_map<uint32_t, FontGlyphs> _fonts;
    FontGlyphs* _font = nullptr; // that is being read
    bool _isInGlyphs = false, _isInCodes = false, _isFirstFont = false;
    std::optional<uint32_t> _writtenIn; // font of the text that is being read
    std::set<std::pair<uint32_t, uint32_t>> _told;
    EditText _editText = {};
    bool _hasTables = false;
    std::vector<std::pair<uint32_t, size_t>> _picturesWithoutTables;
};

} // namespace

void findMovieProblems(std::string_view text, const CharacterIndex& characters, Problems& problems) {
    const MovieSpan movie = findTagSpans(text).movie;
    ProblemFinder finder(text, characters, problems);
    MovieScan(text, movie, finder).run();
    finder.finish();
}

} // namespace zelk
