// Follows a script's values over the stack to learn which strings are names.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelk {

class ScriptStack {
public:
    /// What may lie at one place of the stack: some of the strings, by number, or anything else (none of them).
    struct Item {
        std::vector<size_t> strings;
        std::optional<size_t> count; ///< a number that was pushed
    };

    void push(Item item);
    bool isEmpty() const { return _items.empty(); }
    /// Something unknown where there is nothing: what lies deeper than is known.
    Item pop();
    void swap();
    void duplicate();
    /// Nothing is known of the stack from here on.
    void forget() { _items.clear(); }

    /// A branch to a place leaves here.
    void branch(std::string_view place);
    /// What follows is reached by branches only.
    void end() { _isReached = false; }
    /// Branches to a place arrive here.
    void arrive(std::string_view place);

private:
    using Items = std::vector<Item>;
    static void join(Items& to, const Items& other);

    // More is not followed, so that no script takes time or memory without bound.
    static constexpr size_t mostItems = 32, mostStrings = 32;

    Items _items;
    bool _isReached = true;
    std::map<std::string, Items, std::less<>> _places;
};

} // namespace zelk
