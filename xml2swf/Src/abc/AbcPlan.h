// How a block is laid out as XML: what stands where, in reading order.
#pragma once

#include <string>
#include <vector>

#include "AbcNames.h"
#include "SwfAbcCode.h"

namespace xml2swf {

/// What keeps a body from being shown as instructions.
struct AbcBodyProblem {
    const char* reason = nullptr; ///< null for none
    uint32_t place = 0;           ///< byte of its code
};

/// A piece of the text, in the order of the text.
struct AbcItem {
    enum class Kind : uint8_t {
        classStart,
        constructor,
        trait,
        staticStart,
        staticInitializer,
        staticTrait,
        classEnd, ///< and the end of its static part
        scriptStart,
        scriptInitializer,
        scriptTrait,
        scriptEnd,
        function ///< a method that no member stands for
    };
    Kind kind;
    uint8_t depth;  ///< below Abc
    uint32_t owner; ///< class or script
    uint32_t index; ///< trait; method of a function
};

/// A place among others is said only where it does not follow from the one before.
constexpr uint32_t abcFollows = UINT32_MAX;

class AbcPlan {
public:
    /// Throws SwfException code 3 for a block that cannot be laid out: an index out of range, two many names.
    AbcPlan(const libswf::SwfAbcBlock& block, const AbcNames& names, size_t bytes, uint32_t threads);

    std::vector<AbcItem> items;
    std::vector<AbcBodyProblem> problems; ///< by body
    std::vector<std::string> methodIds;   ///< as attribute text; empty for methods that nothing refers to by name
    std::vector<std::string> classIds;
    std::vector<uint32_t> methodPlaces, bodyPlaces; ///< by method and body: abcFollows, or its place
    std::vector<uint32_t> metadataCopies;           ///< which one of equal metadata, from 1
    /// Bodies of a method in their order: the first and what follows it, abcFollows for none.
    std::vector<uint32_t> firstBody, nextBody;

    /// The item of a trait, or of a constructor and the like, holds the method: it is the first that refers to it.
    bool holds(const AbcItem& item, uint32_t method) const { return _homes[method] == &item - items.data(); }

private:
    friend class AbcPlanner;
    std::vector<uint32_t> _homes; // by method: index of its item
};

} // namespace xml2swf
