#include "SwfGradientRecord.h"

#include <stdexcept>
#include <string>

#include "SwfStream.h"
#include "SwfTagCodes.h"

namespace libswf {

void SwfGradientRecord::read(SwfIStream& stream) {
    ratio = stream.readUI8("Ratio");
    color.read(stream);
}

void SwfGradientRecord::write(SwfOStream& stream) const {
    stream.writeUI8(ratio);
    color.write(stream);
}

static void readRecords(SwfIStream& stream, uint32_t count, SwfVector<SwfGradientRecord>& records) {
    records.clear();
    for (; count != 0; --count) {
        SwfGradientRecord record;
        record.read(stream);
        records.append(record);
    }
}

void SwfGradientRecords::read(SwfIStream& stream) {
    flags.raw = stream.readUI8("NumGradients");
    readRecords(stream, flags.numGradients(), records);
}

uint32_t SwfGradientRecords::getSize(SwfContext& context) {
    swfAssert(records.size() <= 0x0F, "Size <= 0x0F");
    flags.set(records.size(), flags.interpolationMode(), flags.spreadMode());
    return size = 1 + records.size() * (context.alpha ? 5 : 4);
}

void SwfGradientRecords::write(SwfOStream& stream) {
    if (stream.isCounter()) {
        stream.count(getSize(stream.context));
        return;
    }
    swfAssert(records.size() == flags.numGradients(), "Size == BitRecord.Bits.NumGradients");
    stream.writeUI8(flags.raw);
    for (const SwfGradientRecord& record : records)
        record.write(stream);
}

void SwfFocalGradient::read(SwfIStream& stream) {
    flags.raw = stream.readUI8("NumGradients");
    readRecords(stream, flags.numGradients(), records);
    stream.readBytes(sizeof focalPoint, focalPoint, "FocalPoint");
}

void SwfFocalGradient::write(SwfOStream& stream) const {
    const uint32_t count = flags.numGradients();
    if (count > records.size())
        throw std::out_of_range(tagName(stream.context.tagType) + ": NumGradients of a focal gradient is " +
                                std::to_string(count) + ", but it has " + std::to_string(records.size()) + " records");
    stream.writeUI8(flags.raw);
    for (uint32_t i = 0; i < count; ++i)
        records[i].write(stream);
    stream.writeBytes(focalPoint);
}

} // namespace libswf
