#include "ScriptStack.h"

namespace zelk {

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
    if (!isNew && found->second.size() != _items.size())
        found->second.clear();
    for (size_t i = 0; !isNew && i < found->second.size(); ++i)
        found->second[i].strings.insert(found->second[i].strings.end(), _items[i].strings.begin(),
                                        _items[i].strings.end());
}

void ScriptStack::arrive(std::string_view place) {
    const auto found = _places.find(place);
    if (!_isReached)
        _items = found == _places.end() ? Items() : found->second;
    else if (found != _places.end())
        join(found->second);
    _isReached = true;
}

// Stacks of different heights have nothing in common that is sure.
void ScriptStack::join(const Items& other) {
    if (other.size() != _items.size()) {
        _items.clear();
        return;
    }
    for (size_t i = 0; i < other.size(); ++i) {
        _items[i].strings.insert(_items[i].strings.end(), other[i].strings.begin(), other[i].strings.end());
        _items[i].count.reset();
    }
}

} // namespace zelk
