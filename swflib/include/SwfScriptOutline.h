// Where the actions of a script stand in its bytes.
#pragma once

#include <cstdint>
#include <vector>

namespace libswf {

class SwfActions;

/// The lists, actions, branches and pools of one script: a list of actions and all lists nested in it. Offsets are
/// bytes from its start. Places are where actions start and lists end, counted in the order of the bytes: an action,
/// the lists that it holds, each with its end, the next action.
struct SwfScriptOutline {
    static constexpr uint32_t none = UINT32_MAX;

    struct List {
        uint32_t parent; ///< none for the outermost
        uint32_t start, end = 0, endPlace = 0;
    };
    struct Branch {
        uint32_t list;
        uint32_t place;  ///< its own
        uint32_t behind; ///< the end of its record, from where offsets count
        int64_t target;
        uint32_t targetPlace = none; ///< of one that skips a number of actions, known at once
        bool isOffset = true;        ///< else it skips
    };

    std::vector<uint32_t> places;
    std::vector<uint32_t> pools; ///< where ConstantPools start
    std::vector<List> lists;
    std::vector<Branch> branches;
    /// The list that all this is of; null when it is of none, or what was noted may be wrong.
    const SwfActions* script = nullptr;

    void clear() {
        places.clear();
        pools.clear();
        lists.clear();
        branches.clear();
        script = nullptr;
    }
    /// Returns which list it is.
    uint32_t startList(uint32_t parent, uint32_t offset) {
        lists.push_back({parent, offset});
        return static_cast<uint32_t>(lists.size() - 1);
    }
    void endList(uint32_t list, uint32_t offset) {
        lists[list].end = offset;
        lists[list].endPlace = static_cast<uint32_t>(places.size());
        places.push_back(offset);
    }
};

} // namespace libswf
