// The bits of edges.
#pragma once

#include "SwfBitCursor.h"
#include "SwfShapeRecords.h"

namespace libswf {

// The first 6 bits of a shape record. An edge has its type, whether it is straight, and its width in them.
constexpr uint32_t edgeBit = 0x20, straightBit = 0x10, edgeWidthMask = 0x0F;

/// Puts edges into a SwfBitPacker, or anything else with its `put` and `putLong`.
class SwfEdgeWriter {
public:
    template <class Bits>
    void write(const SwfLine& line, Bits& bits) {
        const uint32_t n = line.width();
        const uint64_t head = headOf(straightBit, n);
        if (!line.isGeneral()) {
            const bool vertical = line.deltaX == 0;
            bits.put(8 + n, (head << 2 | (vertical ? 1 : 0)) << n | lowBits(n, vertical ? line.deltaY : line.deltaX));
        } else if (7 + 2 * n <= SwfBitFields::most) {
            bits.put(7 + 2 * n, (head << 1 | 1) << 2 * n | bitPair(n, line.deltaX, line.deltaY));
        } else {
            bits.put(7, head << 1 | 1);
            bits.putLong(2 * n, bitPair(n, line.deltaX, line.deltaY));
        }
    }

    template <class Bits>
    void write(const SwfCurve& curve, Bits& bits) {
        const uint32_t n = curve.width();
        const uint64_t head = headOf(0, n);
        const uint64_t control = bitPair(n, curve.controlDeltaX, curve.controlDeltaY);
        const uint64_t anchor = bitPair(n, curve.anchorDeltaX, curve.anchorDeltaY);
        if (6 + 4 * n <= SwfBitFields::most) {
            bits.put(6 + 4 * n, (head << 2 * n | control) << 2 * n | anchor);
        } else {
            bits.put(6, head);
            bits.putLong(2 * n, control);
            bits.putLong(2 * n, anchor);
        }
    }

    /// Edges written whose width did not fit its field.
    uint64_t cutEdges = 0;

private:
    static constexpr uint32_t mostBits = 17; // the field of 4 bits holds the width - 2

    uint32_t headOf(uint32_t straight, uint32_t n) {
        if (n > mostBits)
            ++cutEdges;
        return edgeBit | straight | ((n - 2) & edgeWidthMask);
    }
};

/// Edges in the form in which they are written.
class SwfPackedEdges {
public:
    /// Gives the bits of all edges.
    template <class Edge>
    uint64_t add(const Edge& edge) {
        _writer.write(edge, _runs.back().bits);
        return bits();
    }
    void append(SwfPackedEdges& other) {
        const uint64_t before = bits();
        for (Run& run : other._runs) {
            run.start += before;
            _runs.push_back(std::move(run));
        }
        _writer.cutEdges += other.cutEdges();
    }
    uint64_t bits() const { return _runs.back().end(); }
    uint64_t cutEdges() const { return _writer.cutEdges; }

    /// Puts those in bits [from, to) somewhere else.
    void copyTo(SwfBitPacker& bits, uint64_t from, uint64_t to) const {
        const auto starts = [](uint64_t bit, const Run& run) { return bit < run.start; };
        for (auto run = std::upper_bound(_runs.begin(), _runs.end(), from, starts) - 1; from < to; ++run) {
            const uint64_t end = std::min(to, run->end());
            for (uint32_t n; from < end; from += n) {
                n = static_cast<uint32_t>(std::min<uint64_t>(end - from, SwfBitFields::most));
                bits.put(n, run->bits.at(from - run->start) >> (64 - n));
            }
        }
    }

private:
    // A SwfBitPacker to memory that grows.
    class Bits {
    public:
        void put(uint32_t n, uint64_t v) {
            if (uint64_t(_used) + room > _bytes.size()) [[unlikely]]
                _bytes.resize(2 * (uint64_t(_used) + room));
            _used = static_cast<uint32_t>(_fields.put(_bytes.data() + _used, n, v) - _bytes.data());
        }
        void putLong(uint32_t n, uint64_t v) { putBits(*this, n, v); }
        uint64_t count() const { return uint64_t(_used) * 8 + _fields.held(); }
        /// From this bit on; at least SwfBitFields::most of them, as far as there are so many.
        uint64_t at(uint64_t bit) const { return loadBits(_bytes.data() + bit / 8) << bit % 8; }

    private:
        static constexpr uint32_t room = 16; // a put may write so many bytes, and what reads them may read so many

        SwfBitFields _fields;
        SwfVector<uint8_t> _bytes;
        uint32_t _used = 0;
    };

    // What was added in a row.
    struct Run {
        uint64_t start = 0; // bits before it
        Bits bits;

        uint64_t end() const { return start + bits.count(); }
    };

    std::vector<Run> _runs = std::vector<Run>(1);
    SwfEdgeWriter _writer;
};

} // namespace libswf
