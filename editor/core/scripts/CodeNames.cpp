#include "CodeNames.h"

#include <algorithm>
#include <functional>
#include <set>

#include "TagText.h"
#include "XmlSurroundings.h"

namespace zelk {

namespace {

constexpr std::string_view declarations[] = {"Class", "Method", "Getter",       "Setter",
                                             "Slot",  "Const",  "FunctionSlot", "ClassSlot"};
constexpr std::string_view nameAttributes[] = {"Name", "Type", "Base", "Returns", "Class"};

// Names are looked for in all of a big text while someone waits: not letter by letter.
size_t find(std::string_view text, std::string_view word, size_t from) {
    const std::boyer_moore_horspool_searcher searcher(word.begin(), word.end());
    const auto found =
        std::search(text.begin() + static_cast<ptrdiff_t>(std::min(from, text.size())), text.end(), searcher);
    return found == text.end() ? text.npos : static_cast<size_t>(found - text.begin());
}

size_t findBefore(std::string_view text, std::string_view word, size_t before) {
    const std::boyer_moore_horspool_searcher searcher(word.rbegin(), word.rend());
    const auto start = text.rend() - static_cast<ptrdiff_t>(before);
    const auto found = std::search(start, text.rend(), searcher);
    return found == text.rend() ? text.npos : static_cast<size_t>(text.rend() - found) - word.size();
}

// The part of a name that says no place: "x" of "private(A)::x".
std::string_view lastPart(std::string_view name) {
    const size_t colons = name.rfind("::");
    return colons == name.npos ? name : name.substr(colons + 2);
}

// The class around a place; empty when there is none.
struct ClassAround {
    size_t start = 0, end = 0;

    ClassAround(std::string_view text, size_t position) {
        const size_t open = findBefore(text, "<Class ", position), close = findBefore(text, "</Class>", position);
        if (open == text.npos || (close != text.npos && close > open))
            return;
        start = open;
        end = std::min(find(text, "</Class>", position), text.size());
    }
    bool holds(size_t position) const { return start <= position && position < end; }
};

// The element whose start tag the place is in, if its attribute `wanted` is there.
std::optional<XmlTagToken> elementWithValueAt(std::string_view text, size_t at, std::string_view wanted) {
    const size_t open = text.rfind('<', at);
    const auto tag = open == text.npos ? std::nullopt : tagTokenAt(text, open, text.size());
    if (!tag || tag->end <= at)
        return {};
    for (const TagAttribute& attribute : attributesOf(text.substr(open, tag->end - open))) {
        const auto start = static_cast<size_t>(attribute.value.data() - text.data());
        if (attribute.name == wanted && start <= at && at <= start + attribute.value.size())
            return tag;
    }
    return {};
}

int rank(std::string_view element, std::string_view declared, std::string_view name, bool isSameClass) {
    return (declared == name ? 8 : 0) + (isSameClass ? 4 : 0) + (element == "Class" ? 2 : 0);
}

} // namespace

bool declaresName(std::string_view element) {
    return std::ranges::find(declarations, element) != std::end(declarations);
}

std::optional<size_t> blockAround(std::string_view text, size_t position) {
    constexpr std::string_view name = "Abc";
    for (size_t at = findBefore(text, name, position); at != text.npos && at > 0; at = findBefore(text, name, at)) {
        if (text[at - 1] == '<')
            return at - 1;
        if (text.substr(at - 1).starts_with("/Abc>"))
            return {};
    }
    return {};
}

std::optional<size_t> declarationOf(std::string_view text, size_t block, size_t position, std::string_view name) {
    const std::string_view last = lastPart(name);
    if (last.empty())
        return {};
    const ClassAround own(text, position);
    const std::string ending = std::string(last) + '"';
    std::optional<size_t> best;
    int bestRank = -1;
    for (size_t at = find(text, ending, block); at != text.npos; at = find(text, ending, at + 1)) {
        if (text[at - 1] != '"' && text[at - 1] != ':')
            continue;
        const auto element = elementWithValueAt(text, at, "Name");
        if (!element || !declaresName(element->name))
            continue;
        const size_t quote = text.rfind('"', at - 1) + 1;
        const std::string_view declared = text.substr(quote, at + last.size() - quote);
        const int found = rank(element->name, declared, name, own.holds(element->open));
        if (found > bestRank)
            best = element->open;
        bestRank = std::max(bestRank, found);
    }
    if (best)
        return best;
    const size_t before = find(text.substr(0, block), "<Class Name=\"" + std::string(name) + '"', 0);
    return before == text.npos ? std::nullopt : std::optional(before);
}

std::optional<size_t> methodOf(std::string_view text, size_t block, std::string_view id) {
    const std::string wanted = " Id=\"" + std::string(id) + '"';
    for (size_t at = find(text, wanted, block); at != text.npos; at = find(text, wanted, at + 1)) {
        const auto element = elementWithValueAt(text, at + 5, "Id");
        if (element && element->name != "Class" && element->name != "Catch")
            return element->open;
    }
    return {};
}

std::vector<std::string> namesAround(std::string_view text, size_t position) {
    constexpr size_t reach = size_t(1) << 19, most = 5000;
    const size_t start = position > reach ? position - reach : 0;
    const std::string_view near = text.substr(start, 2 * reach);
    std::set<std::string, std::less<>> names;
    for (std::string_view attribute : nameAttributes) {
        const std::string begin = " " + std::string(attribute) + "=\"";
        for (size_t at = near.find(begin); at != near.npos && names.size() < most; at = near.find(begin, at + 1)) {
            const size_t from = at + begin.size(), end = near.find('"', from);
            const bool isTyped = start + from <= position && (end == near.npos || position <= start + end);
            if (!isTyped && end != near.npos && end > from)
                names.emplace(near.substr(from, end - from));
        }
    }
    return {names.begin(), names.end()};
}

} // namespace zelk
