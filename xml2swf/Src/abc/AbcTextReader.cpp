#include "AbcTextReader.h"

namespace xml2swf {

using namespace libswf;

std::optional<SwfAbcTrait::Kind> AbcTextReader::traitKind(std::string_view element) {
    for (size_t i = 0; i < std::size(abcTraitElements); ++i) {
        if (element == abcTraitElements[i])
            return static_cast<SwfAbcTrait::Kind>(i);
    }
    return {};
}

// What is between the brackets behind a word.
static std::optional<std::string_view> behind(std::string_view text, std::string_view word) {
    if (!text.starts_with(word) || text.size() < word.size() + 2 || text[word.size()] != '(' || text.back() != ')')
        return {};
    return text.substr(word.size() + 1, text.size() - word.size() - 2);
}

template <class Element>
SwfAbcValue AbcTextReader::valueIn(Element& element, std::string_view attribute, std::string_view text) {
    static constexpr struct {
        std::string_view word;
        Pool pool;
        uint8_t kind;
    } words[] = {{"int", Pool::integers, AbcValueKind::integer},
                 {"uint", Pool::uintegers, AbcValueKind::uinteger},
                 {"double", Pool::doubles, AbcValueKind::real},
                 {"string", Pool::strings, AbcValueKind::string}};
    for (const auto& word : words) {
        if (const auto inner = behind(text, word.word))
            return {entry(element, word.pool, attribute, *inner), word.kind};
    }
    for (const XmlName& plain : abcPlainValues) {
        if (text == plain.name)
            return {plain.value, static_cast<uint8_t>(plain.value)};
    }
    if (const auto inner = behind(text, "index")) {
        const int64_t number = parseInteger(*inner).value_or(-1);
        if (number < 0 || number > INT32_MAX)
            refuse(element, attribute, "\"" + std::string(text) + "\" has no index in its brackets");
        return {static_cast<uint32_t>(number), 0};
    }
    const uint32_t space = entry(element, Pool::namespaces, attribute, text);
    return {space, space < _block.namespaces.size() ? _block.namespaces[space].kind : abcKindOfNamespace};
}

template <class Element>
SwfAbcValue AbcTextReader::value(Element& element, std::string_view attribute) {
    const auto text = textIfThere(element, attribute);
    SwfAbcValue result = text ? valueIn(element, attribute, *text) : SwfAbcValue();
    if (element.has("ValueKind"))
        result.kind = element.ui8("ValueKind");
    return result;
}

template <class Element>
void AbcTextReader::traitAttributes(Element& element, SwfAbcTrait& trait) {
    using Kind = SwfAbcTrait::Kind;
    if (const auto name = textOf(element, "Name"))
        trait.name = entry(element, Pool::multinames, "Name", *name);
    const bool hasDispId = trait.kind == Kind::method || trait.kind == Kind::getter || trait.kind == Kind::setter;
    trait.id = number(element, hasDispId ? "DispId" : "SlotId");
    if (trait.holdsValue()) {
        trait.type = index(element, "Type", Pool::multinames);
        if (element.has("Value"))
            trait.value = value(element, "Value");
    }
    if (trait.kind == Kind::classSlot) {
        if (const auto text = textOf(element, "Class"))
            trait.index = refer(element, AbcReference::Kind::classIndex, {}, "Class", *text);
        else
            refuse(element, "Class", "it does not say which class it stands for");
    }
    trait.flags = static_cast<uint8_t>(flags(element, abcTraitFlags));
    if (element.boolean("HasMetadata"))
        trait.flags |= SwfAbcTrait::hasMetadata;
}

template <class Element>
uint32_t AbcTextReader::metadata(Element& element) {
    AbcMetadataText text;
    text.metadata.name = index(element, "Name", Pool::strings);
    text.copy = element.has("Copy") ? static_cast<uint32_t>(element.ranged("Copy", 1, INT32_MAX)) : 1;
    for (Element child : element.anyChildren("Item")) {
        if (child.name() != "Item") {
            refuseElement(child);
            continue;
        }
        const uint32_t key = index(child, "Key", Pool::strings);
        text.metadata.items.push_back({key, index(child, "Value", Pool::strings)});
    }
    _part.metadata.push_back(std::move(text));
    return static_cast<uint32_t>(_part.metadata.size() - 1);
}

template <class Element>
void AbcTextReader::activationTrait(Element& element, SwfAbcTraits& traits) {
    const auto kind = traitKind(element.name());
    if (!kind)
        return refuseElement(element);
    SwfAbcTrait trait;
    trait.kind = *kind;
    traitAttributes(element, trait);
    if (!trait.holdsValue() && trait.kind != SwfAbcTrait::Kind::classSlot) {
        if (const auto text = textOf(element, "Method"))
            trait.index = refer(element, AbcReference::Kind::method, {}, "Method", *text);
        else
            refuse(element, "Method", "it does not say which method it stands for");
    }
    for (Element child : element.anyChildren("Metadata")) {
        if (child.name() == "Metadata")
            trait.metadata.push_back(metadata(child));
        else
            refuseElement(child);
    }
    if (!trait.metadata.empty())
        trait.flags |= SwfAbcTrait::hasMetadata;
    traits.push_back(std::move(trait));
}

template SwfAbcValue AbcTextReader::value(XmlElement&, std::string_view);
template SwfAbcValue AbcTextReader::value(XmlQuickElement&, std::string_view);
template void AbcTextReader::traitAttributes(XmlElement&, SwfAbcTrait&);
template void AbcTextReader::traitAttributes(XmlQuickElement&, SwfAbcTrait&);
template uint32_t AbcTextReader::metadata(XmlElement&);
template uint32_t AbcTextReader::metadata(XmlQuickElement&);
template void AbcTextReader::activationTrait(XmlElement&, SwfAbcTraits&);
template void AbcTextReader::activationTrait(XmlQuickElement&, SwfAbcTraits&);

} // namespace xml2swf
