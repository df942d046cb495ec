#include "LongLines.h"

#include <algorithm>
#include <array>
#include <set>
#include <vector>

#include "SwfSyntaxHighlighter.h"
#include "XmlSurroundings.h"

namespace zelk {

namespace {

constexpr size_t shownOfStart = 400, shownOfEnd = 80, shownAtCaret = 80; // of base64
constexpr size_t halfShown = 128 * 1024;                                 // of other text, if it is longer than both

struct Range {
    size_t start, end;
};

constexpr auto base64Chars = [] {
    std::array<bool, 256> is{};
    for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/="))
        is[static_cast<unsigned char>(c)] = true;
    return is;
}();

std::set<std::string_view> payloadNames(const xml2swf::XmlVocabulary& vocabulary) {
    std::set<std::string_view> names;
    const auto add = [&](const std::vector<xml2swf::XmlChildForm>& children) {
        for (const xml2swf::XmlChildForm& child : children) {
            if (child.type->content == xml2swf::XmlContent::base64)
                names.insert(child.name);
        }
    };
    for (const xml2swf::XmlElementType& type : vocabulary.types())
        add(type.ownChildren);
    for (const xml2swf::XmlChildGroup& group : vocabulary.groups())
        add(group.children);
    return names;
}

bool isPayload(std::string_view text, size_t place) {
    const auto tag = XmlTagsBefore(text, place).next();
    if (!tag) // It began long before.
        return true;
    const xml2swf::XmlVocabulary& vocabulary = vocabularyOf(text, {});
    static const std::set<std::string_view> full = payloadNames(xml2swf::XmlVocabulary::get(true)),
                                            classic = payloadNames(xml2swf::XmlVocabulary::get(false));
    return tag->kind == XmlTagToken::Kind::start && (vocabulary.isFullForm() ? full : classic).contains(tag->name);
}

// Whether the text of an element begins or goes on there, and no value does.
bool isContent(std::string_view text, size_t lineStart, size_t place, QuoteMap::State state) {
    while (place > lineStart && (text[place - 1] == ' ' || text[place - 1] == '\t'))
        --place;
    return place == lineStart ? state == QuoteMap::Outside : text[place - 1] == '>' || text[place - 1] == '[';
}

// The base64 that is long enough to be shortened.
std::vector<Range> payloads(std::string_view text, Range line, QuoteMap::State state) {
    constexpr size_t least = shownOfStart + shownOfEnd + 2 * shownAtCaret;
    std::vector<Range> found;
    for (size_t at = line.start; at < line.end; ++at) {
        const size_t start = at;
        while (at < line.end && base64Chars[static_cast<unsigned char>(text[at])])
            ++at;
        if (at - start > least && isContent(text, line.start, start, state) && isPayload(text, start))
            found.push_back({start, at});
    }
    return found;
}

std::vector<Range> hiddenOf(std::string_view text, Range line, size_t caret, QuoteMap::State state) {
    std::vector<Range> hidden;
    const auto hide = [&](size_t start, size_t end) {
        while (start < end && (text[start] & 0xC0) == 0x80) // no part of a character
            ++start;
        while (end > start && end < line.end && (text[end] & 0xC0) == 0x80)
            --end;
        if (start < end)
            hidden.push_back({start, end});
    };
    size_t shown = line.end - line.start;
    for (const Range& payload : payloads(text, line, state)) {
        const size_t start = payload.start + shownOfStart, end = payload.end - shownOfEnd;
        const bool isAtCaret = caret + shownAtCaret > start && caret < end + shownAtCaret;
        hide(start, isAtCaret ? std::max(caret, shownAtCaret) - shownAtCaret : end);
        hide(isAtCaret ? std::max(start, caret + shownAtCaret) : end, end);
        shown -= end - start;
    }
    if (shown <= 2 * halfShown)
        return hidden;
    const size_t middle = (caret < line.start || caret > line.end ? 0 : caret - line.start) / halfShown * halfShown;
    const size_t from = line.start + std::max(middle, halfShown / 2) - halfShown / 2;
    hide(line.start, from);
    hide(std::min(line.end, from + 2 * halfShown), std::max(line.end, shownOfEnd) - shownOfEnd);
    return hidden;
}

} // namespace

std::string stylesOfLongLine(std::string_view text, size_t start, size_t end, size_t caret, QuoteMap::State state) {
    std::string styles(end - start, char(SwfSyntaxHighlighter::Other));
    for (const Range& range : hiddenOf(text, {start, end}, caret, state))
        std::fill(styles.begin() + ptrdiff_t(range.start - start), styles.begin() + ptrdiff_t(range.end - start),
                  hiddenStyle);
    bool isInString = state == QuoteMap::Inside;
    for (size_t at = 0; at < styles.size() && state != QuoteMap::Ended;) {
        const bool isHidden = styles[at] == hiddenStyle;
        const size_t next = isHidden ? styles.find_first_not_of(hiddenStyle, at) : styles.find(hiddenStyle, at);
        const std::string_view part = text.substr(start + at, std::min(next, styles.size()) - at);
        if (!isHidden)
            styles.replace(at, part.size(), SwfSyntaxHighlighter::classesOf(part, isInString));
        isInString ^= std::ranges::count(part, '"') % 2 != 0;
        at += part.size();
    }
    return styles;
}

} // namespace zelk
