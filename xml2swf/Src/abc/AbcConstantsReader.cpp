#include "AbcConstantsReader.h"

namespace xml2swf {

using namespace libswf;

static constexpr XmlName poolNames[] = {{"Int", 0},       {"UInt", 1},         {"Double", 2},   {"String", 3},
                                        {"Namespace", 4}, {"NamespaceSet", 5}, {"Multiname", 6}};
const XmlNames abcPoolNames = poolNames;

static constexpr std::string_view constantNames[] = {"Int",       "UInt",         "Double",    "String",
                                                     "Namespace", "NamespaceSet", "Multiname", "Metadata"};
static constexpr XmlNameGroup constantsGroup{"AbcConstants", constantNames};

template <class Element>
AbcListed AbcConstantsReader::listedAs(Element& element, std::string_view attribute) {
    AbcListed entry;
    entry.offset = element.offset();
    if (const auto text = textOf(element, attribute))
        entry.text = kept(element, *text);
    else
        refuse(element, attribute, "it is missing");
    return entry;
}

template <class Element>
void AbcConstantsReader::readEntry(Element& element) {
    if (element.name() == "Metadata") {
        metadata(element);
        _part.metadata.back().copy = UINT32_MAX; // one of its own
        return;
    }
    const uint32_t number = XmlElement::valueOf(abcPoolNames, element.name(), SwfAbcBlock::pools);
    if (number == SwfAbcBlock::pools)
        return refuseElement(element);
    const auto pool = static_cast<Pool>(number);
    AbcListed entry = listedAs(element, pool >= Pool::namespaces ? "Name" : "Value");
    if (pool == Pool::namespaces || pool == Pool::namespaceSets) {
        if (const auto detail = textOf(element, pool == Pool::namespaces ? "Text" : "Namespaces")) {
            entry.hasDetail = true;
            entry.detail = kept(element, *detail);
        }
    }
    if (pool == Pool::namespaces)
        entry.isUnnamed = element.boolean("Unnamed");
    listed[number].push_back(entry);
}

void AbcConstantsReader::readAll(XmlElement& constants) {
    for (XmlElement child : constants.children(constantsGroup, *this))
        readEntry(child);
    parts.push_back(std::move(_own));
}

size_t AbcConstantsReader::read(std::string_view text, size_t start, size_t end) {
    XmlQuickText quick(text, start, end);
    size_t done = start;
    for (quick.passBlanks(); quick.atElement(); quick.passBlanks()) {
        const auto mark = _part.mark();
        std::array<size_t, SwfAbcBlock::pools> entries;
        std::ranges::transform(listed, entries.begin(), [](const auto& pool) { return pool.size(); });
        {
            XmlQuickElement child(_context, quick);
            readEntry(child);
        }
        if (!quick.isUsual()) {
            _part.rollBack(mark);
            for (size_t i = 0; i < listed.size(); ++i)
                listed[i].resize(entries[i]);
            break;
        }
        done = quick.position();
    }
    return done;
}

std::unique_ptr<XmlQuickReader> AbcConstantsReader::another() const {
    return std::make_unique<AbcConstantsReader>(_context, _pools, _block);
}

void AbcConstantsReader::join(XmlQuickReader& other) {
    auto& part = static_cast<AbcConstantsReader&>(other);
    for (size_t i = 0; i < listed.size(); ++i)
        listed[i].insert(listed[i].end(), part.listed[i].begin(), part.listed[i].end());
    parts.push_back(std::move(part._own));
}

} // namespace xml2swf
