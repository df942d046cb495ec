// Bodies of methods as XML.
#pragma once

#include "AbcPlan.h"
#include "XmlElementWriter.h"

namespace xml2swf {

/// What the writers of a block's parts share.
struct AbcSource {
    const libswf::SwfAbcBlock& block;
    const AbcNames& names;
    const AbcPlan& plan;
};

/// The attribute that an operand stands in.
std::string_view abcAttribute(libswf::SwfAbcOperand operand);

/// Writes what is in Code elements, one body after the other.
class AbcCodeWriter {
public:
    explicit AbcCodeWriter(const AbcSource& source) : _source(source) {}

    /// The instructions and exceptions of a body; its bytes when it is not made of instructions.
    void write(XmlNode& code, uint32_t body);

private:
    void writeInstruction(XmlText& out, const libswf::SwfAbcInstruction& instruction, uint32_t depth);
    void writeCases(XmlText& out, const libswf::SwfAbcInstruction& instruction, uint32_t depth);
    void writeException(XmlNode& code, uint32_t index);
    void writeBytes(XmlNode& code, uint32_t body);
    std::string_view textOf(libswf::SwfAbcOperand operand, uint32_t value) const;
    std::string_view catchName(uint32_t exception);
    void countCatches();
    void putTarget(XmlLine& line, std::string_view name, uint32_t target, uint32_t from) const;

    const AbcSource& _source;
    const libswf::SwfAbcBody* _body = nullptr;
    libswf::SwfAbcCodeMap _map;
    std::vector<uint32_t> _catchCopies; // which one of those with the same handler, from 1
    std::string _catchName;
};

} // namespace xml2swf
