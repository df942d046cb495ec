#include "SwfShapeRecords.h"

#include <utility>

#include "SwfEdgeBits.h"
#include "SwfStream.h"
#include "SwfTagCodes.h"
#include "SwfWarnings.h"

namespace libswf {

static_assert(sizeof(SwfLine) == 24 && sizeof(SwfCurve) == 32 && sizeof(SwfStyleChange) <= 40,
              "shapes have millions of records");

namespace {

constexpr uint32_t maxIndexBits = 15; // of a field of 4 bits
constexpr uint32_t maxMoveBits = 31;  // of a field of 5 bits
constexpr uint32_t endBits = 6;

// The first 6 bits of a style change.
constexpr uint32_t newStylesBit = 0x10, lineStyleBit = 0x08, fillStyle1Bit = 0x04, fillStyle0Bit = 0x02, moveBit = 0x01;

uint32_t styleBits(const SwfStyleChange& change) {
    return (change.newStyles != nullptr ? newStylesBit : 0) | (change.stateLineStyle ? lineStyleBit : 0) |
           (change.stateFillStyle1 ? fillStyle1Bit : 0) | (change.stateFillStyle0 ? fillStyle0Bit : 0) |
           (change.stateMoveTo ? moveBit : 0);
}

uint32_t widthOfMove(const SwfStyleChange& change) {
    const uint32_t n = bitsSigned2(change.moveDeltaX, change.moveDeltaY);
    if (n > maxMoveBits)
        throw SwfException(SwfError::doesNotFit, "a shape moves by 2^30 twips or more");
    return n;
}

void checkIndex(const SwfContext& context, uint32_t index, uint32_t width, const char* what) {
    if (index >> width != 0 && !context.cutIndices)
        throw SwfException(SwfError::doesNotFit, std::string("a style change has the ") + what + " index " +
                                                     std::to_string(index) +
                                                     ", the largest that the number of styles leaves room for is " +
                                                     std::to_string((1u << width) - 1));
}

void checkNewStyles(const SwfContext& context) {
    if (!context.newStylesAllowed)
        throw SwfException(SwfError::doesNotFit, "a style change has new styles, which this tag cannot hold");
}

SwfIndexWidths widthsOf(const SwfContext& context) { return {context.numFillBits, context.numLineBits}; }

// Puts the widths into the context that the style changes from `change` up to the next new styles are written with.
template <class CountedChange>
void chooseWidths(SwfContext& context, const std::optional<SwfIndexWidths>& widths, const CountedChange* change) {
    if (!widths && !context.widenIndices)
        return;
    SwfIndexWidths chosen = widths.value_or(widthsOf(context));
    const auto widen = [](uint8_t& width, bool isThere, uint32_t index) {
        if (isThere)
            width = std::max(width, static_cast<uint8_t>(std::bit_width(index)));
    };
    for (bool more = !context.cutIndices; more && change != nullptr; change = change->next) {
        widen(chosen.fill, change->change.stateFillStyle0, change->change.fillStyle0);
        widen(chosen.fill, change->change.stateFillStyle1, change->change.fillStyle1);
        widen(chosen.line, change->change.stateLineStyle, change->change.lineStyle);
        more = change->change.newStyles == nullptr;
    }
    if (std::max(chosen.fill, chosen.line) > maxIndexBits)
        throw SwfException(SwfError::doesNotFit, "a style change has an index above 32,767");
    context.numFillBits = chosen.fill;
    context.numLineBits = chosen.line;
}

// Reads the records of one list, and tells the stream when writing will not give them back.
class RecordReader {
public:
    RecordReader(SwfIStream& stream, SwfShapeRecords& records)
        : _stream(stream), _context(stream.context), _records(records), _bits(stream),
          _keptFillBits(stream.context.numFillBits), _keptLineBits(stream.context.numLineBits) {}

    void read() {
        readWidths(_records.widths);
        for (;;) {
            if (_bits.atLimit())
                _bits.fail("shape records", "the body ends before the end record");
            if (readWhole())
                continue;
            const uint32_t head = _bits.take(6, "TypeFlag");
            if ((head & edgeBit) == 0) {
                if (head == 0)
                    break;
                readStyleChange(head);
            } else if ((head & straightBit) != 0) {
                readLine((head & edgeWidthMask) + 2);
            } else {
                readCurve((head & edgeWidthMask) + 2);
            }
        }
        _bits.sync();
    }

private:
    void readWidths(std::optional<SwfIndexWidths>& widths) {
        const SwfIndexWidths expected = widthsOf(_context);
        _context.numFillBits = static_cast<uint8_t>(_bits.take(4, "NumFillBits"));
        _context.numLineBits = static_cast<uint8_t>(_bits.take(4, "NumLineBits"));
        if (_context.fullForm && widthsOf(_context) != expected)
            widths = widthsOf(_context);
    }

    // An edge, if all its bits can be looked at together.
    bool readWhole() {
        if (!_bits.hasWide())
            return false;
        const uint64_t bits = _bits.peekWide();
        const auto head = static_cast<uint32_t>(bits >> 58);
        if ((head & edgeBit) == 0)
            return false;
        const uint32_t n = (head & edgeWidthMask) + 2;
        const auto delta = [&](uint32_t at) {
            return static_cast<int32_t>(static_cast<int64_t>(bits << at) >> (64 - n));
        };
        if ((head & straightBit) == 0) {
            if (6 + 4 * n > SwfBitCursor::wide)
                return false;
            _records.addCurve(delta(6), delta(6 + n), delta(6 + 2 * n), delta(6 + 3 * n));
            _bits.pass(6 + 4 * n);
        } else if ((bits << 6 >> 63) != 0) {
            _records.addLine(delta(7), delta(7 + n));
            _bits.pass(7 + 2 * n);
        } else {
            const bool vertical = (bits << 7 >> 63) != 0;
            _records.addLine(vertical ? 0 : delta(8), vertical ? delta(8) : 0);
            _bits.pass(8 + n);
        }
        return true;
    }

    void readLine(uint32_t n) {
        const bool general = _bits.take(1, "GeneralLineFlag") != 0;
        const bool vertical = !general && _bits.take(1, "VertLineFlag") != 0;
        const int32_t dx = vertical ? 0 : _bits.takeSigned(n, "DeltaX");
        const int32_t dy = general || vertical ? _bits.takeSigned(n, "DeltaY") : 0;
        _records.addLine(dx, dy);
    }

    void readCurve(uint32_t n) {
        const int32_t cdx = _bits.takeSigned(n, "ControlDeltaX");
        const int32_t cdy = _bits.takeSigned(n, "ControlDeltaY");
        const int32_t adx = _bits.takeSigned(n, "AnchorDeltaX");
        const int32_t ady = _bits.takeSigned(n, "AnchorDeltaY");
        _records.addCurve(cdx, cdy, adx, ady);
    }

    uint16_t readIndex(uint32_t n, uint32_t kept, const char* field) {
        const uint32_t index = _bits.take(n, field);
        if (index >> kept != 0 && !_context.fullForm)
            _stream.markInexact("a style index above the number of styles");
        return static_cast<uint16_t>(index);
    }

    void readStyleChange(uint32_t head) {
        SwfStyleChange& change = _records.addStyleChange();
        change.stateMoveTo = (head & moveBit) != 0;
        change.stateFillStyle0 = (head & fillStyle0Bit) != 0;
        change.stateFillStyle1 = (head & fillStyle1Bit) != 0;
        change.stateLineStyle = (head & lineStyleBit) != 0;
        if (change.stateMoveTo) {
            const uint32_t n = _bits.take(5, "MoveBits");
            change.moveDeltaX = _bits.takeSigned(n, "MoveDeltaX");
            change.moveDeltaY = _bits.takeSigned(n, "MoveDeltaY");
        }
        if (change.stateFillStyle0)
            change.fillStyle0 = readIndex(_context.numFillBits, _keptFillBits, "FillStyle0");
        if (change.stateFillStyle1)
            change.fillStyle1 = readIndex(_context.numFillBits, _keptFillBits, "FillStyle1");
        if (change.stateLineStyle)
            change.lineStyle = readIndex(_context.numLineBits, _keptLineBits, "LineStyle");
        if ((head & newStylesBit) != 0)
            readNewStyles(change);
    }

    void readNewStyles(SwfStyleChange& change) {
        if (!_context.newStylesAllowed)
            _stream.markInexact("new styles, which this tag can hold on reading only");
        change.newStyles = std::make_unique<SwfNewStyles>();
        _bits.sync();
        change.newStyles->fillStyles.read(_stream);
        change.newStyles->lineStyles.read(_stream);
        _bits.restart();
        setIndexWidths(_stream, change.newStyles->fillStyles.items.size(), change.newStyles->lineStyles.items.size());
        _keptFillBits = _context.numFillBits;
        _keptLineBits = _context.numLineBits;
        readWidths(change.newStyles->widths);
    }

    SwfIStream& _stream;
    SwfContext& _context;
    SwfShapeRecords& _records;
    SwfBitCursor _bits;
    uint32_t _keptFillBits, _keptLineBits; // widths on writing
};

template <class CountedChange>
class RecordWriter {
public:
    RecordWriter(SwfOStream& stream, const std::optional<SwfIndexWidths>& widths, const CountedChange* firstChange)
        : _stream(stream), _context(stream.context), _bits(stream), _change(firstChange) {
        chooseWidths(_context, widths, _change);
    }

    void write(const SwfVector<SwfShapeRecord*>& records) {
        SwfEdgeWriter edges;
        writeWidths();
        for (SwfShapeRecord* record : records) {
            switch (record->kind) {
            case SwfShapeRecord::Kind::straightEdge: edges.write(static_cast<const SwfLine&>(*record), _bits); break;
            case SwfShapeRecord::Kind::curvedEdge: edges.write(static_cast<const SwfCurve&>(*record), _bits); break;
            case SwfShapeRecord::Kind::styleChange: writeStyleChange(static_cast<SwfStyleChange&>(*record)); break;
            }
        }
        finish(edges.cutEdges);
    }

    void write(const SwfPackedEdges& edges, CountedChange* changes) {
        uint64_t bit = 0;
        writeWidths();
        for (; changes != nullptr; changes = changes->next) {
            edges.copyTo(_bits, bit, changes->edgeBitsBefore);
            bit = changes->edgeBitsBefore;
            writeStyleChange(changes->change);
        }
        edges.copyTo(_bits, bit, edges.bits());
        finish(edges.cutEdges());
    }

private:
    void writeWidths() {
        _bits.put(4, _context.numFillBits);
        _bits.put(4, _context.numLineBits);
    }

    void finish(uint64_t cutEdges) {
        _bits.put(endBits, 0);
        _bits.finish();
        if (cutEdges != 0)
            addWarning(
                _context, SwfWarning::Kind::cut,
                (cutEdges == 1 ? "an edge has" : std::to_string(cutEdges) + " edges have") +
                    std::string(" deltas of 65,536 twips or more: the width is cut and the shape cannot be read"));
    }

    void writeIndex(uint32_t index, uint32_t n, const char* what) {
        checkIndex(_context, index, n, what);
        _bits.put(n, index & ((1u << n) - 1));
    }

    void writeStyleChange(SwfStyleChange& change) {
        _change = _change->next;
        _bits.put(6, styleBits(change));
        if (change.stateMoveTo) {
            const uint32_t n = widthOfMove(change);
            _bits.put(5, n);
            _bits.putLong(2 * n, bitPair(n, change.moveDeltaX, change.moveDeltaY));
        }
        if (change.stateFillStyle0)
            writeIndex(change.fillStyle0, _context.numFillBits, "fill");
        if (change.stateFillStyle1)
            writeIndex(change.fillStyle1, _context.numFillBits, "fill");
        if (change.stateLineStyle)
            writeIndex(change.lineStyle, _context.numLineBits, "line");
        if (change.newStyles == nullptr)
            return;
        checkNewStyles(_context);
        _bits.finish();
        change.newStyles->fillStyles.write(_stream);
        change.newStyles->lineStyles.write(_stream);
        setIndexWidths(_context, change.newStyles->fillStyles.items.size(), change.newStyles->lineStyles.items.size());
        chooseWidths(_context, change.newStyles->widths, _change);
        writeWidths();
    }

    SwfOStream& _stream;
    SwfContext& _context;
    SwfBitPacker _bits;
    const CountedChange* _change; // the next one
};

// The bit position after a style change that starts at `bit`.
uint64_t endOf(SwfStyleChange& change, SwfContext& context, uint64_t bit) {
    bit += 6;
    if (change.stateMoveTo)
        bit += 5 + 2 * widthOfMove(change);
    if (change.stateFillStyle0) {
        checkIndex(context, change.fillStyle0, context.numFillBits, "fill");
        bit += context.numFillBits;
    }
    if (change.stateFillStyle1) {
        checkIndex(context, change.fillStyle1, context.numFillBits, "fill");
        bit += context.numFillBits;
    }
    if (change.stateLineStyle) {
        checkIndex(context, change.lineStyle, context.numLineBits, "line");
        bit += context.numLineBits;
    }
    if (change.newStyles == nullptr)
        return bit;
    checkNewStyles(context);
    SwfNewStyles& styles = *change.newStyles;
    bit = (bit + 7) / 8 * 8;
    bit += 8 * (uint64_t(styles.fillStyles.getSize(context)) + styles.lineStyles.getSize(context) + 1);
    setIndexWidths(context, styles.fillStyles.items.size(), styles.lineStyles.items.size());
    return bit;
}

} // namespace

void setIndexWidths(SwfContext& context, uint64_t fillStyles, uint64_t lineStyles) {
    const uint64_t most = std::max(fillStyles, lineStyles);
    if (most >> maxIndexBits != 0)
        throw SwfException(SwfError::doesNotFit,
                           std::to_string(most) + " styles, whose indices do not fit shape records (at most 32,767)");
    const auto widthOf = [&](uint64_t styles) {
        const auto number = static_cast<uint32_t>(styles);
        return static_cast<uint8_t>(context.fullForm ? std::bit_width(number) : bitsUnsigned(number));
    };
    context.numFillBits = widthOf(fillStyles);
    context.numLineBits = widthOf(lineStyles);
}

void setIndexWidths(SwfIStream& stream, uint64_t fillStyles, uint64_t lineStyles) {
    constexpr uint64_t most = (1u << maxIndexBits) - 1;
    if (std::max(fillStyles, lineStyles) > most)
        stream.markInexact("more than 32,767 styles");
    setIndexWidths(stream.context, std::min(fillStyles, most), std::min(lineStyles, most));
}

SwfShapeRecords::SwfShapeRecords() = default;

SwfShapeRecords::~SwfShapeRecords() { clear(); }

void SwfShapeRecords::clear() {
    for (CountedChange* counted = _firstChange; counted != nullptr;)
        std::exchange(counted, counted->next)->~CountedChange();
    _firstChange = _lastChange = nullptr;
    _edgeBits = 0;
    _packed.reset();
    _records.clear();
    _pool.release();
    _joined.clear();
    widths.reset();
}

void SwfShapeRecords::packEdges() {
    swfAssert(_edgeBits == 0, "EdgeBits == 0");
    _packed = std::make_unique<SwfPackedEdges>();
}

uint64_t SwfShapeRecords::pack(const SwfLine& line) { return _packed->add(line); }

uint64_t SwfShapeRecords::pack(const SwfCurve& curve) { return _packed->add(curve); }

void SwfShapeRecords::append(std::unique_ptr<SwfShapeRecords> other) {
    swfAssert(packsEdges() == other->packsEdges(), "PacksEdges == Other.PacksEdges");
    if (packsEdges()) {
        _packed->append(*other->_packed);
        other->_packed.reset();
    }
    for (SwfShapeRecord* record : other->_records)
        _records.append(record);
    for (CountedChange* counted = other->_firstChange; counted != nullptr; counted = counted->next)
        counted->edgeBitsBefore += _edgeBits;
    if (other->_firstChange != nullptr)
        link(other->_firstChange, other->_lastChange);
    _edgeBits += other->_edgeBits;
    other->_records.clear();
    other->_firstChange = other->_lastChange = nullptr;
    _joined.push_back(std::move(other));
}

void SwfShapeRecords::read(SwfIStream& stream) {
    clear();
    SwfContext context = stream.context;
    RecordReader(stream, *this).read();
    if (!widths || !context.widenIndices)
        return;
    chooseWidths(context, {}, _firstChange);
    if (*widths == widthsOf(context))
        widths.reset();
}

uint32_t SwfShapeRecords::getSize(SwfContext& context) {
    uint64_t bit = 8, edgeBits = 0;
    chooseWidths(context, widths, _firstChange);
    for (CountedChange* counted = _firstChange; counted != nullptr; counted = counted->next) {
        bit += counted->edgeBitsBefore - edgeBits;
        edgeBits = counted->edgeBitsBefore;
        bit = endOf(counted->change, context, bit);
        if (counted->change.newStyles != nullptr)
            chooseWidths(context, counted->change.newStyles->widths, counted->next);
    }
    bit += _edgeBits - edgeBits;
    const uint64_t bytes = (bit + endBits + 7) / 8;
    if (bytes > UINT32_MAX)
        throw SwfException(SwfError::doesNotFit, "a shape of more than 4 GB");
    return size = static_cast<uint32_t>(bytes);
}

void SwfShapeRecords::write(SwfOStream& stream) {
    if (stream.isCounter())
        stream.count(getSize(stream.context));
    else
        writeRecords(stream);
}

void SwfShapeRecords::writeRecords(SwfOStream& stream) const {
    RecordWriter writer(stream, widths, _firstChange);
    if (packsEdges())
        writer.write(*_packed, _firstChange);
    else
        writer.write(_records);
}

static void setGlyphWidths(SwfContext& context) {
    context.cutIndices = true;
    context.numFillBits = 1;
    context.numLineBits = 0;
}

void SwfShapes::readGlyph(SwfIStream& stream) {
    setGlyphWidths(stream.context);
    add().read(stream);
}

uint32_t SwfShapes::getSize(SwfContext& context) {
    uint64_t total = 0;
    for (SwfShapeRecords* glyph : items) {
        setGlyphWidths(context);
        total += glyph->getSize(context);
    }
    if (total > UINT32_MAX)
        throw SwfException(SwfError::doesNotFit, "glyphs of more than 4 GB");
    return size = static_cast<uint32_t>(total);
}

void SwfShapes::write(SwfOStream& stream) {
    for (SwfShapeRecords* glyph : items) {
        setGlyphWidths(stream.context);
        glyph->write(stream);
    }
}

} // namespace libswf
