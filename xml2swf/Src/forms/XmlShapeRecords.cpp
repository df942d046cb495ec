// Shape records as XML.
#include "XmlCursor.h"
#include "XmlShapes.h"
#include "XmlWriteParts.h"

namespace xml2swf {

using namespace libswf;

static std::string_view lineStylesName(LineStyleKind kind) {
    return kind == LineStyleKind::lineStyle2 ? "LineStyles2" : "LineStyles";
}

// The widths of style indices that do not follow from the numbers of styles; full form.
static void writeWidths(XmlNode& node, const std::optional<SwfIndexWidths>& widths) {
    if (!widths)
        return;
    node.attribute("NumFillBits", widths->fill);
    node.attribute("NumLineBits", widths->line);
}

static void readWidths(XmlElement& element, std::optional<SwfIndexWidths>& widths) {
    if (!element.fullForm() || (!element.has("NumFillBits") && !element.has("NumLineBits")))
        return;
    constexpr int64_t most = 15; // of a field of 4 bits
    const auto fill = static_cast<uint8_t>(element.ranged("NumFillBits", 0, most));
    widths = {fill, static_cast<uint8_t>(element.ranged("NumLineBits", 0, most))};
}

static void writeStyleChange(XmlNode& node, const SwfStyleChange& change, LineStyleKind kind) {
    if (change.stateMoveTo)
        node.leaf("Move", {{"DX", change.moveDeltaX}, {"DY", change.moveDeltaY}});
    if (change.stateFillStyle0)
        node.leaf("SetFill0", {{"Index", change.fillStyle0}});
    if (change.stateFillStyle1)
        node.leaf("SetFill1", {{"Index", change.fillStyle1}});
    if (change.stateLineStyle)
        node.leaf("SetLine", {{"Index", change.lineStyle}});
    if (change.newStyles != nullptr) {
        XmlNode styles(node, "NewStyles");
        writeWidths(styles, change.newStyles->widths);
        writeChild(styles, "FillStyles", change.newStyles->fillStyles);
        XmlNode lines(styles, lineStylesName(kind));
        writeLineStyles(lines, change.newStyles->lineStyles, kind);
    }
}

static bool readIndex(XmlElement& element, uint16_t& index) {
    const bool present = element.has("Index");
    index = present ? element.ui16("Index") : index;
    return present;
}

static void readStyleChange(XmlElement& element, SwfStyleChange& change, LineStyleKind kind) {
    for (XmlElement child : element.children()) {
        if (child.is("Move")) {
            change.stateMoveTo = true;
            change.moveDeltaX = child.si32("DX");
            change.moveDeltaY = child.si32("DY");
        } else if (child.is("SetFill0")) {
            change.stateFillStyle0 |= readIndex(child, change.fillStyle0);
        } else if (child.is("SetFill1")) {
            change.stateFillStyle1 |= readIndex(child, change.fillStyle1);
        } else if (child.is("SetLine")) {
            change.stateLineStyle |= readIndex(child, change.lineStyle);
        } else if (child.is("NewStyles")) {
            change.newStyles = std::make_unique<SwfNewStyles>();
            readWidths(child, change.newStyles->widths);
            if (auto fills = child.childAt(0, "FillStyles"))
                readXml(*fills, change.newStyles->fillStyles);
            if (auto lines = child.childAt(1, lineStylesName(kind)))
                readLineStyles(*lines, change.newStyles->lineStyles, kind);
        } else {
            child.skip();
        }
    }
}

static void writeRecord(XmlNode& parent, const SwfShapeRecord& record, LineStyleKind newStyles) {
    switch (record.kind) {
    case SwfShapeRecord::Kind::straightEdge: {
        const auto& line = static_cast<const SwfLine&>(record);
        parent.leaf("Line", {{"DX", line.deltaX}, {"DY", line.deltaY}});
        break;
    }
    case SwfShapeRecord::Kind::curvedEdge: {
        const auto& curve = static_cast<const SwfCurve&>(record);
        parent.leaf("Curve", {{"CDX", curve.controlDeltaX},
                              {"CDY", curve.controlDeltaY},
                              {"ADX", curve.anchorDeltaX},
                              {"ADY", curve.anchorDeltaY}});
        break;
    }
    case SwfShapeRecord::Kind::styleChange: {
        XmlNode node(parent, "StyleChange");
        writeStyleChange(node, static_cast<const SwfStyleChange&>(record), newStyles);
        break;
    }
    }
}

void writeShapeRecords(XmlNode& parent, const SwfShapeRecords& records, LineStyleKind newStyles) {
    writeWidths(parent, records.widths);
    writeInParts(parent, records.count(), [&](XmlNode& node, size_t first, size_t end) {
        for (size_t i = first; i < end; ++i)
            writeRecord(node, *records.items().data()[i], newStyles);
    });
}

namespace {

// Edges and style changes in the form in which they are written.
class EdgeReader final : public XmlQuickReader {
public:
    explicit EdgeReader(SwfShapeRecords& records) : _records(records) {}
    explicit EdgeReader(std::unique_ptr<SwfShapeRecords> own) : _own(std::move(own)), _records(*_own) {}

    size_t read(std::string_view text, size_t start, size_t end) override {
        XmlCursor cursor(text, start);
        size_t done = start;
        while (cursor.toElement() && cursor.position() < end && readRecord(cursor))
            done = cursor.position();
        return done;
    }

    std::unique_ptr<XmlQuickReader> another() const override {
        auto records = std::make_unique<SwfShapeRecords>();
        if (_records.packsEdges())
            records->packEdges();
        return std::make_unique<EdgeReader>(std::move(records));
    }
    void join(XmlQuickReader& other) override { _records.append(std::move(static_cast<EdgeReader&>(other)._own)); }

private:
    bool readRecord(XmlCursor& cursor) {
        if (cursor.take("<Line DX=\"")) {
            int32_t dx, dy;
            if (!cursor.take(dx) || !cursor.take("\" DY=\"") || !cursor.take(dy) || !cursor.take("\" />"))
                return false;
            _records.addLine(dx, dy);
            return true;
        }
        if (cursor.take("<Curve CDX=\"")) {
            int32_t cdx, cdy, adx, ady;
            if (!cursor.take(cdx) || !cursor.take("\" CDY=\"") || !cursor.take(cdy) || !cursor.take("\" ADX=\"") ||
                !cursor.take(adx) || !cursor.take("\" ADY=\"") || !cursor.take(ady) || !cursor.take("\" />"))
                return false;
            _records.addCurve(cdx, cdy, adx, ady);
            return true;
        }
        return cursor.take("<StyleChange>") && readStyleChange(cursor);
    }

    bool readStyleChange(XmlCursor& cursor) {
        SwfStyleChange read;
        if (!cursor.toElement() || !readMove(cursor, read) ||
            !readIndex(cursor, "<SetFill0 Index=\"", read.stateFillStyle0, read.fillStyle0) ||
            !readIndex(cursor, "<SetFill1 Index=\"", read.stateFillStyle1, read.fillStyle1) ||
            !readIndex(cursor, "<SetLine Index=\"", read.stateLineStyle, read.lineStyle) ||
            !cursor.take("</StyleChange>"))
            return false;
        SwfStyleChange& change = _records.addStyleChange();
        change.stateMoveTo = read.stateMoveTo;
        change.moveDeltaX = read.moveDeltaX;
        change.moveDeltaY = read.moveDeltaY;
        change.stateFillStyle0 = read.stateFillStyle0;
        change.fillStyle0 = read.fillStyle0;
        change.stateFillStyle1 = read.stateFillStyle1;
        change.fillStyle1 = read.fillStyle1;
        change.stateLineStyle = read.stateLineStyle;
        change.lineStyle = read.lineStyle;
        return true;
    }

    // The parts of a style change may be missing.
    static bool readMove(XmlCursor& cursor, SwfStyleChange& change) {
        change.stateMoveTo = cursor.take("<Move DX=\"");
        return !change.stateMoveTo || (cursor.take(change.moveDeltaX) && cursor.take("\" DY=\"") &&
                                       cursor.take(change.moveDeltaY) && cursor.take("\" />") && cursor.toElement());
    }

    template <size_t N>
    static bool readIndex(XmlCursor& cursor, const char (&start)[N], bool& isThere, uint16_t& index) {
        isThere = cursor.take(start);
        return !isThere || (cursor.take(index) && cursor.take("\" />") && cursor.toElement());
    }

    std::unique_ptr<SwfShapeRecords> _own; // of a part
    SwfShapeRecords& _records;
};

} // namespace

void readShapeRecords(XmlElement& parent, SwfShapeRecords& records, LineStyleKind newStyles) {
    if (parent.context().isToWrite() && records.empty() && !records.packsEdges())
        records.packEdges();
    readWidths(parent, records.widths);
    EdgeReader quick(records);
    for (XmlElement child : parent.children(quick)) {
        if (child.is("Line")) {
            const int32_t dx = child.si32("DX");
            const int32_t dy = child.si32("DY");
            records.addLine(dx, dy);
        } else if (child.is("Curve")) {
            const int32_t cdx = child.si32("CDX");
            const int32_t cdy = child.si32("CDY");
            const int32_t adx = child.si32("ADX");
            const int32_t ady = child.si32("ADY");
            records.addCurve(cdx, cdy, adx, ady);
        } else if (child.is("StyleChange")) {
            readStyleChange(child, records.addStyleChange(), newStyles);
        } else {
            child.skip();
        }
    }
}

} // namespace xml2swf
