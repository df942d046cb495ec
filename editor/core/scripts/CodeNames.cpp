#include "CodeNames.h"

#include <algorithm>
#include <set>

#include "TagText.h"
#include "XmlSurroundings.h"

namespace zelk {

namespace {

constexpr std::string_view declarations[] = {"Class", "Method", "Getter",       "Setter",
                                             "Slot",  "Const",  "FunctionSlot", "ClassSlot"};
constexpr std::string_view nameAttributes[] = {"Name", "Type", "Base", "Returns", "Class"};

// A block of code in the text.
struct Block {
    size_t start, end;
};

std::optional<Block> blockAround(std::string_view text, size_t position) {
    const size_t start = text.rfind("<Abc", position), end = text.find("</Abc>", position);
    if (start == text.npos || end == text.npos || text.substr(start, position - start).find("</Abc>") != text.npos)
        return {};
    return Block{start, end};
}

// The part of a name that says no place: "x" of "private(A)::x".
std::string_view lastPart(std::string_view name) {
    const size_t colons = name.rfind("::");
    return colons == name.npos ? name : name.substr(colons + 2);
}

// The classes of a block by where they start.
class Classes {
public:
    Classes(std::string_view text, const Block& block) : _text(text.substr(0, block.end)) {
        constexpr std::string_view open = "<Class ";
        for (size_t at = _text.find(open, block.start); at != _text.npos; at = _text.find(open, at + 1))
            _starts.push_back(at);
    }
    // The class that stands last before a place; 0 when there is none. Scripts and functions come behind all classes.
    size_t before(size_t position) const {
        const auto next = std::ranges::upper_bound(_starts, position);
        return next == _starts.begin() ? 0 : next[-1];
    }

private:
    const std::string_view _text;
    std::vector<size_t> _starts;
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

bool isInCode(std::string_view text, size_t position) { return blockAround(text, position).has_value(); }

bool declaresName(std::string_view element) {
    return std::ranges::find(declarations, element) != std::end(declarations);
}

std::optional<size_t> declarationOf(std::string_view text, size_t position, std::string_view name) {
    const auto block = blockAround(text, position);
    const std::string_view last = lastPart(name);
    if (!block || last.empty())
        return {};
    const std::string_view within = text.substr(0, block->end);
    const Classes classes(text, *block);
    const std::string ending = std::string(last) + '"';
    std::optional<size_t> best;
    int bestRank = -1;
    for (size_t at = within.find(ending, block->start); at != within.npos; at = within.find(ending, at + 1)) {
        if (within[at - 1] != '"' && within[at - 1] != ':')
            continue;
        const auto element = elementWithValueAt(within, at, "Name");
        if (!element || !declaresName(element->name))
            continue;
        const size_t quote = within.rfind('"', at - 1) + 1;
        const std::string_view declared = within.substr(quote, at + last.size() - quote);
        const int found =
            rank(element->name, declared, name, classes.before(element->open) == classes.before(position));
        if (found > bestRank)
            best = element->open;
        bestRank = std::max(bestRank, found);
    }
    if (best)
        return best;
    const size_t elsewhere = text.find("<Class Name=\"" + std::string(name) + '"');
    return elsewhere == text.npos ? std::nullopt : std::optional(elsewhere);
}

std::optional<size_t> methodOf(std::string_view text, size_t position, std::string_view id) {
    const auto block = blockAround(text, position);
    if (!block)
        return {};
    const std::string_view within = text.substr(0, block->end);
    const std::string wanted = " Id=\"" + std::string(id) + '"';
    for (size_t at = within.find(wanted, block->start); at != within.npos; at = within.find(wanted, at + 1)) {
        const auto element = elementWithValueAt(within, at + 5, "Id");
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
