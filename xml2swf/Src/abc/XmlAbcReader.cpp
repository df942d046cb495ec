// XML to blocks of ActionScript 3.
#include "AbcConstantsReader.h"
#include "AbcLinker.h"
#include "AbcMemberReader.h"
#include "AbcQuickChildren.h"
#include "SwfInOrder.h"
#include "XmlAbc.h"
#include "XmlDocument.h"

namespace xml2swf {

using namespace libswf;

namespace {

struct NoTarget {
    int mark() const { return 0; }
    void rollBack(int) {}
};

class AbcCompiler {
public:
    explicit AbcCompiler(XmlElement& abc) : _abc(abc), _context(abc.context()), _pools(_block) {}

    SwfBytes compile() {
        if (_abc.has("MajorVersion"))
            _block.majorVersion = _abc.ui16("MajorVersion");
        if (_abc.has("MinorVersion"))
            _block.minorVersion = _abc.ui16("MinorVersion");
        readConstants();
        if (XmlBlock* pieces = _abc.takePieces()) {
            split(*pieces, Within::top);
            readUnits();
        } else {
            readSmall();
        }
        AbcLinker linker(_context, _pools, _block, _parts);
        linker.link();
        return SwfBytes::adopt(_block.bytes());
    }

private:
    enum class Within : uint8_t { top, inClass, inStatic, inScript };

    // Some pieces of an element's content, read at a time.
    struct Unit {
        XmlBlock* block;
        size_t firstPiece, piecesEnd;
        Within within;
        AbcPart* part;
        SwfWarnings warnings;
    };

    AbcPart& addPart() { return *_parts.emplace_back(std::make_unique<AbcPart>()); }

    // --- pools -------------------------------------------------------------------------------------------------------

    // They stand behind the code, but are read first.
    void readConstants() {
        XmlBlock* block = _context.observer == nullptr ? _abc.pieces() : nullptr;
        if (block == nullptr) {
            if (auto constants = _abc.child("Constants"))
                readConstants(*constants);
            return;
        }
        const std::string_view text = _context.document->text();
        for (size_t i = block->pieces.size(); i-- != 0;) {
            const XmlPiece& piece = block->pieces[i];
            if (text.substr(piece.start, piece.end - piece.start).find("<Constants") == text.npos)
                continue;
            for (XmlElement::ChildIterator child(_context, *block, i, i + 1); !child.atEnd(); ++child) {
                XmlElement element = *child;
                if (element.name() == "Constants")
                    return readConstants(element);
                element.acceptAll(); // its turn comes later
            }
        }
    }

    void readConstants(XmlElement& constants) {
        const std::string_view empty = constants.attribute("CountedEmpty").value_or("");
        for (const XmlName& pool : abcPoolNames) {
            if ((" " + std::string(empty) + " ").find(" " + std::string(pool.name) + " ") != std::string::npos)
                _block.countedEmpty |= static_cast<uint8_t>(1u << pool.value);
        }
        AbcConstantsReader reader(_context, _pools, _block);
        reader.readAll(constants);
        size_t place = constants.offset();
        try {
            _pools.list(reader.listed, place, _context.threads);
        } catch (const AbcTextError& error) {
            if (_context.observer == nullptr)
                refuseAbcText("Constants", "", error.what(), place);
        }
        _parts = std::move(reader.parts);
    }

    // --- code --------------------------------------------------------------------------------------------------------

    void readSmall() {
        AbcPart& part = addPart();
        AbcMemberReader reader(part, _pools, _block);
        NoTarget none;
        readAbcChildren(_abc, abcTopNames, part, none, [&](auto& child) { reader.readTop(child); });
    }

    // Takes big classes and scripts apart into their members.
    void split(XmlBlock& block, Within within) {
        constexpr size_t unitSize = 256 * 1024;
        for (size_t i = 0; i < block.pieces.size(); ++i) {
            const XmlPiece& piece = block.pieces[i];
            if (piece.block != XmlPiece::small && splitChild(block, i, within))
                continue;
            const bool goesOn = !_units.empty() && _units.back().block == &block && _units.back().piecesEnd == i &&
                                piece.end - block.pieces[_units.back().firstPiece].start <= unitSize;
            if (!goesOn)
                addUnit(block, i, within);
            _units.back().piecesEnd = i + 1;
        }
    }

    void addUnit(XmlBlock& block, size_t firstPiece, Within within) {
        AbcPart& part = addPart();
        if (within == Within::inScript)
            part.scripts.emplace_back().continues = true;
        else if (within != Within::top)
            part.classes.emplace_back().continues = true;
        _units.push_back({&block, firstPiece, firstPiece, within, &part, {}});
    }

    bool splitChild(XmlBlock& block, size_t piece, Within within) {
        XmlElement::ChildIterator child(_context, block, piece, piece + 1);
        const std::string_view name = child.name();
        if (within == Within::top && name == "Class") {
            XmlElement element = *child;
            AbcMemberReader(addPart(), _pools, _block).readClassHead(element);
            split(*element.takePieces(), Within::inClass);
        } else if (within == Within::top && name == "Script") {
            XmlElement element = *child;
            AbcMemberReader(addPart(), _pools, _block).readScriptHead(element);
            split(*element.takePieces(), Within::inScript);
        } else if (within == Within::inClass && name == "Static") {
            XmlElement element = *child;
            split(*element.takePieces(), Within::inStatic);
        } else {
            return false;
        }
        return true;
    }

    void readUnits() {
        workInOrder(
            {_units.size(), [this](size_t i) { readUnit(_units[i]); }, [this](size_t i) { takeUnit(_units[i]); }},
            _context.threads);
    }

    // [any thread]
    void readUnit(Unit& unit) {
        const std::unique_ptr<XmlDocument> document = _context.document->another();
        XmlReadContext context;
        context.document = document.get();
        context.fullForm = true;
        context.tagPath = _context.tagPath;
        context.warnings = _context.warnings == nullptr ? nullptr : &unit.warnings;
        AbcMemberReader reader(*unit.part, _pools, _block);
        switch (unit.within) {
        case Within::top: {
            NoTarget none;
            readAll(unit, context, none, [&](auto& child) { reader.readTop(child); });
            break;
        }
        case Within::inClass: {
            AbcClassText& target = unit.part->classes[0];
            readAll(unit, context, target, [&](auto& child) { reader.readMember(child, target); });
            break;
        }
        case Within::inStatic: {
            AbcClassText& target = unit.part->classes[0];
            readAll(unit, context, target, [&](auto& child) { reader.readStaticMember(child, target); });
            break;
        }
        case Within::inScript: {
            AbcScriptText& target = unit.part->scripts[0];
            readAll(unit, context, target, [&](auto& child) { reader.readScriptMember(child, target); });
            break;
        }
        }
    }

    template <class Target, class Read>
    void readAll(const Unit& unit, XmlReadContext& context, Target& target, Read read) {
        AbcQuickChildren<Target, Read> quick(context, *unit.part, target, read);
        XmlElement::ChildIterator child(context, *unit.block, unit.firstPiece, unit.piecesEnd, &quick);
        for (; !child.atEnd(); ++child) {
            XmlElement element = *child;
            read(element);
        }
    }

    void takeUnit(Unit& unit) {
        if (_context.warnings == nullptr)
            return;
        _context.warnings->add(std::move(unit.warnings), [this](SwfWarning& warning) {
            const XmlPlace place = _context.places.at(static_cast<size_t>(warning.offset));
            warning.row = place.row;
            warning.column = place.column;
        });
    }

    XmlElement& _abc;
    XmlReadContext& _context;
    SwfAbcBlock _block;
    AbcPools _pools;
    std::vector<std::unique_ptr<AbcPart>> _parts;
    std::vector<Unit> _units;
};

} // namespace

SwfBytes readAbc(XmlElement& parent, std::string_view dataName) {
    if (parent.context().fullForm) {
        if (auto abc = parent.child("Abc"))
            return AbcCompiler(*abc).compile();
    }
    return parent.payload(dataName);
}

} // namespace xml2swf
