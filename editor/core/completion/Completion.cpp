#include "Completion.h"

#include <algorithm>

#include "CharacterText.h"
#include "CodeNames.h"
#include "ScriptFlow.h"
#include "XmlSurroundings.h"

namespace zelk {

using namespace xml2swf;

namespace {

std::vector<std::string> elementsFor(const XmlSurroundings& around) {
    if (around.isTop)
        return {std::string(around.vocabulary->movie().name)};
    std::vector<std::string> words;
    if (around.type == nullptr)
        return words;
    for (const XmlChildForm& child : around.type->ownChildren) {
        if (!around.type->isOrdered || std::ranges::find(around.siblings, child.name) == around.siblings.end())
            words.emplace_back(child.name);
    }
    if (around.type->group != nullptr) {
        const auto own = static_cast<ptrdiff_t>(words.size());
        for (const XmlChildForm& child : around.type->group->children)
            words.emplace_back(child.name);
        std::sort(words.begin() + own, words.end());
    }
    if (!around.name.empty())
        words.push_back("/" + std::string(around.name));
    return words;
}

// All names in a tag that stand before "=".
bool hasAttribute(std::string_view tag, std::string_view name) {
    for (size_t at = tag.find(name); at != tag.npos; at = tag.find(name, at + 1)) {
        const size_t behind = tag.find_first_not_of(" \t\r\n", at + name.size());
        if (std::string_view(" \t\r\n").find(tag[at - 1]) != std::string_view::npos && behind != tag.npos &&
            tag[behind] == '=')
            return true;
    }
    return false;
}

std::vector<std::string> attributesFor(const XmlElementType& type, std::string_view text, const XmlPlaceKind& place) {
    const size_t end = std::min(text.find_first_of("<>", place.open + 1), text.size());
    const std::string_view tag = text.substr(place.open, end - place.open);
    std::vector<std::string> words;
    for (const XmlAttributeForm& attribute : type.attributes) {
        if (!hasAttribute(tag, attribute.name))
            words.emplace_back(attribute.name);
    }
    return words;
}

std::vector<std::string> valuesFor(const XmlElementType& type, std::string_view name) {
    const XmlAttributeForm* attribute = type.attribute(name);
    if (attribute == nullptr)
        return {};
    if (attribute->value.kind == XmlValueForm::Kind::boolean)
        return {"true", "false"};
    std::vector<std::string> words;
    for (const XmlName& value : attribute->value.names)
        words.emplace_back(value.name);
    return words;
}

template <size_t n>
bool isOneOf(const std::string_view (&names)[n], std::string_view name) {
    return std::ranges::find(names, name) != std::end(names);
}

// What the text itself has for a value: labels, constants, names of code. Nothing where the vocabulary knows better.
std::vector<std::string> wordsOfText(const XmlSurroundings& around, std::string_view text, const XmlPlaceKind& place) {
    constexpr std::string_view targets[] = {"To", "From", "Until", "Default"};
    constexpr std::string_view names[] = {"Name", "Type", "Base", "Returns", "Class"};
    constexpr std::string_view holders[] = {"Code", "Abc", "Class", "Static", "Method", "Getter", "Setter", "Function"};
    std::vector<std::string> words;
    if (isOneOf(targets, place.attribute))
        words = labelsAround(text, place.open);
    else if (place.element == "Constant" && around.name == "Push")
        words = constantsInForce(text, place.open);
    else if (isOneOf(names, place.attribute) && isOneOf(holders, around.name))
        words = namesAround(text, place.start);
    std::erase_if(words, [](const std::string& word) { return word.find('\n') != word.npos; });
    return words;
}

} // namespace

std::optional<Completion> completionAt(std::string_view text, size_t position, std::optional<bool> fullForm,
                                       const CharacterIndex* characters) {
    using In = XmlPlaceKind::In;
    const XmlPlaceKind place = placeKindAt(text, position);
    if (place.in == In::content || place.in == In::elsewhere)
        return std::nullopt;
    if (place.in == In::value && characters != nullptr) {
        IdProposals ids = idsFor(*characters, place.element, place.attribute);
        if (!ids.ids.empty())
            return Completion{Completion::Kind::value, place.start, std::move(ids.ids), std::move(ids.notes)};
    }
    XmlSurroundings around = surroundingsOf(vocabularyOf(text, fullForm), text, place.open);
    if ((place.in == In::name || place.in == In::endName) && around.name.empty() && !around.isTop) {
        if (const auto open = openTagBefore(text, place.open)) // It may be further away than what tells its type.
            around.name = open->name;
    }
    Completion completion{Completion::Kind::element, place.start, {}};
    if (place.in == In::name) {
        completion.words = elementsFor(around);
    } else if (place.in == In::endName) {
        completion.kind = Completion::Kind::endTag;
        if (!around.name.empty())
            completion.words.emplace_back(around.name);
    } else if (auto words = place.in == In::value ? wordsOfText(around, text, place) : std::vector<std::string>();
               !words.empty()) {
        completion.kind = Completion::Kind::value;
        completion.words = std::move(words);
    } else if (const XmlElementType* type = typeOfElement(around, place.element)) {
        const bool isValue = place.in == In::value;
        completion.kind = isValue ? Completion::Kind::value : Completion::Kind::attribute;
        completion.words = isValue ? valuesFor(*type, place.attribute) : attributesFor(*type, text, place);
    }
    return completion.words.empty() ? std::nullopt : std::optional(std::move(completion));
}

} // namespace zelk
