#include "XmlDifference.h"

#include <rapidxml/rapidxml.hpp>

#include <algorithm>
#include <memory>

namespace xml2swf {

namespace {

using RawNode = rapidxml::xml_node<char>;
using RawAttribute = rapidxml::xml_attribute<char>;

// An element in parsed form. The tag writers bound its depth, so that the parser may recurse.
class ParsedElement {
public:
    explicit ParsedElement(std::string_view text) : _copy(text) { _document->parse<0>(_copy.data()); }
    const RawNode& root() const { return *_document->first_node(); }

private:
    std::string _copy; // the parser writes into it
    std::unique_ptr<rapidxml::xml_document<char>> _document = std::make_unique<rapidxml::xml_document<char>>();
};

std::string_view nameOf(const RawNode& node) { return {node.name(), node.name_size()}; }
std::string_view nameOf(const RawAttribute& attribute) { return {attribute.name(), attribute.name_size()}; }
std::string_view valueOf(const RawAttribute& attribute) { return {attribute.value(), attribute.value_size()}; }

// The part of a long value that shows where it parts from the other.
std::string excerpt(std::string_view value, size_t differsAt) {
    constexpr size_t most = 60, before = 10;
    if (value.size() <= most)
        return std::string(value);
    const size_t start = std::max(std::min(differsAt, value.size()), before) - before;
    std::string text(value.substr(start, most));
    if (start != 0)
        text.insert(0, "...");
    if (start + most < value.size())
        text += "...";
    return text + " (" + std::to_string(value.size()) + " characters)";
}

FieldDifference valuesOf(std::string path, std::string_view a, std::string_view b) {
    const size_t at = static_cast<size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
    return {std::move(path), excerpt(a, at), excerpt(b, at)};
}

std::string tagText(const RawNode& node) { return "<" + std::string(nameOf(node)) + ">"; }

RawNode* elementFrom(RawNode* node) {
    while (node != nullptr && node->type() != rapidxml::node_element)
        node = node->next_sibling();
    return node;
}

// All CDATA sections: the writers put text nowhere else.
std::string textOf(const RawNode& node) {
    std::string text;
    for (RawNode* child = node.first_node(); child != nullptr; child = child->next_sibling()) {
        if (child->type() == rapidxml::node_cdata)
            text.append(child->value(), child->value_size());
    }
    return text;
}

// "/Name", with a number when the parent has several children of the name.
std::string stepTo(const RawNode& node) {
    uint32_t position = 1, count = 0;
    for (RawNode* other = node.parent()->first_node(); other != nullptr; other = other->next_sibling()) {
        if (other->type() != rapidxml::node_element || nameOf(*other) != nameOf(node))
            continue;
        ++count;
        if (other == &node)
            position = count;
    }
    const std::string step = "/" + std::string(nameOf(node));
    return count > 1 ? step + "[" + std::to_string(position) + "]" : step;
}

using Found = std::optional<FieldDifference>;

// Paths are relative to the elements compared.
Found differingAttribute(const RawNode& a, const RawNode& b) {
    for (const RawAttribute* mine = a.first_attribute(); mine != nullptr; mine = mine->next_attribute()) {
        const RawAttribute* other = b.first_attribute(mine->name(), mine->name_size());
        const std::string place = "/@" + std::string(nameOf(*mine));
        if (other == nullptr)
            return FieldDifference{place, excerpt(valueOf(*mine), 0), {}};
        if (valueOf(*mine) != valueOf(*other))
            return valuesOf(place, valueOf(*mine), valueOf(*other));
    }
    for (const RawAttribute* other = b.first_attribute(); other != nullptr; other = other->next_attribute()) {
        if (a.first_attribute(other->name(), other->name_size()) == nullptr)
            return FieldDifference{"/@" + std::string(nameOf(*other)), {}, excerpt(valueOf(*other), 0)};
    }
    return {};
}

Found differingElement(const RawNode& a, const RawNode& b) {
    if (nameOf(a) != nameOf(b))
        return FieldDifference{{}, tagText(a), tagText(b)};
    if (Found attribute = differingAttribute(a, b))
        return attribute;
    const std::string text = textOf(a), otherText = textOf(b);
    if (text != otherText)
        return valuesOf({}, text, otherText);
    RawNode* mine = elementFrom(a.first_node());
    RawNode* other = elementFrom(b.first_node());
    for (; mine != nullptr && other != nullptr; mine = elementFrom(mine->next_sibling())) {
        if (Found found = differingElement(*mine, *other)) {
            found->path.insert(0, stepTo(*mine));
            return found;
        }
        other = elementFrom(other->next_sibling());
    }
    if (mine != nullptr)
        return FieldDifference{stepTo(*mine), tagText(*mine), {}};
    if (other != nullptr)
        return FieldDifference{stepTo(*other), {}, tagText(*other)};
    return {};
}

} // namespace

FieldDifference firstDifference(std::string_view a, std::string_view b) {
    try {
        const ParsedElement parsedA(a), parsedB(b);
        const RawNode& rootA = parsedA.root();
        if (Found found = differingElement(rootA, parsedB.root())) {
            found->path.insert(0, nameOf(rootA));
            return *found;
        }
    } catch (const rapidxml::parse_error&) { // a value that holds a NUL
    }
    return valuesOf("text", a, b);
}

} // namespace xml2swf
