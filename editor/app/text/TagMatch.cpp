#include "TagMatch.h"

#include <algorithm>

namespace zelk {

namespace {

constexpr size_t longestTag = 4096, reach = size_t(2) << 20; // bytes that are looked at

struct Tag {
    enum class Kind : unsigned char { start, end, empty };
    Kind kind;
    TextRange whole, name;
};

bool endsName(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '/' || c == '>' || c == '<'; }

// The tag that starts at a "<"; none for a comment and the like.
std::optional<Tag> tagAt(std::string_view text, size_t open) {
    size_t start = open + 1;
    const bool isEnd = start < text.size() && text[start] == '/';
    start += isEnd ? 1 : 0;
    size_t end = start;
    while (end < text.size() && !endsName(text[end]))
        ++end;
    if (end == start || text[start] == '!' || text[start] == '?')
        return std::nullopt;
    char quote = 0;
    for (size_t at = end; at < std::min(text.size(), open + longestTag); ++at) {
        const char c = text[at];
        if (quote != 0)
            quote = c == quote ? 0 : quote;
        else if (c == '"' || c == '\'')
            quote = c;
        else if (c == '>')
            return Tag{isEnd                 ? Tag::Kind::end
                       : text[at - 1] == '/' ? Tag::Kind::empty
                                             : Tag::Kind::start,
                       {open, at + 1},
                       {start, end}};
    }
    return std::nullopt;
}

std::string_view nameOf(std::string_view text, const Tag& tag) {
    return text.substr(tag.name.start, tag.name.end - tag.name.start);
}

std::optional<Tag> tagAround(std::string_view text, size_t position) {
    size_t open = text.rfind('<', position);
    if (open == text.npos || position - open > longestTag)
        return std::nullopt;
    const std::optional<Tag> tag = tagAt(text, open);
    return tag && position <= tag->whole.end ? tag : std::nullopt;
}

// Counts the tags of one name until as many are closed as were opened. `step` gives the next "<".
template <class Step>
std::optional<TextRange> partner(std::string_view text, const Tag& tag, Tag::Kind deeper, Step step) {
    const std::string_view name = nameOf(text, tag);
    int depth = 1;
    for (size_t open = step(tag.whole.start); open != text.npos; open = step(open)) {
        const std::optional<Tag> other = tagAt(text, open);
        if (!other || other->kind == Tag::Kind::empty || nameOf(text, *other) != name)
            continue;
        depth += other->kind == deeper ? 1 : -1;
        if (depth == 0)
            return other->name;
    }
    return std::nullopt;
}

} // namespace

std::optional<TagPair> matchingTags(std::string_view text, size_t position) {
    if (text.empty())
        return std::nullopt;
    const std::optional<Tag> tag = tagAround(text, std::min(position, text.size() - 1));
    if (!tag || tag->kind == Tag::Kind::empty)
        return std::nullopt;
    std::optional<TextRange> other;
    if (tag->kind == Tag::Kind::start) {
        const std::string_view near = text.substr(0, tag->whole.start + reach);
        other = partner(near, *tag, Tag::Kind::start, [near](size_t at) { return near.find('<', at + 1); });
    } else {
        const size_t least = tag->whole.start > reach ? tag->whole.start - reach : 0;
        other = partner(text, *tag, Tag::Kind::end, [text, least](size_t at) {
            const size_t open = at == 0 ? text.npos : text.rfind('<', at - 1);
            return open == text.npos || open < least ? text.npos : open;
        });
    }
    return other ? std::optional(TagPair{tag->name, *other}) : std::nullopt;
}

} // namespace zelk
