// Blocks of ActionScript 3 to XML.
#include "AbcConstantsReader.h"
#include "AbcSource.h"
#include "SwfException.h"
#include "SwfInOrder.h"
#include "SwfTags.h"
#include "XmlAbc.h"
#include "XmlWriteParts.h"

namespace xml2swf {

using namespace libswf;

namespace {

// What is written at a time, on any thread: members of about so many bytes of code, or entries of pools.
class PartedAbc {
public:
    PartedAbc(XmlNode& node, const AbcSource& source) : _node(node), _source(source) {}

    void writeMembers() {
        const auto& items = _source.plan.items;
        size_t bytes = partSize;
        for (size_t i = 0; i < items.size(); ++i) {
            if (bytes >= partSize) {
                _parts.emplace_back().first = i;
                bytes = 0;
            }
            bytes += sizeOf(items[i]);
            _parts.back().end = i + 1;
        }
        run([&](XmlText& out, XmlWriteContext& context, const Part& part) {
            AbcMemberWriter writer(out, context, _node.depth(), _source);
            for (size_t i = part.first; i < part.end; ++i)
                writer.write(items[i]);
        });
    }

private:
    static constexpr size_t partSize = 8 * 1024;
    struct Part {
        size_t first = 0, end = 0;
        XmlText text;
    };

    size_t codeOf(uint32_t method) const {
        constexpr size_t head = 16;
        size_t bytes = head;
        for (uint32_t body = _source.plan.firstBody[method]; body != abcFollows; body = _source.plan.nextBody[body])
            bytes += _source.block.bodies[body].code.size();
        return bytes;
    }

    static size_t sizeOf(const SwfAbcTrait& trait, const PartedAbc& parted) {
        const bool isMethod = !trait.holdsValue() && trait.kind != SwfAbcTrait::Kind::classSlot;
        return isMethod ? parted.codeOf(trait.index) : 8;
    }

    size_t sizeOf(const AbcItem& item) const {
        using Kind = AbcItem::Kind;
        const SwfAbcBlock& block = _source.block;
        switch (item.kind) {
        case Kind::constructor: return codeOf(block.classes[item.owner].constructor);
        case Kind::trait: return sizeOf(block.classes[item.owner].traits[item.index], *this);
        case Kind::staticInitializer: return codeOf(block.classes[item.owner].staticInitializer);
        case Kind::staticTrait: return sizeOf(block.classes[item.owner].staticTraits[item.index], *this);
        case Kind::scriptInitializer: return codeOf(block.scripts[item.owner].initializer);
        case Kind::scriptTrait: return sizeOf(block.scripts[item.owner].traits[item.index], *this);
        case Kind::function: return codeOf(item.index);
        default: return 8;
        }
    }

    template <class Write>
    void run(Write write) {
        const uint32_t threads = _parts.size() > 1 ? _node.context().threads : 1;
        if (threads == 1) {
            for (const Part& part : _parts)
                write(_node.content(), _node.context(), part);
            return;
        }
        const XmlWriteContext partContext(_node.context());
        XmlFreeTexts texts;
        const auto work = [&](size_t i) {
            XmlWriteContext context(partContext);
            context.threads = 1;
            _parts[i].text = texts.take();
            write(_parts[i].text, context, _parts[i]);
        };
        const auto take = [&](size_t i) {
            _node.append(_parts[i].text.view());
            texts.giveBack(std::move(_parts[i].text));
        };
        workInOrder({_parts.size(), work, take}, threads);
    }

    XmlNode& _node;
    const AbcSource& _source;
    std::vector<Part> _parts;
};

// One line for each entry of a pool.
void writeEntries(XmlNode& constants, std::string_view element, std::string_view attribute,
                  const AbcNames::Texts& texts) {
    for (size_t i = 1; i < texts.size(); ++i)
        XmlNode(constants, element).escapedAttribute(attribute, texts[i]);
}

void writeNamespaces(XmlNode& constants, const AbcSource& source) {
    for (size_t i = 1; i < source.names.namespaces.size(); ++i) {
        XmlNode node(constants, "Namespace");
        node.escapedAttribute("Name", source.names.namespaces[i]);
        if (!source.names.isLabelled[i])
            continue;
        const uint32_t name = source.block.namespaces[i].name;
        if (name != 0)
            node.escapedAttribute("Text", source.names.strings[name]);
        else
            node.attribute("Unnamed", true);
    }
}

void writeSets(XmlNode& constants, const AbcSource& source) {
    std::string members;
    for (size_t i = 1; i < source.names.namespaceSets.size(); ++i) {
        XmlNode node(constants, "NamespaceSet");
        node.escapedAttribute("Name", source.names.namespaceSets[i]);
        members.clear();
        for (const uint32_t space : source.block.namespaceSets[i])
            members.append(members.empty() ? "" : ", ").append(source.names.namespaces[space]);
        node.escapedAttribute("Namespaces", members);
    }
}

std::unique_ptr<AbcReadBlock> readBlock(XmlWriteContext& context, const SwfTag& tag, const SwfBytes& bytes) {
    try {
        return std::make_unique<AbcReadBlock>(bytes.span(), context.threads);
    } catch (const SwfException& error) {
        if (context.warnings == nullptr || bytes.empty())
            return nullptr;
        SwfWarning warning;
        warning.kind = SwfWarning::Kind::keptRaw;
        warning.tagCode = tag.type;
        warning.tagName = tagName(tag.type);
        warning.path = tagPathText(context.tagPath);
        warning.reason = "its code is shown as bytes: " + error.reasonInTag();
        context.warnings->add(std::move(warning));
        return nullptr;
    }
}

} // namespace

// Behind the code, where nobody reading it meets them.
void writeAbcConstants(XmlNode& abc, const AbcSource& source) {
    const AbcNames& names = source.names;
    XmlNode constants(abc, "Constants");
    std::string empty;
    for (const XmlName& pool : abcPoolNames) {
        if ((source.block.countedEmpty >> pool.value & 1) != 0)
            empty.append(empty.empty() ? "" : " ").append(pool.name);
    }
    if (!empty.empty())
        constants.escapedAttribute("CountedEmpty", empty);
    writeEntries(constants, "Int", "Value", names.integers);
    writeEntries(constants, "UInt", "Value", names.uintegers);
    writeEntries(constants, "Double", "Value", names.doubles);
    writeEntries(constants, "String", "Value", names.strings);
    writeNamespaces(constants, source);
    writeSets(constants, source);
    writeEntries(constants, "Multiname", "Name", names.multinames);
    for (uint32_t i = 0; i < source.block.metadata.size(); ++i)
        writeAbcMetadata(constants, source, i, true);
}

void writeAbc(XmlNode& parent, const SwfTag& tag, const SwfBytes& bytes, std::string_view dataName) {
    std::unique_ptr<AbcReadBlock> read;
    if (parent.context().swf.fullForm && !parent.context().abcAsData)
        read = readBlock(parent.context(), tag, bytes);
    if (read == nullptr)
        return writePayload(parent, dataName, bytes.span());
    XmlNode abc(parent, "Abc");
    abc.attribute("MajorVersion", read->block.majorVersion);
    abc.attribute("MinorVersion", read->block.minorVersion);
    PartedAbc(abc, read->source).writeMembers();
    writeAbcConstants(abc, read->source);
}

} // namespace xml2swf
