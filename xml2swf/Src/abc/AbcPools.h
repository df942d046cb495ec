// Pools of a block that is being compiled.
#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <unordered_map>

#include "AbcText.h"
#include "SwfAbc.h"

namespace xml2swf {

/// A text that names nothing that could stand in a pool; what() says why.
struct AbcTextError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// An entry of a pool as the text lists it.
struct AbcListed {
    std::string_view text;
    std::string_view detail; ///< the string that a namespace is called by, the members of a set
    size_t offset = 0;       ///< in the document
    bool isUnnamed = false;  ///< a namespace whose name is string 0
    bool hasDetail = false;
};
/// By pool.
using AbcListing = std::array<std::vector<AbcListed>, libswf::SwfAbcBlock::pools>;

class AbcPools {
public:
    using Pool = libswf::SwfAbcBlock::Pool;
    static constexpr uint32_t none = AbcTextTable::none;

    /// What is added goes to the pools of the block.
    explicit AbcPools(libswf::SwfAbcBlock& block);

    /// The index of a text that was listed, or resolved before; none otherwise. For any thread as long as no one adds.
    uint32_t find(Pool pool, std::string_view text) const { return _texts[index(pool)].find(text); }
    uint32_t find(Pool pool, std::string_view text, uint32_t& near) const {
        return _texts[index(pool)].find(text, near);
    }
    /// The index of a text; what it names is added when it is not there. Throws AbcTextError.
    uint32_t resolve(Pool pool, std::string_view text);

    /// Adds entries in the order given, before anything is resolved. The texts outlive the pools. `place` is set to
    /// the offset of the entry that an AbcTextError is about.
    void list(const AbcListing& entries, size_t& place, uint32_t threads);

    /// Metadata by content; equal ones are told apart by their number among them, from 1.
    uint32_t metadata(libswf::SwfAbcMetadata metadata, uint32_t copy);

    AbcArena& arena() { return _arena; }

private:
    static size_t index(Pool pool) { return static_cast<size_t>(pool); }
    void listFirst(Pool pool, const std::vector<AbcListed>& entries, size_t& place, AbcArena& arena);
    void listFirst(Pool pool, const AbcListed& entry, AbcArena& arena);
    void listParts(Pool pool, const AbcListed& entry, uint32_t at);
    size_t listKnown(const std::vector<AbcListed>& entries, size_t from, size_t to);
    void buildKeys();
    uint32_t findKey(Pool pool, const std::string& key, size_t nextIndex);

    template <class Values, class Value>
    uint32_t makeNumber(Pool pool, Values& values, Value value, std::string_view written);
    uint32_t makeString(std::string_view text);
    uint32_t makeInteger(std::string_view text);
    uint32_t makeUInteger(std::string_view text);
    uint32_t makeDouble(std::string_view text);
    uint32_t makeNamespace(std::string_view text);
    uint32_t makeSet(std::string_view text);
    uint32_t makeMultiname(std::string_view text);
    libswf::SwfAbcNamespace parseNamespace(std::string_view text);
    uint8_t kindOf(std::string_view text) const;
    std::vector<uint32_t> parseSet(std::string_view members);

    libswf::SwfAbcBlock& _block;
    AbcArena _arena;
    AbcTextTable _texts[libswf::SwfAbcBlock::pools];
    std::unordered_map<std::string, uint32_t>
        _keys[libswf::SwfAbcBlock::pools]; // spaces, sets, names: by what they are
    std::unordered_map<std::string, std::vector<uint32_t>> _metadata;
    bool _hasKeys = false;
    uint32_t _depth = 0;
};

} // namespace xml2swf
