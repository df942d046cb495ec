#include "QuoteMap.h"

#include <cstring>

namespace zelk {

namespace {

// Blocks of 128 so that the inner loop's counters stay bytes, which is what lets it run in vector registers.
size_t countQuotes(std::string_view text) {
    size_t count = 0;
    while (!text.empty()) {
        const std::string_view block = text.substr(0, 128);
        uint8_t inBlock = 0;
        for (const char c : block)
            inBlock = uint8_t(inBlock + (c == '"'));
        count += inBlock;
        text.remove_prefix(block.size());
    }
    return count;
}

QuoteMap::State after(QuoteMap::State before, std::string_view text) {
    if (before == QuoteMap::Ended || std::memchr(text.data(), 0, text.size()))
        return QuoteMap::Ended;
    return countQuotes(text) % 2 == 0 ? before : before == QuoteMap::Inside ? QuoteMap::Outside : QuoteMap::Inside;
}

} // namespace

QuoteMap::State QuoteMap::at(std::string_view text, size_t position) {
    if (_states.empty())
        _states.push_back(Outside);
    while (_states.size() <= position / step)
        _states.push_back(after(_states.back(), text.substr((_states.size() - 1) * step, step)));
    const size_t known = position / step * step;
    return after(_states[position / step], text.substr(known, position - known));
}

void QuoteMap::changedAt(size_t position) {
    if (const size_t known = position / step + 1; known < _states.size())
        _states.resize(known);
}

} // namespace zelk
