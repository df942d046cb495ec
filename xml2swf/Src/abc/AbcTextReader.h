// What the readers of a block's text have in common. Readers are templates over XmlElement and XmlQuickElement: these
// give up where something is wrong, and the text is read again as nodes, which tell what it is.
#pragma once

#include <array>
#include <charconv>

#include "AbcFlags.h"
#include "AbcPart.h"
#include "XmlElement.h"
#include "XmlQuickElement.h"

namespace xml2swf {

class AbcTextReader {
public:
    AbcTextReader(AbcPart& part, const AbcPools& pools, const libswf::SwfAbcBlock& block)
        : _part(part), _pools(pools), _block(block) {}

protected:
    using Pool = AbcPools::Pool;

    /// `form` says what the text is taken for.
    std::optional<std::string_view> textOf(XmlElement& element, std::string_view name, const XmlValueForm& form = {}) {
        return element.attribute(name, form);
    }
    std::optional<std::string_view> textOf(XmlQuickElement& element, std::string_view name, const XmlValueForm& = {}) {
        return element.attribute(name, _room);
    }
    /// A text that a new element does not have.
    std::optional<std::string_view> textIfThere(XmlElement& element, std::string_view name) {
        return element.has(name) ? element.attribute(name) : std::nullopt;
    }
    std::optional<std::string_view> textIfThere(XmlQuickElement& element, std::string_view name) {
        return element.attribute(name, _room);
    }

    /// A text that lives as long as the part. Those of quick elements mostly stand in the document.
    std::string_view kept(XmlElement&, std::string_view text) { return _part.arena.keep(text); }
    std::string_view kept(XmlQuickElement&, std::string_view text) {
        return text.data() == _room.data() ? _part.arena.keep(text) : text;
    }

    // With an observer nothing is refused: it only wants to know what would be read.
    static void refuse(XmlElement& element, std::string_view attribute, std::string reason) {
        if (element.context().observer == nullptr)
            refuseAbcText(element.name(), attribute, std::move(reason), element.offset());
    }
    static void refuse(XmlQuickElement& element, std::string_view, const std::string&) { element.skip(); }
    static bool isObserved(XmlElement& element) { return element.context().observer != nullptr; }
    static bool isObserved(XmlQuickElement&) { return false; }
    static void refuseElement(XmlElement& element) {
        if (element.context().observer != nullptr)
            element.skip();
        refuse(element, "", "no element of this name can stand here");
    }
    static void refuseElement(XmlQuickElement& element) { element.skip(); }

    template <class Element>
    uint32_t refer(Element& element, AbcReference::Kind kind, Pool pool, std::string_view attribute,
                   std::string_view text) {
        _part.references.push_back(
            {kind, pool, kept(element, text), kept(element, element.name()), attribute, element.offset()});
        return abcIsReference | static_cast<uint32_t>(_part.references.size() - 1);
    }

    uint32_t indexOf(XmlElement&, Pool pool, std::string_view text) { return _pools.find(pool, text); }
    uint32_t indexOf(XmlQuickElement&, Pool pool, std::string_view text) {
        return _pools.find(pool, text, _near[static_cast<size_t>(pool)]);
    }

    template <class Element>
    uint32_t entry(Element& element, Pool pool, std::string_view attribute, std::string_view text) {
        const uint32_t found = indexOf(element, pool, text);
        return found != AbcPools::none ? found : refer(element, AbcReference::Kind::entry, pool, attribute, text);
    }
    /// The index of what an attribute names; 0 when it is missing.
    template <class Element>
    uint32_t index(Element& element, std::string_view attribute, Pool pool) {
        const auto text = textIfThere(element, attribute);
        return text ? entry(element, pool, attribute, *text) : 0;
    }
    template <class Element>
    uint32_t number(Element& element, std::string_view attribute) {
        return static_cast<uint32_t>(element.ranged(attribute, 0, UINT32_MAX));
    }
    template <class Element>
    uint32_t place(Element& element) {
        return element.has("Place") ? static_cast<uint32_t>(element.ranged("Place", 0, INT32_MAX)) : abcNoPlace;
    }

    template <class Element>
    uint32_t flags(Element& element, const AbcFlags& names) {
        uint32_t value = 0;
        for (const XmlName& flag : names.named)
            value |= element.boolean(flag.name) ? flag.value : 0;
        if (names.rest() != 0)
            value |= number(element, "Flags") & names.rest();
        return value;
    }

    template <class Element>
    libswf::SwfAbcValue value(Element& element, std::string_view attribute);
    /// All but name and metadata; not the method that it stands for.
    template <class Element>
    void traitAttributes(Element& element, libswf::SwfAbcTrait& trait);
    template <class Element>
    uint32_t metadata(Element& element);
    /// A trait of an activation object, whose method stands elsewhere.
    template <class Element>
    void activationTrait(Element& element, libswf::SwfAbcTraits& traits);

    /// The kind of trait that an element is; none for others.
    static std::optional<libswf::SwfAbcTrait::Kind> traitKind(std::string_view element);

    AbcPart& _part;
    const AbcPools& _pools;
    const libswf::SwfAbcBlock& _block;
    std::string _room;

private:
    std::array<uint32_t, libswf::SwfAbcBlock::pools> _near{}; // by pool, where a text was found last

    template <class Element>
    libswf::SwfAbcValue valueIn(Element& element, std::string_view attribute, std::string_view text);
};

} // namespace xml2swf
