// Blocks of ActionScript 3 like those that compilers make.
#include <deque>

#include "GeneratedMovies.h"
#include "SwfAbc.h"
#include "SwfMovie.h"

namespace bench {

using namespace libswf;

namespace {

class AbcGenerator {
public:
    std::vector<uint8_t> run(size_t bytes) {
        constexpr size_t bytesPerClass = 1700; // roughly
        _void = name(space(SwfAbcNamespaceKind::package, ""), string("void"));
        for (size_t i = 0; i * bytesPerClass < bytes; ++i)
            addClass("Class" + std::to_string(i), "package" + std::to_string(i / 16));
        return _block.bytes();
    }

private:
    uint32_t string(std::string text) {
        _texts.push_back(std::move(text));
        _block.strings.push_back(_texts.back());
        return static_cast<uint32_t>(_block.strings.size() - 1);
    }
    uint32_t space(SwfAbcNamespaceKind kind, const std::string& text) {
        _block.namespaces.push_back({static_cast<uint8_t>(kind), string(text)});
        return static_cast<uint32_t>(_block.namespaces.size() - 1);
    }
    uint32_t name(uint32_t space, uint32_t string, SwfAbcMultinameKind kind = SwfAbcMultinameKind::qName) {
        _block.multinames.push_back({kind, string, space, {}});
        return static_cast<uint32_t>(_block.multinames.size() - 1);
    }
    uint32_t method(std::vector<uint8_t> code) {
        _code.push_back(std::move(code));
        SwfAbcMethod& method = _block.methods.emplace_back();
        method.returnType = _void;
        SwfAbcBody& body = _block.bodies.emplace_back();
        body.method = static_cast<uint32_t>(_block.methods.size() - 1);
        body.maxStack = 4;
        body.localCount = 4;
        body.initScopeDepth = 4;
        body.maxScopeDepth = 5;
        body.code = _code.back();
        return body.method;
    }

    static void put(std::vector<uint8_t>& code, std::initializer_list<uint8_t> bytes) {
        code.insert(code.end(), bytes);
    }
    static void put(std::vector<uint8_t>& code, uint8_t opcode, uint32_t value) {
        code.push_back(opcode);
        for (; value >= 0x80; value >>= 7)
            code.push_back(static_cast<uint8_t>(value | 0x80));
        code.push_back(static_cast<uint8_t>(value));
    }

    // A condition around a call, in a loop.
    static std::vector<uint8_t> code(const std::vector<uint32_t>& names, const std::vector<uint32_t>& texts,
                                     size_t at) {
        const auto pick = [&](const std::vector<uint32_t>& from, size_t more) {
            return from[(at * 5 + more) % from.size()];
        };
        std::vector<uint8_t> code, loop;
        put(loop, {0x09}); // label
        put(loop, 0x5D, pick(names, 0));
        put(loop, 0x2C, pick(texts, 0));
        put(loop, {0xD1, 0xA0});
        put(loop, 0x4F, pick(names, 0));
        put(loop, {1, 0xD0});
        put(loop, 0x66, pick(names, 1));
        put(loop, {0x12, 6, 0, 0, 0xD1, 0x24, 5, 0xA0, 0x73, 0xD5});
        put(loop, 0x60, pick(names, 2));
        put(loop, 0x46, pick(names, 3));
        put(loop, {0, 0x80});
        loop.pop_back();
        put(loop, 0x80, pick(names, 4));
        put(loop, {0xD6, 0xC2, 3});
        put(code, {0xD0, 0x30, 0x24, 0, 0xD7, 0x10, static_cast<uint8_t>(loop.size()), 0, 0});
        code.insert(code.end(), loop.begin(), loop.end());
        const auto back = static_cast<uint32_t>(-static_cast<int32_t>(loop.size()) - 7);
        put(code, {0xD3, 0x24, 10, 0x15, static_cast<uint8_t>(back), static_cast<uint8_t>(back >> 8), 0xFF, 0x47});
        return code;
    }

    void addClass(const std::string& className, const std::string& package) {
        constexpr size_t members = 16;
        const uint32_t package_ = space(SwfAbcNamespaceKind::package, package);
        const uint32_t own = space(SwfAbcNamespaceKind::privateNamespace, "");
        _block.namespaceSets.push_back({own, package_, 1});
        const auto set = static_cast<uint32_t>(_block.namespaceSets.size() - 1);
        std::vector<uint32_t> names, texts;
        for (size_t i = 0; i < members; ++i) {
            const uint32_t text = string("member" + std::to_string(i) + "Of" + className);
            names.push_back(name(set, text, SwfAbcMultinameKind::multiname));
            texts.push_back(i % 4 == 0 ? string("Some text " + std::to_string(i) + " of " + className + ".") : text);
        }
        SwfAbcClass entry;
        entry.name = name(package_, string(className));
        entry.flags = SwfAbcClass::isSealed;
        entry.staticInitializer = method({0xD0, 0x30, 0x47});
        for (size_t i = 0; i < members; ++i) {
            SwfAbcTrait trait;
            trait.name = name(i % 2 == 0 ? own : 1, texts[1 + i / 4 * 4]);
            trait.kind = SwfAbcTrait::Kind::method;
            trait.index = method(code(names, texts, i));
            entry.traits.push_back(trait);
        }
        entry.constructor = method({0xD0, 0x30, 0xD0, 0x49, 0x00, 0x47});
        _block.classes.push_back(entry);
        SwfAbcTrait trait;
        trait.name = entry.name;
        trait.kind = SwfAbcTrait::Kind::classSlot;
        trait.index = static_cast<uint32_t>(_block.classes.size() - 1);
        std::vector<uint8_t> start = {0xD0, 0x30, 0x65, 0, 0x20};
        put(start, 0x58, trait.index);
        put(start, 0x68, entry.name);
        put(start, {0x47});
        _block.scripts.push_back({method(std::move(start)), {trait}});
    }

    SwfAbcBlock _block;
    std::deque<std::string> _texts;
    std::deque<std::vector<uint8_t>> _code;
    uint32_t _void = 0;
};

} // namespace

std::vector<uint8_t> generateAbc(size_t bytes) { return AbcGenerator().run(bytes); }

std::vector<uint8_t> generateAbcMovie(size_t bytes) {
    SwfMovie movie(10, 11000, 8000, 12, false);
    std::vector<uint8_t> body = {1, 0, 0, 0, 0}; // Flags, an empty Name
    const std::vector<uint8_t> block = generateAbc(bytes);
    body.insert(body.end(), block.begin(), block.end());
    movie.tags.append(std::make_shared<SwfTagUnknown>(uint16_t(82), SwfBytes::adopt(std::move(body))));
    const SwfVector<uint8_t> file = movie.serialise(9);
    return {file.begin(), file.end()};
}

} // namespace bench
