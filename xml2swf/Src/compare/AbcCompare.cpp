#include "AbcCompare.h"

#include <unordered_map>

#include "AbcFlags.h"
#include "AbcSource.h"
#include "SwfException.h"
#include "XmlDifference.h"

namespace xml2swf {

using namespace libswf;

namespace {

// A block as pieces of text, each under a name that says where it stands.
class NamedPieces {
public:
    explicit NamedPieces(std::span<const uint8_t> bytes) : _read(bytes, 1) {
        // Where a method stands in the file is no difference of its own.
        _read.plan.methodPlaces.assign(_read.block.methods.size(), abcFollows);
        _read.plan.bodyPlaces.assign(_read.block.bodies.size(), abcFollows);
        std::unordered_map<std::string, uint32_t> copies;
        for (const AbcItem& item : _read.plan.items) {
            std::string name = nameOf(item);
            if (const uint32_t copy = ++copies[name]; copy > 1)
                name += "[" + std::to_string(copy) + "]";
            _places.emplace(name, _names.size());
            _names.push_back(std::move(name));
        }
    }

    size_t size() const { return _names.size(); }
    const std::string& name(size_t index) const { return _names[index]; }
    std::optional<size_t> find(const std::string& name) const {
        const auto found = _places.find(name);
        return found == _places.end() ? std::nullopt : std::optional(found->second);
    }

    // Empty for what only closes an element.
    std::string text(size_t index) const {
        using Kind = AbcItem::Kind;
        const AbcItem& item = _read.plan.items[index];
        if (item.kind == Kind::classEnd || item.kind == Kind::scriptEnd)
            return {};
        XmlText out;
        XmlWriteContext context;
        AbcMemberWriter(out, context, 0, _read.source).write(item);
        std::string text(out.view());
        if (item.kind == Kind::classStart)
            text += "</Class>";
        else if (item.kind == Kind::scriptStart)
            text += "</Script>";
        else if (item.kind == Kind::staticStart)
            text += "</Static>";
        return text;
    }
    std::string constants() const {
        XmlText out;
        XmlWriteContext context;
        XmlNode abc(out, context, 0, "Abc");
        const size_t start = out.size();
        writeAbcConstants(abc, _read.source);
        return std::string(out.view().substr(start));
    }

private:
    std::string named(std::string_view element, uint32_t multiname) const {
        return std::string(element) + "[" + std::string(_read.names.multinames[multiname]) + "]";
    }
    std::string nameOf(const SwfAbcTrait& trait) const {
        return "/" + named(abcTraitElements[static_cast<size_t>(trait.kind)], trait.name);
    }
    std::string scriptName(uint32_t index) const {
        const SwfAbcTraits& traits = _read.block.scripts[index].traits;
        return traits.empty() ? "Script" : named("Script", traits[0].name);
    }

    std::string nameOf(const AbcItem& item) const {
        using Kind = AbcItem::Kind;
        const SwfAbcBlock& block = _read.block;
        const bool isScript = item.kind >= Kind::scriptStart && item.kind <= Kind::scriptEnd;
        if (item.kind == Kind::function)
            return "Function[" + _read.plan.methodIds[item.index] + "]";
        const std::string owner = isScript ? scriptName(item.owner) : named("Class", block.classes[item.owner].name);
        switch (item.kind) {
        case Kind::constructor: return owner + "/Constructor";
        case Kind::trait: return owner + nameOf(block.classes[item.owner].traits[item.index]);
        case Kind::staticStart: return owner + "/Static";
        case Kind::staticInitializer: return owner + "/Static/Initializer";
        case Kind::staticTrait: return owner + "/Static" + nameOf(block.classes[item.owner].staticTraits[item.index]);
        case Kind::scriptInitializer: return owner + "/Initializer";
        case Kind::scriptTrait: return owner + nameOf(block.scripts[item.owner].traits[item.index]);
        case Kind::classEnd:
        case Kind::scriptEnd: return owner + "/end";
        default: return owner;
        }
    }

    AbcReadBlock _read;
    std::vector<std::string> _names;
    std::unordered_map<std::string, size_t> _places;
};

// The path inside of a piece, whose own element has its name already.
FieldDifference inside(const std::string& piece, FieldDifference field) {
    const size_t slash = field.path.find('/');
    field.path = "Abc/" + piece + (slash == field.path.npos ? "" : field.path.substr(slash));
    return field;
}

FieldDifference onlyOne(const std::string& piece, bool isInA) {
    FieldDifference field;
    field.path = "Abc/" + piece;
    (isInA ? field.a : field.b) = piece.substr(piece.rfind('/') + 1);
    return field;
}

} // namespace

std::optional<FieldDifference> abcDifference(std::span<const uint8_t> bytesA, std::span<const uint8_t> bytesB) {
    try {
        const NamedPieces a(bytesA), b(bytesB);
        for (size_t i = 0; i < a.size(); ++i) {
            const auto partner = b.find(a.name(i));
            if (!partner)
                return onlyOne(a.name(i), true);
            const std::string textA = a.text(i), textB = b.text(*partner);
            if (textA != textB)
                return inside(a.name(i), firstDifference(textA, textB));
        }
        for (size_t i = 0; i < b.size(); ++i) {
            if (!a.find(b.name(i)))
                return onlyOne(b.name(i), false);
        }
        const std::string constantsA = a.constants(), constantsB = b.constants();
        if (constantsA != constantsB)
            return inside("Constants", firstDifference(constantsA, constantsB));
    } catch (const SwfException&) {
    }
    return {};
}

} // namespace xml2swf
