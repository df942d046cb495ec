// Bodies of methods from XML.
#pragma once

#include "AbcTextReader.h"
#include "SwfAbcCode.h"

namespace xml2swf {

/// Reads Code elements, one after the other.
class AbcCodeReader : private AbcTextReader {
public:
    using AbcTextReader::AbcTextReader;

    /// Adds the body of a method of the part.
    template <class Element>
    void read(Element& code, uint32_t method);

    // What is noted of children that turn out to be of an unusual form.
    struct Mark {
        size_t code, branches, operands, labels, catches, traits;
    };
    Mark mark() const;
    void rollBack(const Mark& mark);

private:
    static constexpr uint32_t unknownPlace = UINT32_MAX;

    // Something that leads to a label.
    struct Aim {
        AbcBranch branch; // its target is the number of the label
        std::string_view element, attribute;
    };
    struct Catch {
        libswf::SwfAbcException exception; // its places are numbers of labels, or bytes
        std::string_view name;             // by which instructions refer to it
        bool areBytes = false;
        size_t offset = 0;
    };

    void begin();
    template <class Element>
    void readLimits(Element& code, AbcBodyText& body);
    template <class Element>
    void readChild(Element& child);
    template <class Element>
    void readActivation(Element& element);
    template <class Element>
    void readInstruction(Element& element, const libswf::SwfAbcOpcode& opcode);
    template <class Element>
    void readOperand(Element& element, libswf::SwfAbcOperand kind, uint32_t start);
    template <class Element>
    void readIndex(Element& element, libswf::SwfAbcOperand kind);
    template <class Element>
    void readCases(Element& element, uint32_t start);
    template <class Element>
    void readTarget(Element& element, std::string_view label, std::string_view offset, uint32_t base);
    template <class Element>
    void readCatch(Element& element);
    template <class Element>
    uint32_t readPlace(Element& element, std::string_view label, std::string_view byte, bool& isByte);
    template <class Element>
    void takeLabels(Element& element);
    template <class Element>
    void finish(Element& code, AbcBodyText& body);
    template <class Element>
    bool resolveTargets(Element& code);
    template <class Element>
    bool resolveCatches(Element& code, AbcBodyText& body);
    template <class Element>
    bool resolveCatchNames(Element& code);
    void keepCode(AbcBodyText& body);
    void measure(AbcBodyText& body) const;

    void readBytes(XmlElement& element);
    void readBytes(XmlQuickElement& element) { element.skip(); }

    uint32_t labelOf(std::string_view text);
    uint32_t here() const { return static_cast<uint32_t>(_part.code.size() - _start); }
    void putU30(uint32_t value);
    void putS24() { _part.code.resize(_part.code.size() + 3); }

    size_t _start = 0; // of the body in the part's code
    bool _isBytes = false;
    AbcTextTable _labels;
    std::vector<std::string_view> _labelTexts;
    std::vector<uint32_t> _labelPlaces;
    std::vector<uint32_t> _given; // labels, in the order of their places
    std::vector<Aim> _aims;
    std::vector<AbcMissingOperand> _operands;
    std::vector<Catch> _catches;
    libswf::SwfAbcTraits _traits;
};

} // namespace xml2swf
