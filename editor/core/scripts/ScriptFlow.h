// Where the code at a place of a text leads to.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelk {

/// What may be looked at: all that a key is worth waiting for, or so little that it is done with each step of the
/// caret.
enum class FlowEffort : uint8_t { full, quick };

struct FlowTarget {
    size_t start = 0, end = 0; ///< the name of the element that is led to
    std::string reason = {};   ///< why there is none; empty when there is one
};

/// The target of the branch, constant or, with full effort, name of ActionScript 3 that the caret is on: an action, an
/// instruction, an entry of a constant pool, a class or a member of one. None where nothing leads anywhere.
std::optional<FlowTarget> flowTargetAt(std::string_view text, size_t caret, FlowEffort effort);

/// The names of places that a branch at `position` may lead to, in the order of the text. Of scripts and code that are
/// not too big to tell.
std::vector<std::string> labelsAround(std::string_view text, size_t position);
/// The texts of the constant pool in force at `position`, as attributes have them.
std::vector<std::string> constantsInForce(std::string_view text, size_t position);

} // namespace zelk
