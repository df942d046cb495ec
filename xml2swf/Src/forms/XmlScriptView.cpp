#include "XmlScriptView.h"

#include <algorithm>
#include <unordered_map>

#include "XmlScriptNotes.h"

namespace xml2swf {

using namespace libswf;

static constexpr uint32_t none = ScriptView::noPlace;

// Where the lists, actions and branches of a script stand in its bytes.
class ScriptView::Outline {
public:
    std::vector<uint32_t> targets; // places that the branches lead to
    bool poolsAreSure = true;      // no branch passes one, or may do so

    Outline(const SwfContext& context, SwfActions& script) : _context(context) {
        script.getSize(_context);
        add(script, none);
        targets.reserve(_branches.size());
        for (Branch& branch : _branches) {
            if (branch.isOffset)
                branch.place = placeOf(branch);
            else if (branch.place != none)
                branch.target = _places[branch.place];
            targets.push_back(branch.place);
            poolsAreSure = poolsAreSure && !passesPool(branch);
        }
    }

private:
    struct List {
        uint32_t parent, start, end = 0, endPlace = 0;
    };
    struct Branch {
        uint32_t list;
        uint32_t start, behind; // the record, from whose end offsets count
        int64_t target;
        uint32_t place;
        bool isOffset; // else the place is known at once
    };

    void add(SwfActions& list, uint32_t parent) {
        const auto id = static_cast<uint32_t>(_lists.size());
        _lists.push_back({parent, _end});
        for (uint32_t i = 0; i < list.size(); ++i) {
            SwfAction& action = *list[i];
            const uint32_t start = _end;
            const auto place = static_cast<uint32_t>(_places.size());
            _places.push_back(start);
            const auto bodies = bodiesOf(action);
            _end += action.headerSize(_context) + action.size;
            for (const SwfActions* body : bodies)
                _end -= body == nullptr ? 0 : body->byteSize;
            if (const std::optional<uint32_t> skipped = skipCountOf(action))
                _branches.push_back({id, start, _end, _end, placeBehind(list, i, place, *skipped), false});
            else if (action.type == SwfActionCode::Jump || action.type == SwfActionCode::If)
                addOffset(action, id, start);
            else if (action.type == SwfActionCode::ConstantPool)
                _pools.push_back(start);
            for (SwfActions* body : bodies) {
                if (body != nullptr)
                    add(*body, id);
            }
        }
        _lists[id].end = _end;
        _lists[id].endPlace = static_cast<uint32_t>(_places.size());
        _places.push_back(_end);
    }

    void addOffset(const SwfAction& action, uint32_t list, uint32_t start) {
        if (const auto* branch = dynamic_cast<const SwfActionBranch*>(&action))
            _branches.push_back({list, start, _end, int64_t(_end) + branch->branchOffset, none, true});
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

    // A list's end is a place in the list; for branches from outside of it, it is the start of what follows.
    uint32_t placeOf(const Branch& branch) {
        const auto holds = [&](const List& list) { return list.start <= branch.target && branch.target <= list.end; };
        uint32_t list = branch.list;
        while (list != none && !holds(_lists[list]))
            list = _lists[list].parent;
        if (list == none)
            return none;
        if (branch.target == _lists[list].end)
            return _lists[list].endPlace;
        // Of the places there the last one is an action, the others are ends of lists before it.
        const auto place = std::upper_bound(_places.begin(), _places.end(), branch.target) - 1;
        if (*place == branch.target)
            return static_cast<uint32_t>(place - _places.begin());
        poolsAreSure = false; // who knows what is in there
        return none;
    }

    // Behind it, or before the pool, another pool may be in force than the order of the actions says.
    bool passesPool(const Branch& branch) const {
        const int64_t from = branch.behind, to = branch.target;
        const auto pool = to < from ? std::upper_bound(_pools.begin(), _pools.end(), to)
                                    : std::lower_bound(_pools.begin(), _pools.end(), from);
        return pool != _pools.end() && *pool < std::max(from, to);
    }

    SwfContext _context;
    uint32_t _end = 0; // of what was gone over
    std::vector<uint32_t> _places, _pools;
    std::vector<List> _lists;
    std::vector<Branch> _branches;
};

// Uses the sizes that writing will give the actions, not those that the file had.
ScriptView::ScriptView(XmlWriteContext& context, const SwfActions& script) : _context(context) {
    Outline outline(context.swf, const_cast<SwfActions&>(script));
    _poolsAreSure = outline.poolsAreSure;
    _targets = std::move(outline.targets);
    std::copy_if(_targets.begin(), _targets.end(), std::back_inserter(_named),
                 [](uint32_t place) { return place != none; });
    std::sort(_named.begin(), _named.end());
    _named.erase(std::unique(_named.begin(), _named.end()), _named.end());
    context.script = this;
}

std::vector<uint32_t> ScriptView::targetsOf(const SwfContext& context, SwfActions& script) {
    return std::move(Outline(context, script).targets);
}

void ScriptView::startAction(XmlNode& node) {
    if (_nextName < _named.size() && _named[_nextName] == _place)
        node.attribute(labelAttribute, std::string_view(nameAt(_nextName++)));
    ++_place;
}

void ScriptView::endList(XmlNode& list) {
    if (_nextName < _named.size() && _named[_nextName] == _place)
        XmlNode(list, placeElement).attribute(labelAttribute, std::string_view(nameAt(_nextName++)));
    ++_place;
}

std::string ScriptView::nextTarget() {
    const uint32_t place = _targets[_nextBranch++];
    if (place == none)
        return {};
    return nameAt(static_cast<size_t>(std::lower_bound(_named.begin(), _named.end(), place) - _named.begin()));
}

std::string ScriptView::nameAt(size_t index) { return "L" + std::to_string(index + 1); }

void ScriptView::startPool(const SwfActionConstantPool& pool) {
    _pool = &pool;
    _twice.clear();
    ++_pools;
}

std::optional<std::string_view> ScriptView::textOf(const SwfValue& value) {
    uint32_t index = 0;
    if (value.valueType == SwfValueType::Constant8)
        index = static_cast<const SwfValueConstant8&>(value).value;
    else if (value.valueType == SwfValueType::Constant16)
        index = static_cast<const SwfValueConstant16&>(value).value;
    else
        return {};
    const bool isShortest = value.valueType == SwfValueType::Constant8 || index > UINT8_MAX;
    if (!isShortest || !_poolsAreSure || _pool == nullptr || index >= _pool->constants.size() || isTwice(index))
        return {};
    return _pool->constants[index].view();
}

bool ScriptView::isTwice(uint32_t index) {
    const SwfStrings& constants = _pool->constants;
    if (_twice.empty()) {
        _twice.resize(constants.size());
        std::unordered_map<std::string_view, uint32_t> first;
        for (uint32_t i = 0; i < constants.size(); ++i) {
            const auto [found, isNew] = first.emplace(constants[i].view(), i);
            _twice[i] = !isNew;
            if (!isNew)
                _twice[found->second] = true;
        }
    }
    return _twice[index];
}

} // namespace xml2swf
