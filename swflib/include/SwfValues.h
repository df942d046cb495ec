// The operands of Push.
#pragma once

#include <concepts>
#include <iterator>
#include <memory>

#include "SwfPooled.h"
#include "SwfStream.h"
#include "SwfStructs.h"

namespace libswf {

/// Type bytes of the operands.
namespace SwfValueType {
enum : uint8_t {
    String = 0,
    Float = 1,
    Null = 2,
    Undefined = 3,
    Register = 4,
    Boolean = 5,
    Double = 6,
    Integer = 7,
    Constant8 = 8,
    Constant16 = 9
};
}

/// One operand; by itself one without data, Null or Undefined.
class SwfValue : public SwfStruct, public SwfPooled {
public:
    enum class Plain : uint8_t { Null = SwfValueType::Null, Undefined = SwfValueType::Undefined };

    const uint8_t valueType;

    explicit SwfValue(Plain type) : valueType(static_cast<uint8_t>(type)) {}
    virtual ~SwfValue() = default;
    SwfValue(const SwfValue&) = delete;
    SwfValue& operator=(const SwfValue&) = delete;

    /// Bytes of the type byte and the data, also kept in `size`.
    virtual uint32_t getSize(SwfContext& context);
    virtual void write(SwfOStream& stream) const { stream.writeUI8(valueType); }

protected:
    explicit SwfValue(uint8_t type) : valueType(type) {}
};

class SwfValueString : public SwfValue {
public:
    SwfString text;

    SwfValueString() : SwfValue(SwfValueType::String) {}
    explicit SwfValueString(SwfIStream& stream);
    void write(SwfOStream& stream) const override;
};

/// In the full form the high half stands in front, each half little-endian: 1.0 is 00 00 F0 3F 00 00 00 00, as players
/// read it. The classic form departs from that on purpose: the low half stands in front, each with its most significant
/// byte first, 00 00 00 00 3F F0 00 00.
class SwfValueDouble : public SwfValue {
public:
    double value = 0;

    SwfValueDouble() : SwfValue(SwfValueType::Double) {}
    explicit SwfValueDouble(SwfIStream& stream);
    void write(SwfOStream& stream) const override;
};

/// An operand that is one integer in the file.
template <uint8_t Type, std::unsigned_integral Int>
class SwfValueOf : public SwfValue {
public:
    Int value = 0;

    SwfValueOf() : SwfValue(Type) {}
    explicit SwfValueOf(SwfIStream& stream) : SwfValueOf() {
        if constexpr (sizeof(Int) == 1)
            value = stream.readUI8("Value");
        else if constexpr (sizeof(Int) == 2)
            value = stream.readUI16("Value");
        else
            value = stream.readUI32("Value");
    }
    void write(SwfOStream& stream) const override {
        SwfValue::write(stream);
        if constexpr (sizeof(Int) == 1)
            stream.writeUI8(value);
        else if constexpr (sizeof(Int) == 2)
            stream.writeUI16(value);
        else
            stream.writeUI32(value);
    }
};

using SwfValueFloat = SwfValueOf<SwfValueType::Float, uint32_t>; ///< the bits of the number
using SwfValueRegister = SwfValueOf<SwfValueType::Register, uint8_t>;
using SwfValueBoolean = SwfValueOf<SwfValueType::Boolean, uint8_t>;
using SwfValueInteger = SwfValueOf<SwfValueType::Integer, uint32_t>;
using SwfValueConstant8 = SwfValueOf<SwfValueType::Constant8, uint8_t>;
using SwfValueConstant16 = SwfValueOf<SwfValueType::Constant16, uint16_t>;

/// The operands in order, owned. Most are few: these need no memory beside the list.
class SwfValues : public SwfPtrVector<SwfValue*> {
public:
    SwfValues() {
        _data = _few;
        _capacity = static_cast<uint32_t>(std::size(_few));
    }
    SwfValues(const SwfValues&) = delete;
    SwfValues& operator=(const SwfValues&) = delete;

private:
    SwfValue* _few[3];
};

/// Reads a type byte and its data. An unknown type throws SwfException code 3. Under keepRaw it gives null and marks
/// the stream inexact, and so does a value that passes the stream's limit.
std::unique_ptr<SwfValue> readValue(SwfIStream& stream);

} // namespace libswf
