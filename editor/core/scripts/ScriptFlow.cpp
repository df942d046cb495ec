#include "ScriptFlow.h"

#include <algorithm>
#include <charconv>

#include "CodeNames.h"
#include "ScriptText.h"
#include "XmlSurroundings.h"

namespace zelk {

using namespace xml2swf;

namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view branches[] = {"Jump", "If", "WaitForFrame", "WaitForFrame2"};
constexpr std::string_view scriptRoots[] = {"DoAction", "DoInitAction", "ClipAction", "ButtonCondaction",
                                            "DefineButton"};
constexpr std::string_view labelTargets[] = {"To", "Default", "From", "Until"};

template <size_t n>
bool isOneOf(const std::string_view (&names)[n], std::string_view name) {
    return std::ranges::find(names, name) != std::end(names);
}

// How far is looked, in bytes.
struct Reach {
    size_t tags;    // over tags
    size_t compile; // of a tag that is compiled to know its sizes
};
constexpr Reach reachOf(FlowEffort effort) {
    return effort == FlowEffort::full ? Reach{size_t(16) << 20, size_t(16) << 20}
                                      : Reach{size_t(1) << 20, size_t(1) << 17};
}

// What is written in a start tag at a caret.
struct Here {
    XmlTagToken tag;
    std::string_view startTag;
    std::vector<TagAttribute> attributes;
    const TagAttribute* atCaret = nullptr; // whose value the caret is in

    const TagAttribute* find(std::string_view name) const {
        const auto found = std::ranges::find(attributes, name, &TagAttribute::name);
        return found == attributes.end() ? nullptr : &*found;
    }
};

// The tag that the caret is in, or else the first one of its line.
std::optional<Here> tagAt(std::string_view text, size_t caret) {
    constexpr size_t longest = 65536;
    caret = std::min(caret, text.size());
    const size_t least = caret > longest ? caret - longest : 0;
    const std::string_view before = text.substr(least, caret - least);
    size_t open = before.rfind('<');
    std::optional<XmlTagToken> tag;
    if (open != before.npos)
        tag = tagTokenAt(text, least + open, std::min(text.size(), caret + longest));
    if (!tag || tag->end < caret) {
        open = text.find_first_not_of(" \t", caret);
        tag = open < text.size() && text[open] == '<' ? tagTokenAt(text, open, std::min(text.size(), open + longest))
                                                      : std::nullopt;
    }
    if (!tag || tag->kind == XmlTagToken::Kind::end)
        return {};
    Here here{*tag, text.substr(tag->open, tag->end - tag->open), {}};
    here.attributes = attributesOf(here.startTag);
    for (const TagAttribute& attribute : here.attributes) {
        const auto start = static_cast<size_t>(attribute.value.data() - text.data());
        if (start <= caret && caret <= start + attribute.value.size())
            here.atCaret = &attribute;
    }
    return here;
}

// The elements around a script or code.
struct Scope {
    size_t root; // "<" of the element in which labels are known
    size_t tag;  // "<" of the movie's tag; that of the root for code
    bool isCode; // of ActionScript 3
};

std::optional<Scope> scopeAround(std::string_view text, size_t position, size_t reach) {
    XmlTagsBefore tags(text, position, reach);
    size_t depth = 0;
    std::optional<Scope> scope;
    while (const auto tag = tags.next()) {
        if (tag->kind == XmlTagToken::Kind::end)
            ++depth;
        if (tag->kind != XmlTagToken::Kind::start)
            continue;
        if (depth > 0) {
            --depth;
            continue;
        }
        if (tag->name == "Code")
            return Scope{tag->open, tag->open, true};
        if (!scope && isOneOf(scriptRoots, tag->name))
            scope = Scope{tag->open, tag->open, false};
        if (scope && holdsScripts(tag->name)) {
            scope->tag = tag->open;
            return scope;
        }
        if (tag->name == "Movie" || tag->name == "DefineSprite")
            return {};
    }
    return {};
}

FlowTarget toElement(std::string_view text, size_t open) {
    const size_t start = open + (text.substr(open + 1).starts_with('/') ? 2 : 1); // the end of a list, by its end tag
    return {start, std::min(text.find_first_of(" \t\r\n/>", start), text.size())};
}

FlowTarget nowhere(std::string reason) { return {0, 0, std::move(reason)}; }

constexpr const char* tooBig = "The script is too big to tell.";

// Calls `see` for every start tag in the element at `root`, while it gives true. False when the element does not end in
// reach.
template <class See>
bool eachTag(std::string_view text, size_t root, size_t reach, See see) {
    const size_t limit = std::min(text.size(), root + reach);
    size_t depth = 0;
    for (size_t at = root; at < limit; at = skipSections(text, at)) {
        const auto tag = tagTokenAt(text, at, limit);
        if (!tag)
            return false;
        if (tag->kind != XmlTagToken::Kind::end && !see(*tag))
            return true;
        if (tag->kind != XmlTagToken::Kind::empty)
            depth += tag->kind == XmlTagToken::Kind::start ? 1 : size_t(-1);
        if (depth == 0)
            return true;
        at = tag->end;
    }
    return false;
}

std::string_view labelsOf(std::string_view text, const XmlTagToken& tag) {
    const std::string_view startTag = text.substr(tag.open, tag.end - tag.open);
    if (startTag.find("At") == startTag.npos) // mostly
        return {};
    const auto at = attributeOf(startTag, "At");
    return at ? at->value : std::string_view();
}

FlowTarget toLabel(std::string_view text, const Scope& scope, std::string_view name, const Reach& reach) {
    std::optional<size_t> found;
    const bool isWhole = eachTag(text, scope.root, 2 * reach.tags, [&](const XmlTagToken& tag) {
        if (holdsName(labelsOf(text, tag), name))
            found = tag.open;
        return !found;
    });
    if (found)
        return toElement(text, *found);
    return nowhere(isWhole ? "No place here is called \"" + std::string(name) + "\"." : std::string(tooBig));
}

FlowTarget toNumber(std::string_view text, const Scope& scope, const Here& here, const Reach& reach) {
    const auto end = elementEnd(text, scope.tag, std::min(text.size(), scope.tag + reach.compile));
    if (!end || here.tag.open >= *end)
        return nowhere(tooBig);
    std::vector<ScriptBranches> scripts;
    try {
        scripts = scriptsOf(text, scope.tag, *end);
    } catch (const std::exception&) {
        return nowhere("The script does not compile.");
    }
    for (const ScriptBranches& script : scripts) {
        const auto branch = std::ranges::find(script.branches, here.tag.open, &ScriptBranches::Branch::element);
        if (branch == script.branches.end())
            continue;
        if (!branch->target)
            return nowhere("This leads to no place in the script.");
        const size_t element = branch->target->element;
        if (!branch->target->isEnd)
            return toElement(text, element);
        const auto last = elementEnd(text, element, *end);
        const auto close = last ? endTagBehind(text, *last, *end - *last) : std::nullopt;
        if (close)
            return toElement(text, close->open);
    }
    return nowhere("This is no branch of a script.");
}

// --- constants -------------------------------------------------------------------------------------------------------

struct PoolInForce {
    std::optional<XmlTagToken> pool = {};
    const char* reason = "No pool is in force here.";
};

// As the order of the actions says.
PoolInForce poolAt(std::string_view text, size_t position, size_t reach) {
    XmlTagsBefore tags(text, position, reach);
    size_t depth = 0;
    while (const auto tag = tags.next()) {
        depth += tag->kind == XmlTagToken::Kind::end ? 1 : 0;
        const bool isClosed = tag->kind == XmlTagToken::Kind::start && depth > 0;
        depth -= isClosed ? 1 : 0;
        if (tag->name == "ConstantPool" && tag->kind != XmlTagToken::Kind::end) {
            if (tag->kind == XmlTagToken::Kind::start && !isClosed)
                return {{}, "An entry of a pool leads nowhere."};
            return depth > 0 ? PoolInForce{{}, "It is not known which pool is in force here."} : PoolInForce{tag};
        }
        if (tag->kind == XmlTagToken::Kind::start && !isClosed && isOneOf(scriptRoots, tag->name))
            return {};
    }
    return {{}, tooBig};
}

// Calls `see` for the "<" and the text of each constant, while it gives true.
template <class See>
void eachConstant(std::string_view text, const XmlTagToken& pool, size_t reach, See see) {
    if (pool.kind == XmlTagToken::Kind::empty)
        return;
    eachTag(text, pool.open, reach, [&](const XmlTagToken& tag) {
        if (tag.name != "Constant")
            return true;
        const auto name = attributeOf(text.substr(tag.open, tag.end - tag.open), "Name");
        return see(tag.open, name ? name->value : std::string_view());
    });
}

std::optional<FlowTarget> constantTarget(std::string_view text, const Here& here, const Reach& reach) {
    const bool isIndex = here.tag.name == "Constant8" || here.tag.name == "Constant16";
    const TagAttribute* value = here.find(isIndex ? "Value" : "Name");
    const PoolInForce force = poolAt(text, here.tag.open, reach.tags);
    if (!force.pool)
        return nowhere(force.reason);
    const std::string_view wanted = value == nullptr ? std::string_view(isIndex ? "0" : "") : value->value;
    size_t index = 0, left = 0;
    if (isIndex && std::from_chars(wanted.data(), wanted.data() + wanted.size(), left).ec != std::errc())
        return nowhere("This is no index.");
    const std::string name = decoded(wanted);
    std::optional<size_t> found;
    eachConstant(text, *force.pool, reach.tags, [&](size_t open, std::string_view constant) {
        if (isIndex ? index++ == left : decoded(constant) == name)
            found = open;
        return !found;
    });
    if (found)
        return toElement(text, *found);
    return nowhere(isIndex ? "The pool in force has no such entry." : "The pool in force gets this text on compiling.");
}

// --- ActionScript 3 --------------------------------------------------------------------------------------------------

std::optional<FlowTarget> nameTarget(std::string_view text, const Here& here) {
    const TagAttribute* value = here.atCaret;
    for (const char* name : {"Name", "Class", "Method", "Type", "Base", "Returns"})
        value = value == nullptr ? here.find(name) : value;
    if (value == nullptr || value->value.empty() || (value->name == "Name" && declaresName(here.tag.name)))
        return {};
    const std::optional<size_t> block = blockAround(text, here.tag.open);
    if (!block)
        return {};
    const auto found = value->name == "Method" ? methodOf(text, *block, value->value)
                                               : declarationOf(text, *block, here.tag.open, value->value);
    if (found)
        return toElement(text, *found);
    return nowhere("Nothing in this movie's code declares \"" + decoded(value->value) + "\".");
}

} // namespace

std::optional<FlowTarget> flowTargetAt(std::string_view text, size_t caret, FlowEffort effort) {
    const Reach reach = reachOf(effort);
    const std::optional<Here> here = tagAt(text, caret);
    if (!here)
        return {};
    const std::string_view name = here->tag.name;
    const TagAttribute* label =
        here->atCaret != nullptr && isOneOf(labelTargets, here->atCaret->name) ? here->atCaret : nullptr;
    for (std::string_view attribute : labelTargets)
        label = label == nullptr ? here->find(attribute) : label;
    const bool isNumber = label == nullptr && isOneOf(branches, name);
    const bool isConstant = name == "Constant8" || name == "Constant16" || name == "Constant";
    if (label != nullptr || isNumber) {
        const std::optional<Scope> scope = scopeAround(text, here->tag.open, reach.tags);
        if (!scope)
            return {};
        if (label != nullptr)
            return toLabel(text, *scope, label->value, reach);
        return scope->isCode ? std::nullopt : std::optional(toNumber(text, *scope, *here, reach));
    }
    if (isConstant)
        return constantTarget(text, *here, reach);
    return effort == FlowEffort::full ? nameTarget(text, *here) : std::nullopt;
}

std::vector<std::string> labelsAround(std::string_view text, size_t position) {
    constexpr Reach reach = reachOf(FlowEffort::quick);
    std::vector<std::string> labels;
    const std::optional<Scope> scope = scopeAround(text, position, reach.tags);
    if (!scope)
        return labels;
    eachTag(text, scope->root, 2 * reach.tags, [&](const XmlTagToken& tag) {
        std::string_view names = labelsOf(text, tag);
        size_t start = 0;
        while ((start = names.find_first_not_of(blanks, start)) != names.npos) {
            const size_t end = std::min(names.find_first_of(blanks, start), names.size());
            labels.emplace_back(names.substr(start, end - start));
            start = end;
        }
        return true;
    });
    return labels;
}

std::vector<std::string> constantsInForce(std::string_view text, size_t position) {
    const size_t reach = reachOf(FlowEffort::quick).tags;
    std::vector<std::string> constants;
    const PoolInForce force = poolAt(text, position, reach);
    if (force.pool)
        eachConstant(text, *force.pool, reach, [&](size_t, std::string_view name) {
            constants.emplace_back(name);
            return true;
        });
    return constants;
}

} // namespace zelk
