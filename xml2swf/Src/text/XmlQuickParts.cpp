#include "XmlQuickParts.h"

#include <atomic>

#include "SwfInOrder.h"
#include "XmlBytes.h"
#include "XmlDocument.h"

namespace xml2swf {

namespace {

constexpr size_t piecesPerPart = 8;

class PartedChildren {
public:
    PartedChildren(std::string_view text, XmlBlock& block, XmlQuickReader& quick)
        : _text(text), _block(block), _quick(quick), _parts((block.pieces.size() + piecesPerPart - 1) / piecesPerPart) {
    }

    XmlQuickEnd read(uint32_t threads) {
        libswf::workInOrder({_parts.size(), [this](size_t i) { readPart(i); }, [this](size_t i) { takePart(i); }},
                            threads);
        return _end;
    }

private:
    struct Part {
        std::unique_ptr<XmlQuickReader> reader;
        XmlQuickEnd end;
        bool isWhole = false;
    };

    // [any thread]
    void readPart(size_t index) {
        if (_stopped)
            return;
        Part& part = _parts[index];
        part.reader = _quick.another();
        const size_t piecesEnd = std::min((index + 1) * piecesPerPart, _block.pieces.size());
        part.end.piece = index * piecesPerPart;
        while (part.end.piece < piecesEnd && readPiece(*part.reader, part.end))
            ++part.end.piece;
        part.isWhole = part.end.piece == piecesEnd;
    }

    // False where it stops.
    bool readPiece(XmlQuickReader& reader, XmlQuickEnd& end) {
        XmlPiece& piece = _block.pieces[end.piece];
        end.at = piece.start;
        if (piece.block != XmlPiece::small)
            return false;
        end.at = reader.read(_text, piece.start, piece.end);
        const char* stop = _text.data() + piece.end;
        piece.parsed = findFirst<NotBlank>(_text.data() + end.at, stop) == stop;
        return piece.parsed;
    }

    void takePart(size_t index) {
        Part& part = _parts[index];
        if (_stopped)
            return;
        _quick.join(*part.reader);
        _end = part.end;
        _stopped = !part.isWhole;
        part.reader.reset();
    }

    std::string_view _text;
    XmlBlock& _block;
    XmlQuickReader& _quick;
    std::vector<Part> _parts;
    XmlQuickEnd _end;
    std::atomic<bool> _stopped = false;
};

} // namespace

XmlQuickEnd readInParts(XmlReadContext& context, XmlBlock& block, XmlQuickReader& quick) {
    if (context.threads == 1 || block.end - block.start < libswf::bigText || quick.another() == nullptr)
        return {};
    return PartedChildren(context.document->text(), block, quick).read(context.threads);
}

} // namespace xml2swf
