#include "ScriptStack.h"

#include <algorithm>

namespace zelk {

void ScriptStack::push(Item item) {
    if (_items.size() == mostItems)
        _items.erase(_items.begin());
    _items.push_back(std::move(item));
}

ScriptStack::Item ScriptStack::pop() {
    if (_items.empty())
        return {};
    Item item = std::move(_items.back());
    _items.pop_back();
    return item;
}

void ScriptStack::swap() {
    Item top = pop();
    Item below = pop();
    push(std::move(top));
    push(std::move(below));
}

void ScriptStack::duplicate() {
    Item top = pop();
    push(top);
    push(std::move(top));
}

void ScriptStack::branch(std::string_view place) {
    const auto [found, isNew] = _places.try_emplace(std::string(place), _items);
    if (!isNew)
        join(found->second, _items);
}

void ScriptStack::arrive(std::string_view place) {
    const auto found = _places.find(place);
    if (!_isReached)
        _items.clear();
    if (found != _places.end()) {
        if (_isReached)
            join(_items, found->second);
        else
            _items = std::move(found->second);
        _places.erase(found);
    }
    _isReached = true;
}

// Stacks of different heights have nothing in common that is sure.
void ScriptStack::join(Items& to, const Items& other) {
    if (other.size() != to.size()) {
        to.clear();
        return;
    }
    for (size_t i = 0; i < other.size(); ++i) {
        std::vector<size_t>& strings = to[i].strings;
        for (const size_t string : other[i].strings) {
            if (strings.size() < mostStrings && std::find(strings.begin(), strings.end(), string) == strings.end())
                strings.push_back(string);
        }
        to[i].count.reset();
    }
}

} // namespace zelk
