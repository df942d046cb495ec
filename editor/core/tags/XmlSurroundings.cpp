#include "XmlSurroundings.h"

#include <algorithm>
#include <unordered_map>

#include "MovieLayout.h"

namespace zelk {

using xml2swf::XmlChildForm;
using xml2swf::XmlChildGroup;
using xml2swf::XmlElementType;
using xml2swf::XmlVocabulary;

namespace {

constexpr std::string_view blanks = " \t\r\n", nameEnds = " \t\r\n/>=<\"'";
constexpr std::string_view cdataStart = "<![CDATA[", cdataEnd = "]]>", commentStart = "<!--", commentEnd = "-->";

// What the name of an element alone tells.
struct NameUse {
    const XmlElementType* type = nullptr; ///< null when elements of this name differ
    const XmlElementType* host = nullptr; ///< an element in whose group alone it stands
};

using NameUses = std::unordered_map<std::string_view, NameUse>;

void addUse(NameUses& uses, const XmlChildForm& child, const XmlElementType* host) {
    const auto [entry, isNew] = uses.try_emplace(child.name, NameUse{child.type, host});
    NameUse& use = entry->second;
    if (!isNew && use.type != child.type)
        use.type = nullptr;
    if (!isNew || host == nullptr)
        use.host = nullptr;
}

NameUses makeUses(const XmlVocabulary& vocabulary) {
    NameUses table;
    addUse(table, vocabulary.movie(), nullptr);
    for (const XmlElementType& type : vocabulary.types()) {
        for (const XmlChildForm& child : type.ownChildren)
            addUse(table, child, nullptr);
    }
    for (const XmlChildGroup& group : vocabulary.groups()) {
        const auto host = std::ranges::find_if(vocabulary.types(), [&](const XmlElementType& type) {
            return type.group == &group && type.ownChildren.empty();
        });
        for (const XmlChildForm& child : group.children)
            addUse(table, child, host == vocabulary.types().end() ? nullptr : &*host);
    }
    return table;
}

const NameUses& nameUses(const XmlVocabulary& vocabulary) {
    if (vocabulary.isFullForm()) {
        static const NameUses full = makeUses(XmlVocabulary::get(true));
        return full;
    }
    static const NameUses classic = makeUses(XmlVocabulary::get(false));
    return classic;
}

NameUse useOf(const XmlVocabulary& vocabulary, std::string_view name) {
    const NameUses& uses = nameUses(vocabulary);
    const auto found = uses.find(name);
    return found == uses.end() ? NameUse{} : found->second;
}

// From an element inwards; `names` are the elements in it, the innermost first.
const XmlElementType* descend(const XmlElementType* type, std::span<const std::string_view> names) {
    for (size_t i = names.size(); i > 0 && type != nullptr; --i) {
        const XmlChildForm* child = type->child(names[i - 1]);
        type = child == nullptr ? nullptr : child->type;
    }
    return type;
}

} // namespace

// --- tags ------------------------------------------------------------------------------------------------------------

std::optional<XmlTagToken> tagTokenAt(std::string_view text, size_t open, size_t limit) {
    text = text.substr(0, limit);
    if (open >= text.size())
        return std::nullopt;
    const bool isEnd = text.substr(open + 1).starts_with('/');
    const size_t start = open + (isEnd ? 2 : 1);
    size_t at = std::min(text.find_first_of(nameEnds, start), text.size());
    const std::string_view name = text.substr(std::min(start, text.size()), at - std::min(start, text.size()));
    if (name.empty() || name[0] == '!' || name[0] == '?')
        return std::nullopt;
    while ((at = text.find_first_of("\"'>", at)) < text.size() && text[at] != '>') {
        at = text.find(text[at], at + 1);
        at += at == text.npos ? 0 : 1;
    }
    if (at >= text.size())
        return std::nullopt;
    const auto kind = isEnd                 ? XmlTagToken::Kind::end
                      : text[at - 1] == '/' ? XmlTagToken::Kind::empty
                                            : XmlTagToken::Kind::start;
    return XmlTagToken{kind, open, at + 1, name};
}

size_t skipSections(std::string_view text, size_t position) {
    for (;;) {
        position = std::min(text.find('<', position), text.size());
        const std::string_view rest = text.substr(position);
        if (!rest.starts_with("<!") && !rest.starts_with("<?"))
            return position;
        const std::string_view end = rest.starts_with(cdataStart)     ? cdataEnd
                                     : rest.starts_with(commentStart) ? commentEnd
                                                                      : ">";
        position = text.find(end, position);
        if (position == text.npos)
            return text.size();
        position += end.size();
    }
}

std::optional<XmlTagToken> endTagBehind(std::string_view text, size_t position, size_t reach) {
    const size_t limit = std::min(text.size(), position + reach);
    text = text.substr(0, limit);
    size_t depth = 0;
    for (size_t at = skipSections(text, position); at < limit; at = skipSections(text, at)) {
        const auto tag = tagTokenAt(text, at, limit);
        if (!tag || (tag->kind == XmlTagToken::Kind::end && depth == 0))
            return tag;
        if (tag->kind != XmlTagToken::Kind::empty)
            depth += tag->kind == XmlTagToken::Kind::start ? 1 : size_t(-1);
        at = tag->end;
    }
    return std::nullopt;
}

XmlTagsBefore::XmlTagsBefore(std::string_view text, size_t position, size_t reach)
    : _text(text), _at(position), _least(position > reach ? position - reach : 0) {}

// Passes over a comment or CDATA section that ends between a "<" and the place.
bool XmlTagsBefore::skipSection(size_t open) {
    const std::string_view between = _text.substr(open, _at - open), near = _text.substr(_least);
    const auto skip = [&](std::string_view start, std::string_view end, bool& isAbsent) {
        if (isAbsent || between.find(end) == between.npos)
            return false;
        const size_t begin = near.rfind(start, open - _least);
        isAbsent = begin == near.npos;
        if (!isAbsent)
            _at = _least + begin;
        return !isAbsent;
    };
    return skip(cdataStart, cdataEnd, _hasNoCData) || skip(commentStart, commentEnd, _hasNoComment);
}

std::optional<XmlTagToken> XmlTagsBefore::next() {
    while (_at > _least) {
        const size_t open = _text.rfind('<', _at - 1);
        if (open == _text.npos || open < _least)
            break;
        if (skipSection(open))
            continue;
        const std::optional<XmlTagToken> tag = tagTokenAt(_text, open, _at);
        _at = open;
        if (tag)
            return tag;
    }
    return std::nullopt;
}

namespace {

constexpr size_t lineReach = size_t(64) << 20; // of lines that only their indentation is looked at: 60 ms

size_t startOfLine(std::string_view text, size_t place) {
    while (place > 0 && text[place - 1] != '\n' && text[place - 1] != '\r')
        --place;
    return place;
}

// Columns of a line before a tag; none when something else stands there.
std::optional<size_t> indentation(std::string_view text, size_t open) {
    const size_t start = startOfLine(text, open);
    return text.find_first_not_of(" \t", start) == open ? std::optional(open - start) : std::nullopt;
}

std::optional<XmlTagToken> openTagByIndentation(std::string_view text, const XmlTagToken& last) {
    const std::optional<size_t> column = indentation(text, last.open);
    if (!column)
        return std::nullopt;
    const size_t least = last.open > lineReach ? last.open - lineReach : 0;
    for (size_t end = last.open - *column; end > least;) { // behind "\n" or "\r"
        const size_t start = startOfLine(text, end - 1);
        const size_t open = text.find_first_not_of(" \t", start);
        if (open < end && open - start < *column && text[open] == '<') {
            if (const auto tag = tagTokenAt(text, open, last.open))
                return tag->kind == XmlTagToken::Kind::start ? tag : std::nullopt;
        }
        end = start;
    }
    return std::nullopt;
}

} // namespace

std::optional<XmlTagToken> openTagBefore(std::string_view text, size_t position) {
    XmlTagsBefore tags(text, position);
    std::optional<XmlTagToken> last;
    size_t depth = 0;
    while (const auto tag = tags.next()) {
        if (!last)
            last = tag;
        if (tag->kind == XmlTagToken::Kind::start && depth == 0)
            return tag;
        if (tag->kind != XmlTagToken::Kind::empty)
            depth += tag->kind == XmlTagToken::Kind::end ? 1 : size_t(-1);
    }
    return last && !tags.isAtStart() ? openTagByIndentation(text, *last) : std::nullopt;
}

const XmlVocabulary& vocabularyOf(std::string_view text, std::optional<bool> fullForm) {
    return XmlVocabulary::get(fullForm ? *fullForm : layoutAtStart(text).fullForm);
}

// --- places ----------------------------------------------------------------------------------------------------------

namespace {

// Whether a section that began before a place has not ended there.
bool isInSection(std::string_view before, std::string_view start, std::string_view end) {
    const size_t open = before.rfind(start);
    return open != before.npos && before.find(end, open + start.size()) == before.npos;
}

// Of a place behind the name in a tag. `tag` goes up to the place.
XmlPlaceKind placeInTag(std::string_view tag, size_t at) {
    using In = XmlPlaceKind::In;
    while ((at = std::min(tag.find_first_not_of(blanks, at), tag.size())) < tag.size()) {
        if (tag[at] == '>')
            return {In::content};
        const size_t nameEnd = std::min(tag.find_first_of(nameEnds, at), tag.size());
        if (nameEnd == tag.size())
            return {In::attributeName, 0, at};
        const size_t quote = tag.find_first_not_of(" \t\r\n=", nameEnd);
        if (nameEnd == at || quote == tag.npos || (tag[quote] != '"' && tag[quote] != '\'')) {
            if (tag[at] == '/' && at + 1 < tag.size() && tag[at + 1] == '>')
                return {In::content};
            return {In::elsewhere};
        }
        const size_t end = tag.find(tag[quote], quote + 1);
        if (end == tag.npos)
            return {In::value, 0, quote + 1, {}, tag.substr(at, nameEnd - at)};
        at = end + 1;
    }
    return blanks.find(tag.back()) == blanks.npos ? XmlPlaceKind{In::elsewhere}
                                                  : XmlPlaceKind{In::attributeName, 0, tag.size()};
}

} // namespace

XmlPlaceKind placeKindAt(std::string_view text, size_t position) {
    using In = XmlPlaceKind::In;
    const size_t least = position > surroundingsReach ? position - surroundingsReach : 0;
    const std::string_view before = text.substr(least, position - least);
    const size_t open = before.rfind('<');
    if (open == before.npos)
        return {In::content};
    const std::string_view tag = before.substr(open);
    if (tag.starts_with("<!") || tag.starts_with("<?"))
        return {tag.find('>') == tag.npos ? In::elsewhere : In::content};
    const bool isEnd = tag.starts_with("</");
    const size_t nameStart = isEnd ? 2 : 1, nameEnd = tag.find_first_of(nameEnds, nameStart);
    XmlPlaceKind kind{isEnd ? In::endName : In::name, 0, nameStart};
    if (nameEnd != tag.npos)
        kind = isEnd ? XmlPlaceKind{tag.find('>') == tag.npos ? In::elsewhere : In::content} : placeInTag(tag, nameEnd);
    if (kind.in == In::content || kind.in == In::elsewhere)
        return kind;
    if (isInSection(before, cdataStart, cdataEnd) || isInSection(before, commentStart, commentEnd))
        return {};
    kind.open = least + open;
    kind.start += kind.open;
    kind.element = tag.substr(nameStart, std::min(nameEnd, tag.size()) - nameStart);
    return kind;
}

XmlSurroundings surroundingsOf(const XmlVocabulary& vocabulary, std::string_view text, size_t position) {
    XmlSurroundings result;
    result.vocabulary = &vocabulary;
    XmlTagsBefore tags(text, position);
    std::vector<std::string_view> names; // of the elements around the place, the innermost first
    size_t depth = 0;
    bool isEmpty = true;
    while (const auto tag = tags.next()) {
        isEmpty = false;
        const NameUse use = useOf(vocabulary, tag->name);
        if (tag->kind == XmlTagToken::Kind::start && depth > 0) {
            --depth;
        } else if (tag->kind == XmlTagToken::Kind::start) {
            if (names.empty())
                result.name = tag->name;
            if (use.type != nullptr) {
                result.type = descend(use.type, names);
                return result;
            }
            names.push_back(tag->name);
        } else {
            if (depth == 0 && names.empty())
                result.siblings.push_back(tag->name);
            if (depth == 0 && use.host != nullptr) {
                result.type = descend(use.host, names);
                return result;
            }
            depth += tag->kind == XmlTagToken::Kind::end ? 1 : 0;
        }
    }
    result.isTop = isEmpty && tags.isAtStart();
    return result;
}

const XmlElementType* typeOfElement(const XmlSurroundings& around, std::string_view name) {
    const XmlChildForm& movie = around.vocabulary->movie();
    if (around.isTop)
        return name == movie.name ? movie.type : nullptr;
    const XmlChildForm* child = around.type == nullptr ? nullptr : around.type->child(name);
    return child == nullptr ? nullptr : child->type;
}

} // namespace zelk
