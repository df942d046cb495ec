// Members of classes and scripts, and their methods, as XML.
#pragma once

#include "AbcCodeWriter.h"

namespace xml2swf {

/// Writes the pieces of a block's text, one after the other.
class AbcMemberWriter {
public:
    AbcMemberWriter(XmlText& out, XmlWriteContext& context, uint32_t depth, const AbcSource& source)
        : _out(out), _context(context), _depth(depth), _source(source), _code(source) {}

    void write(const AbcItem& item);

private:
    void writeClassStart(const libswf::SwfAbcClass& entry, uint32_t index, uint32_t depth);
    void writeTrait(const AbcItem& item, const libswf::SwfAbcTrait& trait, uint32_t depth);
    void writeTrait(XmlNode& node, const libswf::SwfAbcTrait& trait);
    void writeSlot(XmlNode& node, const libswf::SwfAbcTrait& trait);
    void writeMetadata(XmlNode& node, const libswf::SwfAbcTrait& trait);
    void writeMethod(const AbcItem& item, std::string_view name, uint32_t method, uint32_t depth);
    void writeHeld(XmlNode& node, const AbcItem& item, uint32_t method);
    void writeMethodAttributes(XmlNode& node, uint32_t method);
    void writeMethodContent(XmlNode& node, uint32_t method);
    void writeParameters(XmlNode& node, const libswf::SwfAbcMethod& method);
    void writeBody(XmlNode& node, uint32_t body);
    void writeValue(XmlNode& node, std::string_view name, const libswf::SwfAbcValue& value);
    template <class Write>
    void open(std::string_view name, uint32_t depth, Write writeAttributes);
    void close(std::string_view name, uint32_t depth);

    XmlText& _out;
    XmlWriteContext& _context;
    const uint32_t _depth; // of Abc
    const AbcSource& _source;
    AbcCodeWriter _code;
};

/// One entry of the metadata.
void writeAbcMetadata(XmlNode& parent, const AbcSource& source, uint32_t index, bool isListed);

} // namespace xml2swf
