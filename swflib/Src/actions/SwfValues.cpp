#include "SwfValues.h"

#include "SwfActionRefusal.h"

namespace libswf {

uint32_t SwfValue::getSize(SwfContext& context) {
    return size = measure(context, [&](SwfOStream& stream) { write(stream); });
}

SwfValueString::SwfValueString(SwfIStream& stream) : SwfValueString() { stream.readString(text, "String"); }

void SwfValueString::write(SwfOStream& stream) const {
    SwfValue::write(stream);
    text.write(stream, true);
}

// The byte order of one half, most significant byte first.
static uint32_t swapped(uint32_t half) {
    return half >> 24 | (half >> 8 & 0xFF00) | (half << 8 & 0xFF0000) | half << 24;
}

SwfValueDouble::SwfValueDouble(SwfIStream& stream) : SwfValueDouble() {
    const uint32_t first = stream.readUI32("Double");
    const uint32_t second = stream.readUI32("Double");
    const uint32_t high = stream.context.fullForm ? first : swapped(second);
    const uint32_t low = stream.context.fullForm ? second : swapped(first);
    value = std::bit_cast<double>(uint64_t(high) << 32 | low);
}

void SwfValueDouble::write(SwfOStream& stream) const {
    const uint64_t bits = std::bit_cast<uint64_t>(value);
    const auto low = static_cast<uint32_t>(bits), high = static_cast<uint32_t>(bits >> 32);
    SwfValue::write(stream);
    stream.writeUI32(stream.context.fullForm ? high : swapped(low));
    stream.writeUI32(stream.context.fullForm ? low : swapped(high));
}

static std::unique_ptr<SwfValue> makeValue(SwfIStream& stream) {
    switch (stream.readUI8("Type")) {
    case SwfValueType::String: return std::make_unique<SwfValueString>(stream);
    case SwfValueType::Float: return std::make_unique<SwfValueFloat>(stream);
    case SwfValueType::Null: return std::make_unique<SwfValue>(SwfValue::Plain::Null);
    case SwfValueType::Undefined: return std::make_unique<SwfValue>(SwfValue::Plain::Undefined);
    case SwfValueType::Register: return std::make_unique<SwfValueRegister>(stream);
    case SwfValueType::Boolean: return std::make_unique<SwfValueBoolean>(stream);
    case SwfValueType::Double: return std::make_unique<SwfValueDouble>(stream);
    case SwfValueType::Integer: return std::make_unique<SwfValueInteger>(stream);
    case SwfValueType::Constant8: return std::make_unique<SwfValueConstant8>(stream);
    case SwfValueType::Constant16: return std::make_unique<SwfValueConstant16>(stream);
    default: refuse(stream, "Type", "a value of an unknown type"); return nullptr;
    }
}

std::unique_ptr<SwfValue> readValue(SwfIStream& stream) {
    auto value = makeValue(stream);
    if (value == nullptr || !stream.context.keepRaw)
        return value;
    const uint64_t end = stream.position();
    const bool textIsCut =
        value->valueType == SwfValueType::String && end == stream.limit() && stream.data()[end - 1] != 0;
    if (!textIsCut && end <= stream.limit())
        return value;
    stream.markInexact("the value is longer than its action");
    return nullptr;
}

} // namespace libswf
