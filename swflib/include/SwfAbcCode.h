// The instructions of ActionScript 3.
#pragma once

#include <array>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "SwfAbc.h"

namespace libswf {

/// What an operand is. Those without a note are numbers of 1 to 5 bytes (u30).
enum class SwfAbcOperand : uint8_t {
    none,
    // indices into pools and lists
    name, ///< multiname
    string,
    file,     ///< string
    variable, ///< string
    integer,
    uinteger,
    real,
    nspace,
    method,
    classIndex,
    exception, ///< of the body's list
    // numbers
    local, ///< register
    objectLocal,
    indexLocal,
    dispId,
    slotId,
    scope,
    line,
    arguments, ///< values taken from the stack
    count,     ///< the same, of an array
    pairs,     ///< the same, two for each
    debugExtra,
    debugType,     ///< one byte
    debugRegister, ///< one byte
    u8,            ///< one byte
    s8,            ///< one byte, signed
    s16,           ///< a u30 whose low 16 bits are a signed number
    // places in the code
    branch, ///< 3 bytes, signed, from behind the instruction
    cases   ///< 3 bytes for the default, u30 of the cases less one, 3 bytes each, all from the instruction's first byte
};

/// A row of SwfAbcInstructions.def.
struct SwfAbcOpcode {
    static constexpr size_t mostOperands = 4;

    uint8_t code = 0;
    std::string_view name; ///< empty for a code that is no instruction
    uint8_t pops = 0, pushes = 0;
    int8_t scopes = 0;
    std::array<SwfAbcOperand, mostOperands> operands{};

    /// The row of a code.
    static const SwfAbcOpcode& of(uint8_t code);
    /// What stands behind it is reached by branches only.
    bool endsFlow() const;
};

/// One instruction as it stands in code.
struct SwfAbcInstruction {
    const SwfAbcOpcode* opcode = nullptr;
    uint32_t start = 0, end = 0; ///< in bytes
    /// Signed ones as their 32 bits. Of a branch the byte of the code it leads to, which may lie outside; of cases that
    /// of the default, then their number less one.
    std::array<uint32_t, SwfAbcOpcode::mostOperands> operands{};
    std::span<const uint8_t> offsets; ///< of the cases, 3 bytes each

    uint32_t caseCount() const { return static_cast<uint32_t>(offsets.size() / 3); }
    uint32_t caseTarget(uint32_t index) const;
};

/// Goes through code. It stops in front of what is no instruction, or would be written in another way.
class SwfAbcCodeReader {
public:
    explicit SwfAbcCodeReader(std::span<const uint8_t> code) : _code(code) {}
    /// False at the end of the code and where it cannot be read on.
    bool next(SwfAbcInstruction& instruction);
    /// Null unless it cannot be read on.
    const char* problem() const { return _problem; }
    uint32_t position() const { return _at; }

private:
    bool readOperand(SwfAbcInstruction& instruction, size_t index);
    bool readU30(uint32_t& value);
    bool readCases(SwfAbcInstruction& instruction);
    bool readS24(uint32_t& value);
    bool fail(const char* problem);

    std::span<const uint8_t> _code;
    uint32_t _at = 0;
    const char* _problem = nullptr;
};

/// Where instructions start in a body's code, and which of these places branches, cases and exceptions lead to. Used
/// for one body after the other.
class SwfAbcCodeMap {
public:
    /// Sees each instruction; may refuse it by a reason.
    using See = std::function<const char*(const SwfAbcInstruction&)>;

    /// False when the code is not made of instructions from its start to its end, or an exception's range is not.
    bool read(const SwfAbcBody& body, const See& see = {});
    const char* problem() const { return _problem; }
    uint32_t problemPlace() const { return _problemPlace; } ///< in bytes

    /// The number of the label at a place, from 1; 0 for none, as at a place that something leads to though no
    /// instruction starts there. The place behind the code may have one.
    uint32_t labelAt(uint32_t place) const { return place < _places.size() ? _places[place] & ~start : 0; }

private:
    void aim(uint32_t target);
    bool fail(const char* problem, uint32_t place);
    bool readExceptions(const SwfAbcBody& body);
    void numberLabels();

    static constexpr uint32_t start = 0x80000000;
    std::vector<uint32_t> _places; // an instruction starts here; there is a label
    const char* _problem = nullptr;
    uint32_t _problemPlace = 0;
};

/// What a body's code needs at most.
struct SwfAbcLimits {
    uint32_t maxStack = 0, localCount = 0, maxScopeDepth = 0;
};

/// Follows code from its start and from its exceptions' targets. `multinames` say what names take from the stack. Code
/// that takes more from a stack than it holds, or comes to one place with stacks of different heights, counts as far as
/// it makes sense.
SwfAbcLimits measureAbcCode(const SwfAbcBody& body, const std::vector<SwfAbcMultiname>& multinames,
                            uint32_t parameters);

} // namespace libswf
