#include "JumpHistory.h"

#include <algorithm>

namespace zelk {

void JumpHistory::jumpFrom(size_t place) {
    _places.resize(_next);
    _places.push_back(place);
    if (_places.size() > longest)
        _places.erase(_places.begin());
    _next = _places.size();
}

// The place that is left stands where the one that was gone to stood.
std::optional<size_t> JumpHistory::step(size_t place, bool isBack) {
    if (isBack ? !canGoBack() : !canGoForward())
        return {};
    _next -= isBack ? 1 : 0;
    std::swap(place, _places[_next]);
    _next += isBack ? 0 : 1;
    return place;
}

void JumpHistory::inserted(size_t at, size_t bytes) {
    for (size_t& place : _places)
        place += place >= at ? bytes : 0;
}

void JumpHistory::removed(size_t at, size_t bytes) {
    for (size_t& place : _places)
        place -= place <= at ? 0 : std::min(place - at, bytes);
}

void JumpHistory::clear() {
    _places.clear();
    _next = 0;
}

} // namespace zelk
