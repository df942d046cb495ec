#include "XmlScriptView.h"

#include <algorithm>
#include <optional>

#include "XmlConstants.h"
#include "XmlScriptNotes.h"

namespace xml2swf {

using namespace libswf;

static constexpr uint32_t none = ScriptView::noPlace;

namespace {

// The outline of a script of objects, with the sizes that writing will give them.
class Measured {
public:
    Measured(const SwfContext& context, SwfActions& script, SwfScriptOutline& outline)
        : _context(context), _outline(outline) {
        outline.clear();
        script.getSize(_context);
        add(script, none);
    }

private:
    void add(SwfActions& list, uint32_t parent) {
        const uint32_t id = _outline.startList(parent, _end);
        for (uint32_t i = 0; i < list.size(); ++i) {
            SwfAction& action = *list[i];
            const uint32_t start = _end;
            const auto place = static_cast<uint32_t>(_outline.places.size());
            _outline.places.push_back(start);
            const auto bodies = bodiesOf(action);
            _end += action.headerSize(_context) + action.size;
            for (const SwfActions* body : bodies)
                _end -= body == nullptr ? 0 : body->byteSize;
            if (const std::optional<uint32_t> skipped = skipCountOf(action))
                _outline.branches.push_back({id, place, _end, _end, placeBehind(list, i, place, *skipped), false});
            else if (action.type == SwfActionCode::Jump || action.type == SwfActionCode::If)
                addOffset(action, id, place);
            else if (action.type == SwfActionCode::ConstantPool)
                _outline.pools.push_back(start);
            for (SwfActions* body : bodies) {
                if (body != nullptr)
                    add(*body, id);
            }
        }
        _outline.endList(id, _end);
    }

    void addOffset(const SwfAction& action, uint32_t list, uint32_t place) {
        if (const auto* branch = dynamic_cast<const SwfActionBranch*>(&action))
            _outline.branches.push_back({list, place, _end, int64_t(_end) + branch->branchOffset});
    }

    static std::optional<uint32_t> skipCountOf(const SwfAction& action) {
        if (action.type == SwfActionCode::WaitForFrame) {
            if (const auto* wait = dynamic_cast<const SwfActionWaitForFrame*>(&action))
                return wait->skipCount;
        } else if (action.type == SwfActionCode::WaitForFrame2) {
            if (const auto* wait = dynamic_cast<const SwfActionWaitForFrame2*>(&action))
                return wait->skipCount;
        }
        return {};
    }

    // The place behind the actions that an action skips. None where these hold others: which ones count is not sure.
    static uint32_t placeBehind(SwfActions& list, uint32_t index, uint32_t place, uint32_t skipped) {
        if (skipped >= list.size() - index)
            return none;
        for (uint32_t i = index + 1; i <= index + skipped; ++i) {
            if (bodiesOf(*list[i])[0] != nullptr)
                return none;
        }
        return place + 1 + skipped;
    }

    SwfContext _context;
    SwfScriptOutline& _outline;
    uint32_t _end = 0; // of what was gone over
};

// The last of ascending numbers that is at most `value`, which is not below the first. It mostly lies close by `near`:
// windows that grow are looked at from there on. In a small one all numbers are compared, which takes less time than to
// guess where to go.
size_t lastUpTo(const std::vector<uint32_t>& numbers, size_t near, uint32_t value) {
    constexpr size_t small = 16;
    size_t low = near, step = small;
    if (numbers[near] <= value) {
        for (; numbers.size() - low > step && numbers[low + step] <= value; step *= 2)
            low += step;
    } else {
        do {
            step = std::min(step, low);
            low -= step;
        } while (numbers[low] > value && (step *= 2) != 0);
    }
    const uint32_t* const begin = numbers.data() + low;
    const size_t count = std::min(step, numbers.size() - low);
    if (count != small)
        return static_cast<size_t>(std::upper_bound(begin, begin + count, value) - numbers.data()) - 1;
    uint32_t upTo = 0;
    for (size_t i = 0; i < small; ++i)
        upTo += begin[i] <= value ? 1u : 0u;
    return low + upTo - 1;
}

} // namespace

// Where the branches of a script lead to.
class ScriptView::Targets {
public:
    std::vector<uint32_t> places;
    bool poolsAreSure = true; // no branch passes one, or may do so

    explicit Targets(const SwfScriptOutline& outline) : _outline(outline) {
        places.reserve(outline.branches.size());
        for (const Branch& branch : outline.branches) {
            places.push_back(branch.isOffset ? placeOf(branch) : branch.targetPlace);
            poolsAreSure = poolsAreSure && (outline.pools.empty() || !passesPool(branch, places.back()));
        }
    }

private:
    using List = SwfScriptOutline::List;
    using Branch = SwfScriptOutline::Branch;

    // A list's end is a place in the list; for branches from outside of it, it is the start of what follows.
    uint32_t placeOf(const Branch& branch) {
        const auto holds = [&](const List& list) { return list.start <= branch.target && branch.target <= list.end; };
        uint32_t list = branch.list;
        while (list != none && !holds(_outline.lists[list]))
            list = _outline.lists[list].parent;
        if (list == none)
            return none;
        if (branch.target == _outline.lists[list].end)
            return _outline.lists[list].endPlace;
        // Of the places there the last one is an action, the others are ends of lists before it.
        const size_t place = lastUpTo(_outline.places, branch.place, static_cast<uint32_t>(branch.target));
        if (_outline.places[place] == branch.target)
            return static_cast<uint32_t>(place);
        poolsAreSure = false; // who knows what is in there
        return none;
    }

    // Behind it, or before the pool, another pool may be in force than the order of the actions says.
    bool passesPool(const Branch& branch, uint32_t place) const {
        const std::vector<uint32_t>& pools = _outline.pools;
        const bool isSkip = !branch.isOffset && place != none;
        const int64_t from = branch.behind, to = isSkip ? int64_t(_outline.places[place]) : branch.target;
        const auto pool = to < from ? std::upper_bound(pools.begin(), pools.end(), to)
                                    : std::lower_bound(pools.begin(), pools.end(), from);
        return pool != pools.end() && *pool < std::max(from, to);
    }

    const SwfScriptOutline& _outline;
};

ScriptView::ScriptView(XmlWriteContext& context, const SwfActions& script) : _context(context) {
    if (context.outline.script != &script)
        Measured(context.swf, const_cast<SwfActions&>(script), context.outline);
    context.outline.script = nullptr; // others may come to stand where it stands
    Targets targets(context.outline);
    _poolsAreSure = targets.poolsAreSure;
    _targets = std::move(targets.places);
    _names.setUp(_targets, static_cast<uint32_t>(context.outline.places.size()));
    _nextPlace = _names.next(0);
    context.script = this;
}

std::vector<uint32_t> ScriptView::targetsOf(const SwfContext& context, SwfActions& script) {
    SwfScriptOutline outline;
    Measured(context, script, outline);
    return std::move(Targets(outline).places);
}

static void writeName(XmlNode& node, std::string_view attribute, uint32_t index) {
    char name[24] = "L";
    const char* end = writeInteger(name + 1, static_cast<int32_t>(index + 1));
    node.escapedAttribute(attribute, {name, static_cast<size_t>(end - name)});
}

void ScriptView::Names::setUp(const std::vector<uint32_t>& places, uint32_t placesInAll) {
    const uint32_t end = placesInAll + 1; // marked as well, so that every search comes to an end
    _bits.resize(end / 64 + 1);
    _bits[end / 64] = uint64_t(1) << end % 64;
    for (const uint32_t place : places) {
        if (place != none)
            _bits[place / 64] |= uint64_t(1) << place % 64;
    }
    _ranks.reserve(_bits.size());
    uint32_t rank = 0;
    for (const uint64_t word : _bits) {
        _ranks.push_back(rank);
        rank += static_cast<uint32_t>(std::popcount(word));
    }
}

uint32_t ScriptView::Names::next(uint32_t place) const {
    size_t at = place / 64;
    uint64_t word = _bits[at] & UINT64_MAX << place % 64;
    while (word == 0)
        word = _bits[++at];
    return static_cast<uint32_t>(at * 64) + static_cast<uint32_t>(std::countr_zero(word));
}

void ScriptView::writeName(XmlNode& node) {
    xml2swf::writeName(node, labelAttribute, _nextName++);
    _nextPlace = _names.next(_nextPlace + 1);
}

void ScriptView::endList(XmlNode& list) {
    if (_place == _nextPlace) {
        XmlNode place(list, placeElement);
        writeName(place);
    }
    ++_place;
}

bool ScriptView::writeTarget(XmlNode& node) {
    const uint32_t place = _targets[_nextBranch++];
    if (place == none)
        return false;
    xml2swf::writeName(node, targetAttribute, _names.rank(place));
    return true;
}

void ScriptView::startPool(const SwfActionConstantPool& pool) {
    _pool = &pool;
    _texts.clear();
    _escaped.clear();
    ++_pools;
}

std::optional<std::string_view> ScriptView::textOfConstant(const SwfValue& value) {
    const bool isShort = value.valueType == SwfValueType::Constant8;
    const uint32_t index = isShort ? static_cast<const SwfValueConstant8&>(value).value
                                   : static_cast<const SwfValueConstant16&>(value).value;
    const bool isShortest = isShort || index > UINT8_MAX;
    if (!isShortest || !_poolsAreSure)
        return {};
    if (_texts.empty())
        learnPool();
    if (index >= _texts.size() || _texts[index].data() == nullptr)
        return {};
    return _texts[index];
}

void ScriptView::learnPool() {
    const SwfStrings& constants = _pool->constants;
    ConstantIndices indices;
    for (uint32_t i = 0; i < constants.size(); ++i) {
        const std::string_view text = constants[i].view();
        if (const auto first = indices.find(text, constants)) {
            _texts[*first] = {};
            _texts.emplace_back();
        } else {
            indices.add(text, i);
            _texts.push_back(mustBeEscaped(text) ? _escaped.emplace_back(escapedValue(text)) : text);
        }
    }
}

} // namespace xml2swf
