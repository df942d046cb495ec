// Constants by their text: which pool is in force, and what stands in it.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "SwfActionsPayload.h"

namespace xml2swf {

/// Finds the indices of a pool's constants by their texts. A table of slots, at most half of which are taken: a text
/// stands in the first free one from that on which its hash names.
class ConstantIndices {
public:
    void clear() {
        _slots.clear();
        _count = 0;
    }
    std::optional<uint32_t> find(std::string_view text, const libswf::SwfStrings& constants) const;
    /// A text that is not there yet.
    void add(std::string_view text, uint32_t index);
    /// Takes the text back that was added last.
    void takeBack(std::string_view text, uint32_t index);

private:
    static constexpr uint32_t free = UINT32_MAX;
    struct Slot {
        uint32_t hash = 0, index = free;
    };

    void put(Slot slot);

    std::vector<Slot> _slots; // a power of two of them, or none
    size_t _count = 0;
};

/// The pool that the constants of a script being read stand in. It is known by the order of the actions alone: each
/// ConstantPool is in force from there on, in nested lists too, until the next one. Behind a nested list that has a
/// pool of its own none is known, for that list may not have run.
class ConstantsInForce {
public:
    struct Mark {
        libswf::SwfActionConstantPool* pool;
        uint32_t count, changes;
    };

    bool areKnown() const { return _pool != nullptr; }
    /// `pool` takes more constants as long as it is in force, so it stays an object until then.
    void set(libswf::SwfActionConstantPool& pool);
    /// How often the pool in force has changed.
    uint32_t changes() const { return _changes; }
    void forget() {
        _pool = nullptr;
        _isLearned = false;
    }

    /// Where the text stands in the pool that is in force, the first of several times; added if it is missing. Nothing
    /// when the pool has no room for it.
    std::optional<uint16_t> indexOf(std::string_view text);

    Mark mark() const { return {_pool, _pool == nullptr ? 0 : _pool->constants.size(), _changes}; }
    /// Takes back what came since; pools read since then are gone.
    void rewind(const Mark& mark);

private:
    void learn();

    libswf::SwfActionConstantPool* _pool = nullptr;
    uint32_t _changes = 0;
    bool _isLearned = false; // what follows is of this pool
    ConstantIndices _indices;
    uint32_t _bytes = 0; // of the pool's payload
};

} // namespace xml2swf
