// Gradients of fill styles.
#pragma once

#include "SwfStructs.h"

namespace libswf {

/// GRADRECORD: a colour stop.
class SwfGradientRecord : public SwfStruct {
public:
    uint8_t ratio = 0; ///< 0 to 255 from the left or the centre
    SwfColor color;

    void read(SwfIStream& stream);
    void write(SwfOStream& stream) const;
};

/// The byte in front of a gradient's records.
struct SwfGradientFlags {
    uint8_t raw = 0;

    uint32_t numGradients() const { return raw & 0x0F; }
    uint32_t interpolationMode() const { return raw >> 4 & 3; }
    uint32_t spreadMode() const { return raw >> 6; }
    /// Each value is cut to its field.
    void set(uint32_t numGradients, uint32_t interpolationMode, uint32_t spreadMode) {
        raw = static_cast<uint8_t>((numGradients & 0x0F) | (interpolationMode & 3) << 4 | (spreadMode & 3) << 6);
    }
};

/// GRADIENT of linear and radial fills: at most 15 records.
class SwfGradientRecords : public SwfStruct {
public:
    SwfGradientFlags flags; ///< measuring sets the count in it
    SwfVector<SwfGradientRecord> records;

    void read(SwfIStream& stream);
    /// Sets the count of records; asserts "Size <= 0x0F".
    uint32_t getSize(SwfContext& context);
    /// Asserts "Size == BitRecord.Bits.NumGradients". A counting stream measures instead.
    void write(SwfOStream& stream);
};

/// FOCALGRADIENT. The count in the flags byte governs what is written, whatever the number of records: further records
/// stay out of the file, and a count above their number throws std::out_of_range on measuring and on writing.
class SwfFocalGradient : public SwfStruct {
public:
    SwfGradientFlags flags;
    SwfVector<SwfGradientRecord> records;
    uint8_t focalPoint[2] = {}; ///< 8.8 fixed point, -1 to 1, as its two bytes in file order

    void read(SwfIStream& stream);
    void write(SwfOStream& stream) const;
};

} // namespace libswf
