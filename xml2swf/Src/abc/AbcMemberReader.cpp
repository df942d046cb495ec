#include "AbcMemberReader.h"

#include "AbcQuickChildren.h"

namespace xml2swf {

using namespace libswf;

static constexpr std::string_view topNames[] = {"Class", "Script", "Function", "Constants"};
static constexpr std::string_view classNames[] = {"Implements",   "Constructor", "Slot",      "Method",
                                                  "Getter",       "Setter",      "ClassSlot", "Const",
                                                  "FunctionSlot", "Function",    "Static"};
static constexpr std::string_view staticNames[] = {"Initializer", "Slot",  "Method",       "Getter",  "Setter",
                                                   "ClassSlot",   "Const", "FunctionSlot", "Function"};
static constexpr std::string_view methodNames[] = {"Metadata", "Parameter", "Code"};
const XmlNameGroup abcTopNames{"AbcParts", topNames}, abcClassNames{"AbcMembers", classNames},
    abcStaticNames{"AbcStatics", staticNames}, abcScriptNames = abcStaticNames;
static constexpr XmlNameGroup abcMethodNames{"AbcMethodParts", methodNames},
    abcFunctionNames{"AbcFunctionParts", std::span(methodNames).subspan(1)}; // no member: it has no metadata

namespace {

// What children of a method's element add to.
struct MethodTarget {
    AbcPart& part;
    const uint32_t method; // may be a reference
    SwfAbcTrait* const trait;

    struct Mark {
        size_t parameters = 0, optionals = 0, metadata = 0;
        uint8_t flags = 0;
    };
    Mark mark() const {
        Mark mark;
        mark.metadata = trait == nullptr ? 0 : trait->metadata.size();
        if (method < abcIsReference) {
            const SwfAbcMethod& text = part.methods[method].method;
            mark.parameters = text.parameterTypes.size();
            mark.optionals = text.optionals.size();
            mark.flags = text.flags;
        }
        return mark;
    }
    void rollBack(const Mark& mark) const {
        if (trait != nullptr)
            trait->metadata.resize(mark.metadata);
        if (method < abcIsReference) {
            SwfAbcMethod& text = part.methods[method].method;
            text.parameterTypes.resize(mark.parameters);
            text.parameterNames.resize(mark.parameters);
            text.optionals.resize(mark.optionals);
            text.flags = mark.flags;
        }
    }
};

} // namespace

// --- methods ---------------------------------------------------------------------------------------------------------

template <class Element>
void AbcMemberReader::methodAttributes(Element& element, AbcMethodText& text) {
    SwfAbcMethod& method = text.method;
    if (const auto id = textIfThere(element, "Id"))
        text.id = kept(element, *id);
    text.place = place(element);
    method.name = index(element, "DebugName", Pool::strings);
    method.returnType = index(element, "Returns", Pool::multinames);
    method.flags = static_cast<uint8_t>(flags(element, abcMethodFlags));
    if (element.boolean("HasOptional"))
        method.flags |= SwfAbcMethod::hasOptional;
    if (element.boolean("HasParamNames"))
        method.flags |= SwfAbcMethod::hasParamNames;
}

// The number of the method that the element holds, or a reference to another one.
template <class Element>
uint32_t AbcMemberReader::readMethod(Element& element, SwfAbcTrait* trait) {
    const auto other = textIfThere(element, "Method");
    uint32_t method = abcIsReference;
    if (other && !isObserved(element)) {
        method = refer(element, AbcReference::Kind::method, {}, "Method", *other);
    } else {
        method = static_cast<uint32_t>(_part.methods.size());
        AbcMethodText& text = _part.methods.emplace_back();
        text.offset = element.offset();
        methodAttributes(element, text);
    }
    MethodTarget target{_part, method, trait};
    readAbcChildren(element, trait == nullptr ? abcFunctionNames : abcMethodNames, _part, target,
                    [&](auto& child) { readMethodChild(child, method, trait); });
    return method;
}

template <class Element>
void AbcMemberReader::readMethodChild(Element& child, uint32_t method, SwfAbcTrait* trait) {
    const bool isHere = method < abcIsReference;
    if (isHere && child.name() == "Code")
        _code.read(child, method);
    else if (isHere && child.name() == "Parameter")
        readParameter(child, _part.methods[method].method);
    else if (trait != nullptr && child.name() == "Metadata")
        trait->metadata.push_back(metadata(child));
    else
        refuseElement(child);
}

template <class Element>
void AbcMemberReader::readParameter(Element& element, SwfAbcMethod& method) {
    const bool isNamed = element.has("Name");
    const uint32_t name = index(element, "Name", Pool::strings);
    if (isNamed)
        method.flags |= SwfAbcMethod::hasParamNames;
    method.parameterNames.push_back(name);
    method.parameterTypes.push_back(index(element, "Type", Pool::multinames));
    if (element.has("Default")) {
        method.flags |= SwfAbcMethod::hasOptional;
        method.optionals.push_back(value(element, "Default"));
    } else if (!method.optionals.empty()) {
        refuse(element, "Default", "a parameter before it has a default");
    }
}

// --- members ---------------------------------------------------------------------------------------------------------

template <class Element>
bool AbcMemberReader::readTrait(Element& element, SwfAbcTraits& traits) {
    const auto kind = traitKind(element.name());
    if (!kind)
        return false;
    SwfAbcTrait trait;
    trait.kind = *kind;
    traitAttributes(element, trait);
    if (trait.holdsValue() || trait.kind == SwfAbcTrait::Kind::classSlot) {
        for (Element child : element.anyChildren("Metadata")) {
            if (child.name() == "Metadata")
                trait.metadata.push_back(metadata(child));
            else
                refuseElement(child);
        }
    } else {
        trait.index = readMethod(element, &trait);
    }
    if (!trait.metadata.empty())
        trait.flags |= SwfAbcTrait::hasMetadata;
    traits.push_back(std::move(trait));
    return true;
}

template <class Element>
void AbcMemberReader::only(Element& element, bool& isThere) {
    if (isThere)
        refuse(element, "", "there is one already");
    isThere = true;
}

template <class Element>
void AbcMemberReader::readMember(Element& element, AbcClassText& target) {
    if (readTrait(element, target.entry.traits))
        return;
    if (element.name() == "Function") {
        readMethod(element, nullptr);
    } else if (element.name() == "Constructor") {
        only(element, target.hasConstructor);
        target.entry.constructor = readMethod(element, nullptr);
    } else if (element.name() == "Static") {
        readAbcChildren(element, abcStaticNames, _part, target, [&](auto& child) { readStaticMember(child, target); });
    } else if (element.name() == "Implements") {
        target.entry.interfaces.push_back(index(element, "Name", Pool::multinames));
    } else {
        refuseElement(element);
    }
}

template <class Element>
void AbcMemberReader::readStaticMember(Element& element, AbcClassText& target) {
    if (readTrait(element, target.entry.staticTraits))
        return;
    if (element.name() == "Function") {
        readMethod(element, nullptr);
    } else if (element.name() == "Initializer") {
        only(element, target.hasInitializer);
        target.entry.staticInitializer = readMethod(element, nullptr);
    } else {
        refuseElement(element);
    }
}

template <class Element>
void AbcMemberReader::readScriptMember(Element& element, AbcScriptText& target) {
    if (readTrait(element, target.entry.traits))
        return;
    if (element.name() == "Function") {
        readMethod(element, nullptr);
    } else if (element.name() == "Initializer") {
        only(element, target.hasInitializer);
        target.entry.initializer = readMethod(element, nullptr);
    } else {
        refuseElement(element);
    }
}

// --- classes and scripts ---------------------------------------------------------------------------------------------

template <class Element>
void AbcMemberReader::classAttributes(Element& element, AbcClassText& target) {
    SwfAbcClass& entry = target.entry;
    target.offset = element.offset();
    if (const auto name = textOf(element, "Name")) {
        target.id = kept(element, *name);
        entry.name = this->entry(element, Pool::multinames, "Name", *name);
    } else {
        refuse(element, "Name", "it is missing");
    }
    if (const auto id = textIfThere(element, "Id"))
        target.id = kept(element, *id);
    entry.base = index(element, "Base", Pool::multinames);
    entry.flags = static_cast<uint8_t>(flags(element, abcClassFlags));
    if (element.has("ProtectedNamespace")) {
        entry.flags |= SwfAbcClass::hasProtected;
        entry.protectedNamespace = index(element, "ProtectedNamespace", Pool::namespaces);
    }
}

void AbcMemberReader::readClassHead(XmlElement& element) { classAttributes(element, _part.classes.emplace_back()); }

void AbcMemberReader::readScriptHead(XmlElement& element) { _part.scripts.emplace_back().offset = element.offset(); }

template <class Element>
void AbcMemberReader::readClass(Element& element) {
    AbcClassText target;
    classAttributes(element, target);
    readAbcChildren(element, abcClassNames, _part, target, [&](auto& child) { readMember(child, target); });
    _part.classes.push_back(std::move(target));
}

template <class Element>
void AbcMemberReader::readScript(Element& element) {
    AbcScriptText target;
    target.offset = element.offset();
    readAbcChildren(element, abcScriptNames, _part, target, [&](auto& child) { readScriptMember(child, target); });
    _part.scripts.push_back(std::move(target));
}

static void skipConstants(XmlElement& element) { element.acceptAll(); } // they were read before all else
static void skipConstants(XmlQuickElement& element) { element.skip(); }

template <class Element>
void AbcMemberReader::readTop(Element& element) {
    if (element.name() == "Class")
        readClass(element);
    else if (element.name() == "Script")
        readScript(element);
    else if (element.name() == "Function")
        readMethod(element, nullptr);
    else if (element.name() == "Constants")
        skipConstants(element);
    else
        refuseElement(element);
}

#define INSTANTIATE(Element)                                                                                           \
    template void AbcMemberReader::readTop(Element&);                                                                  \
    template void AbcMemberReader::readMember(Element&, AbcClassText&);                                                \
    template void AbcMemberReader::readStaticMember(Element&, AbcClassText&);                                          \
    template void AbcMemberReader::readScriptMember(Element&, AbcScriptText&);
INSTANTIATE(XmlElement)
INSTANTIATE(XmlQuickElement)

} // namespace xml2swf
