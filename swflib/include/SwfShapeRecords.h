// The records that draw a shape or a glyph.
#pragma once

#include <memory>
#include <memory_resource>
#include <optional>
#include <vector>

#include "SwfBits.h"
#include "SwfFillStyle.h"
#include "SwfLineStyle.h"
#include "SwfStructs.h"

namespace libswf {

/// One record. Its size is not a multiple of bytes: the list reads, measures and writes it, and frees its memory.
class SwfShapeRecord : public SwfStruct {
public:
    enum class Kind : uint8_t { straightEdge, curvedEdge, styleChange };
    const Kind kind;

    SwfShapeRecord(const SwfShapeRecord&) = delete;
    SwfShapeRecord& operator=(const SwfShapeRecord&) = delete;

protected:
    explicit SwfShapeRecord(Kind recordKind) : kind(recordKind) {}
    ~SwfShapeRecord() = default;
};

/// A straight edge, in twips from the end of the last one. Edges are written in the smallest width that holds them; a
/// delta of 2^16 and more needs a width that its field cannot tell: the field is cut to 4 bits, on purpose, and the
/// shape cannot be read again.
class SwfLine : public SwfShapeRecord {
public:
    const int32_t deltaX, deltaY;

    explicit SwfLine(int32_t dx = 0, int32_t dy = 0) : SwfShapeRecord(Kind::straightEdge), deltaX(dx), deltaY(dy) {}

    /// Both deltas are written.
    bool isGeneral() const { return deltaX != 0 && deltaY != 0; }
    /// Bits of a delta in the file.
    uint32_t width() const { return bitsUnsigned(bitsMagnitude(deltaX) | bitsMagnitude(deltaY)) + 1; }
    /// Bits of the record in the file.
    uint32_t bits() const { return isGeneral() ? 7 + 2 * width() : 8 + width(); }
};

/// A quadratic curve: the control point from the end of the last edge, the anchor from the control point. Widths as
/// with SwfLine.
class SwfCurve : public SwfShapeRecord {
public:
    const int32_t controlDeltaX, controlDeltaY, anchorDeltaX, anchorDeltaY;

    explicit SwfCurve(int32_t cdx = 0, int32_t cdy = 0, int32_t adx = 0, int32_t ady = 0)
        : SwfShapeRecord(Kind::curvedEdge), controlDeltaX(cdx), controlDeltaY(cdy), anchorDeltaX(adx),
          anchorDeltaY(ady) {}

    uint32_t width() const {
        return bitsUnsigned(bitsMagnitude(controlDeltaX) | bitsMagnitude(controlDeltaY) | bitsMagnitude(anchorDeltaX) |
                            bitsMagnitude(anchorDeltaY)) +
               1;
    }
    uint32_t bits() const { return 6 + 4 * width(); }
};

/// NumFillBits and NumLineBits, 0 to 15.
struct SwfIndexWidths {
    uint8_t fill = 0, line = 0;

    bool operator==(const SwfIndexWidths&) const = default;
};

struct SwfNewStyles {
    SwfFillStyles fillStyles;
    SwfLineStyles lineStyles;
    std::optional<SwfIndexWidths> widths; ///< as SwfShapeRecords::widths, from here on
};

/// Moves the pen and chooses styles. With nothing set it is written as six 0 bits, which end the shape for a reader.
class SwfStyleChange : public SwfShapeRecord {
public:
    bool stateLineStyle = false;
    bool stateFillStyle0 = false;
    bool stateFillStyle1 = false;
    bool stateMoveTo = false;
    uint16_t lineStyle = 0;  ///< index from 1 into the current styles; 0 for none
    uint16_t fillStyle0 = 0; ///< the same, for the side to the left
    uint16_t fillStyle1 = 0; ///< the same, for the side to the right
    int32_t moveDeltaX = 0;  ///< twips from the shape's origin
    int32_t moveDeltaY = 0;
    std::unique_ptr<SwfNewStyles> newStyles; ///< replace the current styles from here on; null without new styles

    SwfStyleChange() : SwfShapeRecord(Kind::styleChange) {}
};

/// Widths of the indices that shape records use, from the numbers of styles: in the full form 0 for none, in the
/// classic one at least 1. Throws SwfException code 2 above 32,767 styles, whose width does not fit its field.
void setIndexWidths(SwfContext& context, uint64_t fillStyles, uint64_t lineStyles);
/// The same before reading: so many styles only mark the tag as one that cannot be written.
void setIndexWidths(SwfIStream& stream, uint64_t fillStyles, uint64_t lineStyles);

class SwfPackedEdges;

/// SHAPE: the records without the end record. Owns them in a pool of its own, freed as a whole.
///
/// Before read, getSize and write the context holds the index widths that writing uses (setIndexWidths). An index that
/// needs more bits throws SwfException code 2, unless the context cuts indices; so do new styles where the context
/// does not allow them, and a move of 2^30 twips and more. The file's own widths are used for reading and forgotten in
/// the classic form; the full form keeps those that are others than the context's.
class SwfShapeRecords final : public SwfStruct {
public:
    SwfShapeRecords();
    SwfShapeRecords(const SwfShapeRecords&) = delete;
    SwfShapeRecords& operator=(const SwfShapeRecords&) = delete;
    ~SwfShapeRecords();

    /// Full form: the widths of indices where they are others than the context's; they grow with the indices.
    std::optional<SwfIndexWidths> widths;

    uint32_t count() const { return _records.size(); }
    bool empty() const { return _records.empty(); }
    /// Asserts "index < Size".
    SwfShapeRecord& operator[](uint64_t index) { return *_records[index]; }
    const SwfShapeRecord& operator[](uint64_t index) const { return *_records[index]; }
    /// For loops: pointers to the records.
    const SwfVector<SwfShapeRecord*>& items() const { return _records; }

    /// For a list that is only to be written: the edges that are added from now on become bits at once. They take the
    /// place of some bytes, and are none of the records that can be asked for. The list has no edges yet.
    void packEdges();
    bool packsEdges() const { return _packed != nullptr; }

    void addLine(int32_t dx, int32_t dy) { addEdge<SwfLine>(dx, dy); }
    void addCurve(int32_t cdx, int32_t cdy, int32_t adx, int32_t ady) { addEdge<SwfCurve>(cdx, cdy, adx, ady); }
    SwfStyleChange& addStyleChange() {
        auto* counted = new (_pool.allocate(sizeof(CountedChange), alignof(CountedChange))) CountedChange;
        counted->edgeBitsBefore = _edgeBits;
        link(counted, counted);
        _records.append(&counted->change);
        return counted->change;
    }
    /// Takes over all records of another list, which packs edges if this one does.
    void append(std::unique_ptr<SwfShapeRecords> other);
    void clear();

    /// Reads to the end record; replaces what the list held. Throws SwfException code 3 when the body ends before.
    void read(SwfIStream& stream);
    /// Bytes, also kept in `size`. Leaves the widths that the last record used in the context.
    uint32_t getSize(SwfContext& context);
    /// A counting stream measures.
    void write(SwfOStream& stream);

private:
    // Style changes may own something, and are all that has to be looked at for measuring: edges do not change.
    struct CountedChange {
        SwfStyleChange change;
        uint64_t edgeBitsBefore = 0; // of all edges before it
        CountedChange* next = nullptr;
    };

    void link(CountedChange* first, CountedChange* last) {
        (_lastChange == nullptr ? _firstChange : _lastChange->next) = first;
        _lastChange = last;
    }

    template <class Edge, class... Deltas>
    void addEdge(Deltas... deltas) {
        if (packsEdges()) {
            _edgeBits = pack(Edge(deltas...));
            return;
        }
        auto* edge = new (_pool.allocate(sizeof(Edge), alignof(Edge))) Edge(deltas...);
        _records.append(edge);
        _edgeBits += edge->bits();
    }
    uint64_t pack(const SwfLine& line);
    uint64_t pack(const SwfCurve& curve);
    void writeRecords(SwfOStream& stream) const;

    static constexpr size_t firstBlock = 192; // bytes; further blocks grow
    std::pmr::monotonic_buffer_resource _pool{firstBlock};
    CountedChange* _firstChange = nullptr;
    CountedChange* _lastChange = nullptr;
    uint64_t _edgeBits = 0;
    std::vector<std::unique_ptr<SwfShapeRecords>> _joined; // whose pools hold what was taken over
    SwfVector<SwfShapeRecord*> _records;
    std::unique_ptr<SwfPackedEdges> _packed;
};

/// The glyphs of a font. Glyphs are written with a fill index of 1 bit and no line index; indices are cut to that.
class SwfShapes : public SwfStruct {
public:
    SwfPtrVector<SwfShapeRecords*> items;

    uint32_t count() const { return items.size(); }
    SwfShapeRecords& add() { return items.add(std::make_unique<SwfShapeRecords>()); }

    /// Appends the glyph at the stream's position.
    void readGlyph(SwfIStream& stream);
    /// Bytes of all glyphs; each list keeps its own in `size`.
    uint32_t getSize(SwfContext& context);
    void write(SwfOStream& stream);
};

} // namespace libswf
