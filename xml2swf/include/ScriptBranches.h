// Where the branches of the scripts in a text lead to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace xml2swf {

/// One script of a text that is being compiled: a list of actions and all lists nested in it. Elements are told by the
/// byte of their name in the text.
struct ScriptBranches {
    /// Where an action starts, or the list ends whose last action it is.
    struct Place {
        size_t element = 0;
        bool isEnd = false;

        bool operator==(const Place&) const = default;
    };
    struct Branch {
        size_t element;
        std::optional<Place> target; ///< none when it leads into an action or out of the script
        int32_t number;              ///< what is compiled: bytes, or actions that are skipped
        bool skips;                  ///< the number is a SkipCount, else an Offset
        bool isLabelled;             ///< in the text it goes by label
    };
    struct Label {
        std::string name;
        size_t element; ///< of an action, or a Place
    };

    size_t first = 0, last = 0; ///< elements of the first and the last action of the outermost list
    std::vector<Branch> branches;
    std::vector<Label> labels;
};

/// Hears of every script that holds actions, when it has been read.
class IScriptListener {
public:
    virtual ~IScriptListener() = default;
    virtual void script(ScriptBranches branches) = 0;
};

} // namespace xml2swf
