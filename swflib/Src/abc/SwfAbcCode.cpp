#include "SwfAbcCode.h"

namespace libswf {

const SwfAbcOpcode& SwfAbcOpcode::of(uint8_t code) {
    static constexpr std::array<SwfAbcOpcode, 256> table = [] {
        using enum SwfAbcOperand;
        std::array<SwfAbcOpcode, 256> rows{};
#define ABC_INSTRUCTION(code, name, pops, pushes, scopes, ...)                                                         \
    rows[code] = {code, #name, pops, pushes, scopes, {__VA_ARGS__}};
#include "SwfAbcInstructions.def"
        return rows;
    }();
    return table[code];
}

bool SwfAbcOpcode::endsFlow() const {
    constexpr uint8_t throwing = 0x03, jump = 0x10, lookupSwitch = 0x1B, returnVoid = 0x47, returnValue = 0x48;
    return code == throwing || code == jump || code == lookupSwitch || code == returnVoid || code == returnValue;
}

static uint32_t s24At(const uint8_t* at) {
    const uint32_t bits = at[0] | uint32_t(at[1]) << 8 | uint32_t(at[2]) << 16;
    return (bits ^ 0x800000) - 0x800000; // the sign repeated
}

uint32_t SwfAbcInstruction::caseTarget(uint32_t index) const { return start + s24At(offsets.data() + 3 * index); }

bool SwfAbcCodeReader::fail(const char* problem) {
    _problem = problem;
    return false;
}

bool SwfAbcCodeReader::readU30(uint32_t& value) {
    if (_at < _code.size() && _code[_at] < 0x80) [[likely]] {
        value = _code[_at++];
        return true;
    }
    value = 0;
    for (uint32_t shift = 0; shift < 35; shift += 7) {
        if (_at >= _code.size())
            return fail("the code ends inside an instruction");
        const uint8_t byte = _code[_at++];
        value |= uint32_t(byte & 0x7F) << shift;
        if ((byte == 0 && shift != 0) || (shift == 28 && byte > 0x0F))
            return fail("a number takes more bits than it needs");
        if (byte < 0x80)
            break;
    }
    return true;
}

bool SwfAbcCodeReader::readS24(uint32_t& value) {
    if (_code.size() - _at < 3)
        return fail("the code ends inside an instruction");
    value = s24At(_code.data() + _at);
    _at += 3;
    return true;
}

bool SwfAbcCodeReader::readCases(SwfAbcInstruction& instruction) {
    uint32_t offset = 0, lastCase = 0;
    if (!readS24(offset) || !readU30(lastCase))
        return false;
    if (lastCase >= (_code.size() - _at) / 3)
        return fail("the code ends inside an instruction");
    instruction.operands[0] = instruction.start + offset;
    instruction.operands[1] = lastCase;
    instruction.offsets = _code.subspan(_at, 3 * (size_t(lastCase) + 1));
    _at += static_cast<uint32_t>(instruction.offsets.size());
    return true;
}

bool SwfAbcCodeReader::readOperand(SwfAbcInstruction& instruction, size_t index) {
    uint32_t& value = instruction.operands[index];
    switch (instruction.opcode->operands[index]) {
    case SwfAbcOperand::u8:
    case SwfAbcOperand::debugType:
    case SwfAbcOperand::debugRegister:
    case SwfAbcOperand::s8:
        if (_at >= _code.size())
            return fail("the code ends inside an instruction");
        value = _code[_at++];
        if (instruction.opcode->operands[index] == SwfAbcOperand::s8)
            value = static_cast<uint32_t>(static_cast<int8_t>(value));
        return true;
    case SwfAbcOperand::branch:
        if (!readS24(value))
            return false;
        value += _at;
        return true;
    case SwfAbcOperand::cases: return readCases(instruction);
    default: return readU30(value);
    }
}

bool SwfAbcCodeReader::next(SwfAbcInstruction& instruction) {
    if (_at >= _code.size())
        return false;
    instruction.start = _at;
    instruction.opcode = &SwfAbcOpcode::of(_code[_at]);
    if (instruction.opcode->name.empty())
        return fail("no instruction has this code");
    ++_at;
    for (size_t i = 0; i < SwfAbcOpcode::mostOperands; ++i) {
        if (instruction.opcode->operands[i] == SwfAbcOperand::none)
            break;
        if (!readOperand(instruction, i))
            return false;
    }
    instruction.end = _at;
    return true;
}

bool SwfAbcCodeMap::fail(const char* problem, uint32_t place) {
    _problem = problem;
    _problemPlace = place;
    return false;
}

// Notes a label, before it is known whether an instruction starts there.
void SwfAbcCodeMap::aim(uint32_t target) {
    if (target < _places.size())
        _places[target] |= 1;
}

bool SwfAbcCodeMap::readExceptions(const SwfAbcBody& body) {
    for (const SwfAbcException& exception : body.exceptions) {
        for (uint32_t place : {exception.from, exception.to, exception.target}) {
            if (place >= _places.size() || (_places[place] & start) == 0)
                return fail("an exception's range is not one of whole instructions", 0);
            aim(place);
        }
    }
    return true;
}

void SwfAbcCodeMap::numberLabels() {
    uint32_t labels = 0;
    for (uint32_t& place : _places)
        place = place == (start | 1) ? start | ++labels : place & start;
}

bool SwfAbcCodeMap::read(const SwfAbcBody& body, const See& see) {
    _problem = nullptr;
    _places.assign(body.code.size() + 1, 0);
    _places.back() = start;
    SwfAbcCodeReader reader(body.code);
    SwfAbcInstruction instruction;
    while (reader.next(instruction)) {
        _places[instruction.start] |= start;
        const SwfAbcOperand kind = instruction.opcode->operands[0];
        if (kind == SwfAbcOperand::branch || kind == SwfAbcOperand::cases)
            aim(instruction.operands[0]);
        if (kind == SwfAbcOperand::cases) {
            for (uint32_t i = 0; i < instruction.caseCount(); ++i)
                aim(instruction.caseTarget(i));
        }
        if (const char* refused = see ? see(instruction) : nullptr)
            return fail(refused, instruction.start);
    }
    if (reader.problem() != nullptr)
        return fail(reader.problem(), instruction.start);
    if (!readExceptions(body))
        return false;
    numberLabels();
    return true;
}

} // namespace libswf
