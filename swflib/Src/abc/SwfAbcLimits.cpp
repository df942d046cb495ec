// How much stack, registers and scopes code takes.
#include <algorithm>

#include "SwfAbcCode.h"

namespace libswf {

namespace {

class CodeMeter {
public:
    CodeMeter(const SwfAbcBody& body, const std::vector<SwfAbcMultiname>& multinames)
        : _body(body), _multinames(multinames), _seen(body.code.size(), false) {}

    SwfAbcLimits measure(uint32_t locals) {
        _limits.localCount = locals;
        _limits.maxScopeDepth = _body.initScopeDepth;
        come(0, {0, _body.initScopeDepth});
        for (const SwfAbcException& exception : _body.exceptions)
            come(exception.target, {1, _body.initScopeDepth}); // the stacks are emptied, the error is pushed
        while (!_waiting.empty()) {
            const auto [place, heights] = _waiting.back();
            _waiting.pop_back();
            follow(place, heights);
        }
        return _limits;
    }

private:
    struct Heights {
        uint32_t stack, scopes;
    };
    struct Start {
        uint32_t place;
        Heights heights;
    };

    // Each place is gone through once, with the heights of the way that came there first.
    void come(uint32_t place, Heights heights) {
        if (place < _seen.size() && !_seen[place])
            _waiting.push_back({place, heights});
    }

    void follow(uint32_t place, Heights heights) {
        SwfAbcInstruction instruction;
        SwfAbcCodeReader reader(_body.code.subspan(place));
        while (place < _seen.size() && !_seen[place] && reader.next(instruction)) {
            _seen[place] = true;
            const uint32_t base = place - instruction.start;
            pass(instruction, heights);
            const SwfAbcOperand kind = instruction.opcode->operands[0];
            if (kind == SwfAbcOperand::branch || kind == SwfAbcOperand::cases)
                come(instruction.operands[0] + base, heights);
            if (kind == SwfAbcOperand::cases) {
                for (uint32_t i = 0; i < instruction.caseCount(); ++i)
                    come(instruction.caseTarget(i) + base, heights);
            }
            if (instruction.opcode->endsFlow())
                return;
            place = base + instruction.end;
        }
    }

    void pass(const SwfAbcInstruction& instruction, Heights& heights) {
        const SwfAbcOpcode& opcode = *instruction.opcode;
        uint64_t pops = opcode.pops;
        for (size_t i = 0; i < SwfAbcOpcode::mostOperands; ++i)
            pops += popsOf(opcode.operands[i], instruction.operands[i]);
        heights.stack -= static_cast<uint32_t>(std::min<uint64_t>(pops, heights.stack));
        heights.stack += opcode.pushes;
        _limits.maxStack = std::max(_limits.maxStack, heights.stack);
        if (opcode.scopes > 0)
            _limits.maxScopeDepth = std::max(_limits.maxScopeDepth, ++heights.scopes);
        else if (opcode.scopes < 0 && heights.scopes != 0)
            --heights.scopes;
        constexpr uint8_t getLocal0 = 0xD0, setLocal0 = 0xD4, setLocal3 = 0xD7;
        if (opcode.code >= getLocal0 && opcode.code <= setLocal3)
            takeLocal((opcode.code - getLocal0) % (setLocal0 - getLocal0));
    }

    uint64_t popsOf(SwfAbcOperand kind, uint32_t value) {
        switch (kind) {
        case SwfAbcOperand::name: return value < _multinames.size() ? _multinames[value].runtimeParts() : 0;
        case SwfAbcOperand::arguments:
        case SwfAbcOperand::count: return value;
        case SwfAbcOperand::pairs: return 2 * uint64_t(value);
        case SwfAbcOperand::local:
        case SwfAbcOperand::objectLocal:
        case SwfAbcOperand::indexLocal: takeLocal(value); return 0;
        default: return 0;
        }
    }

    void takeLocal(uint32_t index) {
        if (index != UINT32_MAX)
            _limits.localCount = std::max(_limits.localCount, index + 1);
    }

    const SwfAbcBody& _body;
    const std::vector<SwfAbcMultiname>& _multinames;
    std::vector<bool> _seen;
    std::vector<Start> _waiting;
    SwfAbcLimits _limits;
};

} // namespace

SwfAbcLimits measureAbcCode(const SwfAbcBody& body, const std::vector<SwfAbcMultiname>& multinames,
                            uint32_t parameters) {
    return CodeMeter(body, multinames).measure(parameters);
}

} // namespace libswf
