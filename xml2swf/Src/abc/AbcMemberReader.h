// Classes, scripts and their members from XML.
#pragma once

#include "AbcCodeReader.h"

namespace xml2swf {

class AbcMemberReader : private AbcTextReader {
public:
    AbcMemberReader(AbcPart& part, const AbcPools& pools, const libswf::SwfAbcBlock& block)
        : AbcTextReader(part, pools, block), _code(part, pools, block) {}

    /// A child of Abc.
    template <class Element>
    void readTop(Element& element);
    /// A child of Class, Static or Script.
    template <class Element>
    void readMember(Element& element, AbcClassText& target);
    template <class Element>
    void readStaticMember(Element& element, AbcClassText& target);
    template <class Element>
    void readScriptMember(Element& element, AbcScriptText& target);

    /// A class or script without its members.
    void readClassHead(XmlElement& element);
    void readScriptHead(XmlElement& element);

private:
    template <class Element>
    void classAttributes(Element& element, AbcClassText& target);
    template <class Element>
    void readClass(Element& element);
    template <class Element>
    void readScript(Element& element);
    template <class Element>
    bool readTrait(Element& element, libswf::SwfAbcTraits& traits);
    template <class Element>
    uint32_t readMethod(Element& element, libswf::SwfAbcTrait* trait);
    template <class Element>
    void methodAttributes(Element& element, AbcMethodText& method);
    template <class Element>
    void readMethodChild(Element& child, uint32_t method, libswf::SwfAbcTrait* trait);
    template <class Element>
    void readParameter(Element& element, libswf::SwfAbcMethod& method);
    template <class Element>
    void only(Element& element, bool& isThere);

    AbcCodeReader _code;
};

/// What the elements may hold.
extern const XmlNameGroup abcTopNames, abcClassNames, abcStaticNames, abcScriptNames;

} // namespace xml2swf
