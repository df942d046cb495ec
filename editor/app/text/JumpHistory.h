// The places that jumps in a text began at, for going back there.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace zelk {

/// Places are bytes of the text and move with it.
class JumpHistory {
public:
    /// A jump begins there. What was gone back from is forgotten.
    void jumpFrom(size_t place);
    bool canGoBack() const { return _next > 0; }
    bool canGoForward() const { return _next < _places.size(); }
    /// Where the last jump began; forward leads to `place` then.
    std::optional<size_t> back(size_t place) { return step(place, true); }
    std::optional<size_t> forward(size_t place) { return step(place, false); }

    void inserted(size_t at, size_t bytes);
    void removed(size_t at, size_t bytes);
    void clear();

private:
    static constexpr size_t longest = 100;
    std::optional<size_t> step(size_t place, bool isBack);

    std::vector<size_t> _places;
    size_t _next = 0; // behind the place that back leads to
};

} // namespace zelk
