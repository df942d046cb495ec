#include "AbcMemberWriter.h"

#include "AbcFlags.h"

namespace xml2swf {

using namespace libswf;

void writeAbcMetadata(XmlNode& parent, const AbcSource& source, uint32_t index, bool isListed) {
    const SwfAbcMetadata& metadata = source.block.metadata[index];
    XmlNode node(parent, "Metadata");
    if (metadata.name != 0)
        node.escapedAttribute("Name", source.names.strings[metadata.name]);
    if (!isListed && source.plan.metadataCopies[index] > 1)
        node.attribute("Copy", source.plan.metadataCopies[index]);
    for (const SwfAbcMetadata::Item& item : metadata.items) {
        XmlNode child(node, "Item");
        if (item.key != 0)
            child.escapedAttribute("Key", source.names.strings[item.key]);
        if (item.value != 0)
            child.escapedAttribute("Value", source.names.strings[item.value]);
    }
}

// An element that is closed by another item: the end tag is cut off again.
template <class Write>
void AbcMemberWriter::open(std::string_view name, uint32_t depth, Write writeAttributes) {
    XmlNode node(_out, _context, depth, name);
    writeAttributes(node);
    const size_t end = _out.size();
    node.end(true);
    _out.cut(end);
}

void AbcMemberWriter::close(std::string_view name, uint32_t depth) {
    _out.append("\n").append(4 * size_t(depth), ' ').append("</").append(name).append(">");
}

void AbcMemberWriter::write(const AbcItem& item) {
    using Kind = AbcItem::Kind;
    const SwfAbcBlock& block = _source.block;
    const uint32_t depth = _depth + item.depth;
    switch (item.kind) {
    case Kind::classStart: writeClassStart(block.classes[item.owner], item.owner, depth); break;
    case Kind::constructor: writeMethod(item, "Constructor", block.classes[item.owner].constructor, depth); break;
    case Kind::trait: writeTrait(item, block.classes[item.owner].traits[item.index], depth); break;
    case Kind::staticStart: open("Static", depth, [](XmlNode&) {}); break;
    case Kind::staticInitializer:
        writeMethod(item, "Initializer", block.classes[item.owner].staticInitializer, depth);
        break;
    case Kind::staticTrait: writeTrait(item, block.classes[item.owner].staticTraits[item.index], depth); break;
    case Kind::classEnd:
        close("Static", depth + 1);
        close("Class", depth);
        break;
    case Kind::scriptStart: open("Script", depth, [](XmlNode&) {}); break;
    case Kind::scriptInitializer: writeMethod(item, "Initializer", block.scripts[item.owner].initializer, depth); break;
    case Kind::scriptTrait: writeTrait(item, block.scripts[item.owner].traits[item.index], depth); break;
    case Kind::scriptEnd: close("Script", depth); break;
    case Kind::function: writeMethod(item, "Function", item.index, depth); break;
    }
}

void AbcMemberWriter::writeClassStart(const SwfAbcClass& entry, uint32_t index, uint32_t depth) {
    const AbcNames& names = _source.names;
    open("Class", depth, [&](XmlNode& node) {
        node.escapedAttribute("Name", names.multinames[entry.name]);
        if (_source.plan.classIds[index] != names.multinames[entry.name])
            node.escapedAttribute("Id", _source.plan.classIds[index]);
        if (entry.base != 0)
            node.escapedAttribute("Base", names.multinames[entry.base]);
        writeFlags(node, abcClassFlags, entry.flags);
        if ((entry.flags & SwfAbcClass::hasProtected) != 0)
            node.escapedAttribute("ProtectedNamespace", names.namespaces[entry.protectedNamespace]);
        for (const uint32_t name : entry.interfaces)
            XmlNode(node, "Implements").escapedAttribute("Name", names.multinames[name]);
    });
}

static std::string_view elementOf(SwfAbcTrait::Kind kind) { return abcTraitElements[static_cast<size_t>(kind)]; }

void AbcMemberWriter::writeTrait(const AbcItem& item, const SwfAbcTrait& trait, uint32_t depth) {
    XmlNode node(_out, _context, depth, elementOf(trait.kind));
    writeTrait(node, trait);
    if (!trait.holdsValue() && trait.kind != SwfAbcTrait::Kind::classSlot) {
        writeHeld(node, item, trait.index);
        writeMetadata(node, trait);
        if (_source.plan.holds(item, trait.index))
            writeMethodContent(node, trait.index);
    } else {
        writeMetadata(node, trait);
    }
}

// Attributes only, without those of a method.
void AbcMemberWriter::writeTrait(XmlNode& node, const SwfAbcTrait& trait) {
    using Kind = SwfAbcTrait::Kind;
    node.escapedAttribute("Name", _source.names.multinames[trait.name]);
    const bool hasDispId = trait.kind == Kind::method || trait.kind == Kind::getter || trait.kind == Kind::setter;
    if (trait.id != 0)
        node.attribute(hasDispId ? "DispId" : "SlotId", trait.id);
    if (trait.holdsValue())
        writeSlot(node, trait);
    if (trait.kind == Kind::classSlot)
        node.escapedAttribute("Class", _source.plan.classIds[trait.index]);
    writeFlags(node, abcTraitFlags, trait.flags);
    if ((trait.flags & SwfAbcTrait::hasMetadata) != 0 && trait.metadata.empty())
        node.attribute("HasMetadata", true);
}

void AbcMemberWriter::writeSlot(XmlNode& node, const SwfAbcTrait& trait) {
    if (trait.type != 0)
        node.escapedAttribute("Type", _source.names.multinames[trait.type]);
    if (trait.value.index != 0)
        writeValue(node, "Value", trait.value);
}

void AbcMemberWriter::writeMetadata(XmlNode& node, const SwfAbcTrait& trait) {
    for (const uint32_t index : trait.metadata)
        writeAbcMetadata(node, _source, index, false);
}

void AbcMemberWriter::writeMethod(const AbcItem& item, std::string_view name, uint32_t method, uint32_t depth) {
    XmlNode node(_out, _context, depth, name);
    writeHeld(node, item, method);
    if (_source.plan.holds(item, method))
        writeMethodContent(node, method);
}

// A method that stands elsewhere is only named.
void AbcMemberWriter::writeHeld(XmlNode& node, const AbcItem& item, uint32_t method) {
    if (_source.plan.holds(item, method))
        writeMethodAttributes(node, method);
    else
        node.escapedAttribute("Method", _source.plan.methodIds[method]);
}

void AbcMemberWriter::writeMethodAttributes(XmlNode& node, uint32_t index) {
    const AbcNames& names = _source.names;
    const SwfAbcMethod& method = _source.block.methods[index];
    if (!_source.plan.methodIds[index].empty())
        node.escapedAttribute("Id", _source.plan.methodIds[index]);
    if (_source.plan.methodPlaces[index] != abcFollows)
        node.attribute("Place", _source.plan.methodPlaces[index]);
    if (method.name != 0)
        node.escapedAttribute("DebugName", names.strings[method.name]);
    if (method.returnType != 0)
        node.escapedAttribute("Returns", names.multinames[method.returnType]);
    writeFlags(node, abcMethodFlags, method.flags);
    if ((method.flags & SwfAbcMethod::hasOptional) != 0 && method.optionals.empty())
        node.attribute("HasOptional", true);
    const auto isNamed = [](uint32_t name) { return name != 0; };
    if ((method.flags & SwfAbcMethod::hasParamNames) != 0 &&
        std::none_of(method.parameterNames.begin(), method.parameterNames.end(), isNamed))
        node.attribute("HasParamNames", true);
}

void AbcMemberWriter::writeMethodContent(XmlNode& node, uint32_t index) {
    writeParameters(node, _source.block.methods[index]);
    for (uint32_t body = _source.plan.firstBody[index]; body != abcFollows; body = _source.plan.nextBody[body])
        writeBody(node, body);
}

void AbcMemberWriter::writeParameters(XmlNode& node, const SwfAbcMethod& method) {
    const size_t firstOptional = method.parameterTypes.size() - method.optionals.size();
    for (size_t i = 0; i < method.parameterTypes.size(); ++i) {
        XmlNode child(node, "Parameter");
        if (!method.parameterNames.empty() && method.parameterNames[i] != 0)
            child.escapedAttribute("Name", _source.names.strings[method.parameterNames[i]]);
        if (method.parameterTypes[i] != 0)
            child.escapedAttribute("Type", _source.names.multinames[method.parameterTypes[i]]);
        if (i >= firstOptional)
            writeValue(child, "Default", method.optionals[i - firstOptional]);
    }
}

void AbcMemberWriter::writeBody(XmlNode& node, uint32_t index) {
    const SwfAbcBody& body = _source.block.bodies[index];
    XmlNode code(node, "Code");
    if (_source.plan.bodyPlaces[index] != abcFollows)
        code.attribute("Place", _source.plan.bodyPlaces[index]);
    code.attribute("MaxStack", body.maxStack);
    code.attribute("LocalCount", body.localCount);
    code.attribute("InitScopeDepth", body.initScopeDepth);
    code.attribute("MaxScopeDepth", body.maxScopeDepth);
    if (!body.traits.empty()) {
        XmlNode activation(code, "Activation");
        for (const SwfAbcTrait& trait : body.traits) {
            XmlNode child(activation, elementOf(trait.kind));
            writeTrait(child, trait);
            if (!trait.holdsValue() && trait.kind != SwfAbcTrait::Kind::classSlot)
                child.escapedAttribute("Method", _source.plan.methodIds[trait.index]);
            writeMetadata(child, trait);
        }
    }
    _code.write(code, index);
}

// "int(5)", "true", a namespace: the kind shows in the text. What does not follow it is said besides.
void AbcMemberWriter::writeValue(XmlNode& node, std::string_view name, const SwfAbcValue& value) {
    const AbcNames& names = _source.names;
    std::string text;
    auto put = [&](const char* word, const AbcNames::Texts& texts) {
        text.append(word).append("(").append(texts[value.index]).append(")");
    };
    bool isOdd = false;
    switch (value.kind) {
    case AbcValueKind::string: put("string", names.strings); break;
    case AbcValueKind::integer: put("int", names.integers); break;
    case AbcValueKind::uinteger: put("uint", names.uintegers); break;
    case AbcValueKind::real: put("double", names.doubles); break;
    default:
        text = abcPlainValue(value.kind);
        isOdd = text.empty() || value.index != value.kind;
        if (!text.empty() || value.index == 0 || value.index >= names.namespaces.size())
            break;
        text = names.namespaces[value.index];
        isOdd = _source.block.namespaces[value.index].kind != value.kind;
    }
    isOdd |= value.index == 0 && value.kind != AbcValueKind::undefined;
    if (isOdd)
        text = std::string("index(").append(formatInteger(value.index).view()).append(")");
    node.escapedAttribute(name, text);
    if (isOdd)
        node.attribute("ValueKind", value.kind);
}

} // namespace xml2swf
