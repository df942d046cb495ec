#include "TagAligner.h"

#include <algorithm>

namespace xml2swf {

namespace {

struct Range {
    uint32_t a, aEnd, b, bEnd;
    bool hasBoth() const { return a < aEnd && b < bEnd; }
};

struct Pair {
    uint32_t a, b;
};

// The longest run of pairs that ascend on both sides; `pairs` ascend on the first.
std::vector<Pair> ascending(const std::vector<Pair>& pairs) {
    std::vector<uint32_t> tails; // of runs of each length: index of their last pair
    std::vector<uint32_t> before(pairs.size());
    for (uint32_t i = 0; i < pairs.size(); ++i) {
        const auto place = std::lower_bound(tails.begin(), tails.end(), pairs[i].b,
                                            [&](uint32_t tail, uint32_t b) { return pairs[tail].b < b; });
        before[i] = place == tails.begin() ? noPartner : *(place - 1);
        if (place == tails.end())
            tails.push_back(i);
        else
            *place = i;
    }
    std::vector<Pair> run;
    for (uint32_t i = tails.empty() ? noPartner : tails.back(); i != noPartner; i = before[i])
        run.push_back(pairs[i]);
    std::reverse(run.begin(), run.end());
    return run;
}

class Aligner {
public:
    Aligner(std::span<const TagKeys> a, std::span<const TagKeys> b) : _a(a), _b(b), _partners(a.size(), noPartner) {}

    std::vector<uint32_t> run() {
        align({0, static_cast<uint32_t>(_a.size()), 0, static_cast<uint32_t>(_b.size())}, 0, 0);
        return std::move(_partners);
    }

private:
    static constexpr uint32_t levels = std::tuple_size_v<TagKeys>;
    static constexpr uint32_t maxDepth = 16; // of anchors between anchors
    static constexpr uint32_t window = 16;   // how far the search for repeated tags looks

    bool equal(uint32_t a, uint32_t b, uint32_t level) const { return _a[a][level] == _b[b][level]; }
    void join(uint32_t a, uint32_t b) { _partners[a] = b; }

    void align(Range range, uint32_t level, uint32_t depth) {
        trim(range, level);
        if (!range.hasBoth())
            return;
        const std::vector<Pair> anchors = depth < maxDepth ? ascending(uniqueIn(range, level)) : std::vector<Pair>();
        if (anchors.empty()) {
            joinNear(range, level);
            return;
        }
        for (const Pair& anchor : anchors) {
            join(anchor.a, anchor.b);
            align({range.a, anchor.a, range.b, anchor.b}, level, depth + 1);
            range.a = anchor.a + 1;
            range.b = anchor.b + 1;
        }
        align(range, level, depth + 1);
    }

    void trim(Range& range, uint32_t level) {
        while (range.hasBoth() && equal(range.a, range.b, level))
            join(range.a++, range.b++);
        while (range.hasBoth() && equal(range.aEnd - 1, range.bEnd - 1, level))
            join(--range.aEnd, --range.bEnd);
    }

    // Pairs of tags whose key stands once on each side, in the order of the first side.
    std::vector<Pair> uniqueIn(const Range& range, uint32_t level) const {
        const std::vector<uint32_t> a = sorted(_a, range.a, range.aEnd, level);
        const std::vector<uint32_t> b = sorted(_b, range.b, range.bEnd, level);
        std::vector<Pair> pairs;
        for (size_t i = 0, j = 0; i < a.size() && j < b.size();) {
            const uint64_t keyA = _a[a[i]][level], keyB = _b[b[j]][level];
            const size_t runA = keyA <= keyB ? runOf(_a, a, i, level) : 0;
            const size_t runB = keyB <= keyA ? runOf(_b, b, j, level) : 0;
            if (runA == 1 && runB == 1)
                pairs.push_back({a[i], b[j]});
            i += runA;
            j += runB;
        }
        std::sort(pairs.begin(), pairs.end(), [](const Pair& x, const Pair& y) { return x.a < y.a; });
        return pairs;
    }

    static std::vector<uint32_t> sorted(std::span<const TagKeys> tags, uint32_t begin, uint32_t end, uint32_t level) {
        std::vector<uint32_t> indices(end - begin);
        for (uint32_t i = begin; i < end; ++i)
            indices[i - begin] = i;
        std::sort(indices.begin(), indices.end(),
                  [&](uint32_t x, uint32_t y) { return tags[x][level] < tags[y][level]; });
        return indices;
    }

    static size_t runOf(std::span<const TagKeys> tags, const std::vector<uint32_t>& order, size_t at, uint32_t level) {
        size_t end = at + 1;
        while (end < order.size() && tags[order[end]][level] == tags[order[at]][level])
            ++end;
        return end - at;
    }

    // Joins tags that stand a few places off each other at most; what is passed over is tried with the next key.
    void joinNear(const Range& range, uint32_t level) {
        Range passed{range.a, range.a, range.b, range.b};
        while (passed.aEnd < range.aEnd && passed.bEnd < range.bEnd) {
            if (const auto found = nearest(passed.aEnd, range.aEnd, passed.bEnd, range.bEnd, level);
                found.a != noPartner) {
                passed.aEnd = found.a;
                passed.bEnd = found.b;
                alignPassed(passed, level);
                join(found.a, found.b);
                passed = {found.a + 1, found.a + 1, found.b + 1, found.b + 1};
            } else {
                ++passed.aEnd;
                ++passed.bEnd;
            }
        }
        passed.aEnd = range.aEnd;
        passed.bEnd = range.bEnd;
        alignPassed(passed, level);
    }

    void alignPassed(const Range& passed, uint32_t level) {
        if (level + 1 < levels)
            align(passed, level + 1, 0);
    }

    Pair nearest(uint32_t a, uint32_t aEnd, uint32_t b, uint32_t bEnd, uint32_t level) const {
        for (uint32_t distance = 0; distance < window; ++distance) {
            for (uint32_t i = 0; i <= distance; ++i) {
                const uint32_t j = distance - i;
                if (i < aEnd - a && j < bEnd - b && equal(a + i, b + j, level))
                    return {a + i, b + j};
            }
        }
        return {noPartner, noPartner};
    }

    std::span<const TagKeys> _a, _b;
    std::vector<uint32_t> _partners;
};

} // namespace

std::vector<uint32_t> alignTags(std::span<const TagKeys> a, std::span<const TagKeys> b) { return Aligner(a, b).run(); }

} // namespace xml2swf
