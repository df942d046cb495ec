// Constants by their text: which pool is in force, and what stands in it.
#pragma once

#include <optional>
#include <string_view>
#include <unordered_set>

#include "SwfActionsPayload.h"

namespace xml2swf {

/// Finds the indices of a pool's constants by their texts.
struct ConstantByText {
    using is_transparent = void;
    const libswf::SwfStrings* constants = nullptr;

    std::string_view view(uint32_t index) const { return (*constants)[index].view(); }
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    size_t operator()(uint32_t index) const { return (*this)(view(index)); }
    bool operator()(uint32_t a, uint32_t b) const { return view(a) == view(b); }
    bool operator()(std::string_view a, uint32_t b) const { return a == view(b); }
    bool operator()(uint32_t a, std::string_view b) const { return view(a) == b; }
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
    std::unordered_set<uint32_t, ConstantByText, ConstantByText> _indices;
    uint32_t _bytes = 0; // of the pool's payload
};

} // namespace xml2swf
