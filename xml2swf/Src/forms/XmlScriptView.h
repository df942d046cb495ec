// What a script shows in the full form instead of numbers: names of places, and constants by their text.
#pragma once

#include <bit>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SwfActionsPayload.h"
#include "XmlElementWriter.h"
#include "XmlRegisters.h"

namespace xml2swf {

/// One script being written: a list of actions and all lists nested in it. Places are where actions start and lists
/// end, in the order in which they are written. Those that branches lead to are called L1, L2 and so on.
class ScriptView {
public:
    /// Is the script of the context for as long as it lives. Measures the actions, unless the context has their
    /// outline.
    ScriptView(XmlWriteContext& context, const libswf::SwfActions& script);
    ~ScriptView() { _context.script = nullptr; }
    ScriptView(const ScriptView&) = delete;
    ScriptView& operator=(const ScriptView&) = delete;

    const RegisterNames* registers = nullptr; ///< of the function being written; null in none

    // Called for everything in the order of writing.

    /// Gives an action's element the name of its place.
    void startAction(XmlNode& node) {
        if (_place++ == _nextPlace) [[unlikely]]
            writeName(node);
    }
    /// Names the end of a list if a branch leads there.
    void endList(XmlNode& list);
    /// An empty list is left out.
    void passList() { ++_place; }
    /// Writes the name of the place that the next branch leads to. False when it keeps its number: it leads to no
    /// place, out of the script, or as a number of actions over some that hold others.
    bool writeTarget(XmlNode& node);
    void startPool(const libswf::SwfActionConstantPool& pool);
    /// The text of a constant, as it stands in an attribute; nothing when its index has to stand: it is not sure which
    /// pool is in force, it has none of this index, has its text twice, or the text would become another type.
    std::optional<std::string_view> textOf(const libswf::SwfValue& value) {
        namespace Type = libswf::SwfValueType;
        const bool isConstant = value.valueType == Type::Constant8 || value.valueType == Type::Constant16;
        return isConstant && _pool != nullptr ? textOfConstant(value) : std::nullopt;
    }

    /// A list in the one around it, for as long as it lives.
    class List;

    static constexpr uint32_t noPlace = libswf::SwfScriptOutline::none;
    /// The places that the branches of a script lead to, in the order of the branches; noPlace for one that keeps its
    /// number. Measures the actions.
    static std::vector<uint32_t> targetsOf(const libswf::SwfContext& context, libswf::SwfActions& script);

private:
    class Targets;

    // The places with a name: a bit for each place, and how many there are in front of each word of bits.
    class Names {
    public:
        void setUp(const std::vector<uint32_t>& places, uint32_t placesInAll);
        // How many places in front of this one have a name.
        uint32_t rank(uint32_t place) const {
            const uint64_t before = _bits[place / 64] & ((uint64_t(1) << place % 64) - 1);
            return _ranks[place / 64] + static_cast<uint32_t>(std::popcount(before));
        }
        // The first one from here on; one behind all places when there is none.
        uint32_t next(uint32_t place) const;

    private:
        std::vector<uint64_t> _bits;
        std::vector<uint32_t> _ranks;
    };

    void writeName(XmlNode& node);
    std::optional<std::string_view> textOfConstant(const libswf::SwfValue& value);
    void learnPool();

    XmlWriteContext& _context;
    std::vector<uint32_t> _targets; // places that the branches lead to
    Names _names;
    size_t _nextBranch = 0;
    uint32_t _nextName = 0;
    uint32_t _place = 0;
    uint32_t _nextPlace = noPlace; // that has a name

    bool _poolsAreSure = true;
    const libswf::SwfActionConstantPool* _pool = nullptr; // in force
    uint32_t _pools = 0;                                  // so many came
    std::deque<std::string> _escaped;                     // texts that stand otherwise in an attribute
    std::vector<std::string_view> _texts; // of the pool's constants, null for one that it has more than once; learned
                                          // when one is asked for
};

class ScriptView::List {
public:
    explicit List(ScriptView& script) : _script(script), _pools(script._pools) {}
    /// Behind a list with a pool of its own none is known.
    ~List() {
        if (_script._pools != _pools)
            _script._pool = nullptr;
    }
    List(const List&) = delete;
    List& operator=(const List&) = delete;

private:
    ScriptView& _script;
    const uint32_t _pools;
};

} // namespace xml2swf
