#include "AbcCodeWriter.h"

#include <array>
#include <unordered_map>

namespace xml2swf {

using namespace libswf;

std::string_view abcAttribute(SwfAbcOperand operand) {
    switch (operand) {
    case SwfAbcOperand::name:
    case SwfAbcOperand::variable: return "Name";
    case SwfAbcOperand::file: return "File";
    case SwfAbcOperand::nspace: return "Namespace";
    case SwfAbcOperand::method: return "Method";
    case SwfAbcOperand::classIndex: return "Class";
    case SwfAbcOperand::exception: return "Catch";
    case SwfAbcOperand::local:
    case SwfAbcOperand::debugRegister: return "Register";
    case SwfAbcOperand::objectLocal: return "ObjectRegister";
    case SwfAbcOperand::indexLocal: return "IndexRegister";
    case SwfAbcOperand::dispId: return "DispId";
    case SwfAbcOperand::slotId: return "SlotId";
    case SwfAbcOperand::scope:
    case SwfAbcOperand::u8: return "Index";
    case SwfAbcOperand::line: return "Line";
    case SwfAbcOperand::arguments: return "Arguments";
    case SwfAbcOperand::count:
    case SwfAbcOperand::pairs: return "Count";
    case SwfAbcOperand::debugExtra: return "Extra";
    case SwfAbcOperand::debugType: return "Type";
    case SwfAbcOperand::branch: return "To";
    case SwfAbcOperand::cases: return "Default";
    default: return "Value";
    }
}

static constexpr size_t numberRoom = 16; // for any integer, and a label

static void putLabel(XmlLine& line, uint32_t label) {
    line.put('L');
    line.put(static_cast<int32_t>(label));
}

static void putNumber(XmlLine& line, uint32_t value) {
    if (value <= INT32_MAX)
        line.put(static_cast<int32_t>(value));
    else
        line.put(formatInteger(value).view());
}

// The texts of what stands in pools; none for other operands.
std::string_view AbcCodeWriter::textOf(SwfAbcOperand operand, uint32_t value) const {
    switch (operand) {
    case SwfAbcOperand::name: return _source.names.multinames[value];
    case SwfAbcOperand::string:
    case SwfAbcOperand::file:
    case SwfAbcOperand::variable: return _source.names.strings[value];
    case SwfAbcOperand::integer: return _source.names.integers[value];
    case SwfAbcOperand::uinteger: return _source.names.uintegers[value];
    case SwfAbcOperand::real: return _source.names.doubles[value];
    case SwfAbcOperand::nspace: return _source.names.namespaces[value];
    case SwfAbcOperand::method: return _source.plan.methodIds[value];
    case SwfAbcOperand::classIndex: return _source.plan.classIds[value];
    default: return {};
    }
}

static bool isText(SwfAbcOperand operand) {
    return operand >= SwfAbcOperand::name && operand <= SwfAbcOperand::exception;
}

// Index 0 of a pool is nothing, but for names.
static bool isMissing(SwfAbcOperand operand, uint32_t value) {
    return value == 0 && operand >= SwfAbcOperand::string && operand <= SwfAbcOperand::real;
}

void AbcCodeWriter::putTarget(XmlLine& line, std::string_view name, uint32_t target, uint32_t from) const {
    line.put(' ');
    const uint32_t label = _map.labelAt(target);
    if (label != 0) {
        line.put(name);
        line.put("=\"");
        putLabel(line, label);
    } else {
        line.put(name == "To" ? "Offset" : "DefaultOffset");
        line.put("=\"");
        line.put(static_cast<int32_t>(target - from));
    }
    line.put('"');
}

void AbcCodeWriter::writeInstruction(XmlText& out, const SwfAbcInstruction& instruction, uint32_t depth) {
    const SwfAbcOpcode& opcode = *instruction.opcode;
    const std::string_view name = opcode.name;
    std::array<std::string_view, SwfAbcOpcode::mostOperands> texts;
    size_t room = 4 * size_t(depth) + XmlLine::indentRoom + name.size() + numberRoom + 16;
    size_t operands = 0;
    for (; operands < texts.size() && opcode.operands[operands] != SwfAbcOperand::none; ++operands) {
        const SwfAbcOperand kind = opcode.operands[operands];
        texts[operands] = kind == SwfAbcOperand::exception ? catchName(instruction.operands[operands])
                                                           : textOf(kind, instruction.operands[operands]);
        room += texts[operands].size() + 2 * numberRoom + 16;
    }
    XmlLine line(out.room(room));
    line.indent(depth);
    line.put('<');
    line.put(name);
    if (const uint32_t label = _map.labelAt(instruction.start)) {
        line.put(" At=\"");
        putLabel(line, label);
        line.put('"');
    }
    for (size_t i = 0; i < operands; ++i) {
        const SwfAbcOperand kind = opcode.operands[i];
        const uint32_t value = instruction.operands[i];
        if (kind == SwfAbcOperand::branch || kind == SwfAbcOperand::cases) {
            putTarget(line, abcAttribute(kind), value,
                      kind == SwfAbcOperand::branch ? instruction.end : instruction.start);
            break;
        }
        if (isMissing(kind, value))
            continue;
        line.put(' ');
        line.put(abcAttribute(kind));
        line.put("=\"");
        if (isText(kind))
            line.put(texts[i]);
        else if (kind == SwfAbcOperand::s8)
            line.put(static_cast<int32_t>(value));
        else if (kind == SwfAbcOperand::s16)
            line.put(static_cast<int32_t>(static_cast<int16_t>(value)));
        else
            putNumber(line, value);
        line.put('"');
        if (kind == SwfAbcOperand::s16 && value != static_cast<uint32_t>(static_cast<int16_t>(value))) {
            line.put(" Bits=\"");
            putNumber(line, value);
            line.put('"');
        }
    }
    if (opcode.operands[0] != SwfAbcOperand::cases) {
        line.put(" />");
        out.finish(line.end());
        return;
    }
    line.put('>');
    out.finish(line.end());
    writeCases(out, instruction, depth);
}

void AbcCodeWriter::writeCases(XmlText& out, const SwfAbcInstruction& instruction, uint32_t depth) {
    const size_t room = 4 * size_t(depth) + XmlLine::indentRoom + 2 * numberRoom + 32;
    for (uint32_t i = 0; i < instruction.caseCount(); ++i) {
        XmlLine line(out.room(room));
        line.indent(depth + 1);
        line.put("<Case");
        putTarget(line, "To", instruction.caseTarget(i), instruction.start);
        line.put(" />");
        out.finish(line.end());
    }
    XmlLine line(out.room(room));
    line.indent(depth);
    line.put("</LookupSwitch>");
    out.finish(line.end());
}

// An exception goes by the label of its handler, with a number behind it when several have the same.
std::string_view AbcCodeWriter::catchName(uint32_t exception) {
    _catchName.assign(1, 'L');
    _catchName += formatInteger(_map.labelAt(_body->exceptions[exception].target)).view();
    if (_catchCopies[exception] > 1)
        _catchName.append("#").append(formatInteger(_catchCopies[exception]).view());
    return _catchName;
}

void AbcCodeWriter::countCatches() {
    std::unordered_map<uint32_t, uint32_t> copies; // by target
    _catchCopies.clear();
    for (const SwfAbcException& exception : _body->exceptions)
        _catchCopies.push_back(++copies[exception.target]);
}

void AbcCodeWriter::writeException(XmlNode& code, uint32_t index) {
    const SwfAbcException& exception = _body->exceptions[index];
    XmlNode node(code, "Catch");
    const std::string id(catchName(index));
    if (id.find('#') != id.npos)
        node.escapedAttribute("Id", id);
    auto place = [&](std::string_view name, uint32_t at) {
        node.escapedAttribute(name, std::string("L").append(formatInteger(_map.labelAt(at)).view()));
    };
    place("From", exception.from);
    place("Until", exception.to);
    place("To", exception.target);
    if (exception.type != 0)
        node.escapedAttribute("Type", _source.names.multinames[exception.type]);
    if (exception.name != 0)
        node.escapedAttribute("Name", _source.names.multinames[exception.name]);
}

// Code that is no list of instructions: its exceptions go by bytes.
void AbcCodeWriter::writeBytes(XmlNode& code, uint32_t body) {
    const AbcBodyProblem& problem = _source.plan.problems[body];
    {
        XmlNode bytes(code, "Bytes");
        std::string reason(problem.reason);
        reason.append(", at byte ").append(formatInteger(problem.place).view());
        bytes.attribute("Reason", std::string_view(reason));
        bytes.base64(_body->code);
    }
    for (const SwfAbcException& exception : _body->exceptions) {
        XmlNode node(code, "Catch");
        node.attribute("FromByte", exception.from);
        node.attribute("UntilByte", exception.to);
        node.attribute("ToByte", exception.target);
        if (exception.type != 0)
            node.escapedAttribute("Type", _source.names.multinames[exception.type]);
        if (exception.name != 0)
            node.escapedAttribute("Name", _source.names.multinames[exception.name]);
    }
}

void AbcCodeWriter::write(XmlNode& code, uint32_t body) {
    _body = &_source.block.bodies[body];
    if (_source.plan.problems[body].reason != nullptr)
        return writeBytes(code, body);
    _map.read(*_body);
    countCatches();
    SwfAbcCodeReader reader(_body->code);
    SwfAbcInstruction instruction;
    XmlText& out = _body->code.empty() ? code.out() : code.content();
    while (reader.next(instruction))
        writeInstruction(out, instruction, code.depth() + 1);
    const auto end = static_cast<uint32_t>(_body->code.size());
    if (const uint32_t label = _map.labelAt(end))
        XmlNode(code, "Place").escapedAttribute("At", std::string("L").append(formatInteger(label).view()));
    for (uint32_t i = 0; i < _body->exceptions.size(); ++i)
        writeException(code, i);
}

} // namespace xml2swf
