#include "XmlScriptNotes.h"

#include <algorithm>
#include <functional>
#include <unordered_map>

#include "XmlBytes.h"
#include "XmlDocument.h"
#include "XmlScriptView.h"

namespace xml2swf {

using namespace libswf;

namespace {

constexpr uint32_t branchBytes = 5; // of the record of a Jump or If, from whose end its offset counts

// Null for an action that is an object.
SwfActionCompiled* bytesOf(SwfAction& action) {
    return action.type == SwfActionCode::compiled ? dynamic_cast<SwfActionCompiled*>(&action) : nullptr;
}

std::string times(int64_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

} // namespace

void ScriptNotes::addLabels(std::string_view names, size_t offset) {
    constexpr std::string_view blanks = " \t\r\n";
    size_t start = names.find_first_not_of(blanks);
    do {
        const size_t end = std::min(names.find_first_of(blanks, start), names.size());
        ScriptLabel& label = _labels.emplace_back();
        label.name = names.substr(std::min(start, end), end - std::min(start, end));
        label.action = actions();
        label.list = _list.id;
        label.position = _list.position;
        label.offset = offset;
        start = names.find_first_not_of(blanks, end);
    } while (start != names.npos);
}

bool ScriptNotes::standsInText(std::string_view names) const {
    const std::string_view text = _context.document->text();
    return std::less_equal<>()(text.data(), names.data()) && std::less<>()(names.data(), text.data() + text.size());
}

void ScriptNotes::rewind(const Mark& mark) {
    _list.position -= static_cast<uint32_t>(_elements.size() != mark.elements);
    _elements.resize(mark.elements);
    _branches.resize(mark.branches);
    _labels.resize(mark.labels);
    _odd.resize(mark.odd);
    _listSizes.resize(mark.lists);
    constants.rewind(mark.constants);
}

// Where the actions of a script stand in its bytes, and those among them that are branches.
class ScriptNotes::Layout {
public:
    struct Spot {
        SwfAction* action; // the branch, or the bytes that it stands in,
        uint32_t place;    // and where there
        uint32_t start;    // in the script
    };
    std::vector<uint32_t> starts; // of each action, if they are wanted,
    std::vector<uint32_t> labels; // of each label,
    std::vector<Spot> branches;
    uint32_t end = 0; // of the script

    Layout(const ScriptNotes& script, SwfActions& actions, bool wantsStarts)
        : _script(script), _wantsStarts(wantsStarts) {
        starts.reserve(wantsStarts ? script._elements.size() : 0);
        labels.reserve(script._labels.size());
        branches.reserve(script._branches.size());
        _context.fullForm = script._context.fullForm;
        actions.getSize(_context);
        toNext();
        add(actions);
        addLabels(_action, end); // behind the last action
        swfAssert(_action == script._elements.size() && branches.size() == script._branches.size() &&
                      labels.size() == script._labels.size(),
                  "actions read == actions laid out");
    }

private:
    void add(SwfActions& list) {
        for (SwfAction* action : list) {
            if (SwfActionCompiled* bytes = bytesOf(*action))
                add(*bytes);
            else
                add(*action);
        }
    }

    void add(SwfAction& action) {
        if (_wantsStarts)
            starts.push_back(end);
        if (_action == _next)
            note(action, 0, end);
        ++_action;
        const auto bodies = bodiesOf(action);
        end += action.headerSize(_context) + action.size;
        for (const SwfActions* body : bodies)
            end -= body == nullptr ? 0 : body->byteSize;
        for (SwfActions* body : bodies) {
            if (body != nullptr)
                add(*body);
        }
    }

    void add(SwfActionCompiled& block) {
        const std::span<const uint8_t> bytes = block.records.span();
        const bool mayBeOdd = !_script._odd.empty();
        const uint8_t firstWithLength = _context.fullForm ? 0x80 : 0x81;
        for (uint32_t at = 0; at < bytes.size(); ++_action) {
            const uint8_t* const record = bytes.data() + at;
            if (_wantsStarts)
                starts.push_back(end + at);
            if (_action == _next) [[unlikely]]
                note(block, at, end + at);
            if (mayBeOdd && isOdd())
                at += _script._odd[_odd].bytes;
            else
                at += record[0] < firstWithLength ? 1 : 3 + (record[1] | uint32_t(record[2]) << 8);
        }
        end += static_cast<uint32_t>(bytes.size());
    }

    // The action to come is one whose length does not tell where the next record starts: bodies stand between the
    // records of their list.
    bool isOdd() {
        while (_odd < _script._odd.size() && _script._odd[_odd].action < _action)
            ++_odd;
        return _odd < _script._odd.size() && _script._odd[_odd].action == _action;
    }

    // The action to come is one of interest.
    void note(SwfAction& action, uint32_t place, uint32_t at) {
        addLabels(_action, at);
        if (branches.size() < _script._branches.size() && _script._branches[branches.size()].action == _action)
            branches.push_back({&action, place, at});
        toNext();
    }

    void addLabels(uint32_t action, uint32_t at) {
        while (labels.size() < _script._labels.size() && _script._labels[labels.size()].action == action)
            labels.push_back(at);
    }

    // Branches and labels were noted in the order of the actions.
    void toNext() {
        _next = UINT32_MAX;
        if (branches.size() < _script._branches.size())
            _next = _script._branches[branches.size()].action;
        if (labels.size() < _script._labels.size())
            _next = std::min(_next, _script._labels[labels.size()].action);
    }

    const ScriptNotes& _script;
    const bool _wantsStarts;
    SwfContext _context;
    size_t _odd = 0;
    uint32_t _action = 0; // to come,
    uint32_t _next = 0;   // and the next one of interest
};

// The number of each branch, in an object or in bytes.
struct ScriptNotes::Operand {
    static int32_t get(const ScriptBranch& branch, const Layout::Spot& spot) {
        const SwfActionCompiled* block = bytesOf(*spot.action);
        if (block == nullptr)
            return branch.skips() ? skipCount(*spot.action) : static_cast<SwfActionBranch*>(spot.action)->branchOffset;
        const uint8_t* at = block->records.data() + placeOf(branch, spot);
        return branch.skips() ? at[0] : static_cast<int16_t>(at[0] | at[1] << 8);
    }

    static void set(const ScriptBranch& branch, const Layout::Spot& spot, int32_t value) {
        if (SwfActionCompiled* block = bytesOf(*spot.action)) {
            uint8_t* at = block->records.own().data() + placeOf(branch, spot);
            at[0] = static_cast<uint8_t>(value);
            if (!branch.skips())
                at[1] = static_cast<uint8_t>(value >> 8);
        } else if (branch.skips()) {
            skipCount(*spot.action) = static_cast<uint8_t>(value);
        } else {
            static_cast<SwfActionBranch*>(spot.action)->branchOffset = static_cast<int16_t>(value);
        }
    }

private:
    static uint8_t& skipCount(SwfAction& action) {
        return action.type == SwfActionCode::WaitForFrame ? static_cast<SwfActionWaitForFrame&>(action).skipCount
                                                          : static_cast<SwfActionWaitForFrame2&>(action).skipCount;
    }
    static uint32_t placeOf(const ScriptBranch& branch, const Layout::Spot& spot) {
        const uint32_t header = 3, frame = branch.code == SwfActionCode::WaitForFrame ? 2 : 0;
        return spot.place + header + frame;
    }
};

// Finds labels by their names. Those that the program writes itself, L1 and so on, are found by their number.
class ScriptNotes::LabelsByName {
public:
    explicit LabelsByName(const std::vector<ScriptLabel>& labels) : _labels(labels), _numbered(labels.size() + 1) {}

    // False when another label has its name.
    bool add(size_t index) {
        const std::string_view name = _labels[index].name;
        const auto position = static_cast<uint32_t>(index + 1);
        if (uint32_t* slot = slotOf(name)) {
            if (*slot != 0)
                return false;
            *slot = position;
            return true;
        }
        return _others.emplace(name, position).second;
    }
    // Its index.
    std::optional<size_t> find(std::string_view name) {
        uint32_t position = 0;
        if (const uint32_t* slot = slotOf(name)) {
            position = *slot;
        } else if (const auto found = _others.find(name); found != _others.end()) {
            position = found->second;
        }
        return position == 0 ? std::optional<size_t>() : position - 1;
    }

private:
    uint32_t* slotOf(std::string_view name) {
        size_t number = 0;
        if (name.size() < 2 || name.size() > 9 || name[0] != 'L' || name[1] == '0')
            return nullptr;
        for (const char c : name.substr(1)) {
            if (c < '0' || c > '9')
                return nullptr;
            number = number * 10 + static_cast<size_t>(c - '0');
        }
        return number < _numbered.size() ? &_numbered[number] : nullptr;
    }

    const std::vector<ScriptLabel>& _labels;
    std::vector<uint32_t> _numbered; // by number, the label's position from 1 on; 0 for none
    std::unordered_map<std::string_view, uint32_t> _others;
};

bool ScriptNotes::settle(SwfActions& script, bool mayWarn) {
    if (_context.observer != nullptr)
        return true;
    LabelsByName names(_labels);
    for (size_t i = 0; i < _labels.size(); ++i) {
        const ScriptLabel& label = _labels[i];
        if (label.name.empty())
            fail(label.offset, labelAttribute, label.name, "is no name");
        if (!names.add(i))
            fail(label.offset, labelAttribute, label.name, "is the name of another place, too");
    }
    const bool isTold = _context.scripts != nullptr && !_elements.empty();
    const bool isChecked =
        _context.warnings != nullptr &&
        std::ranges::any_of(_branches, [](const ScriptBranch& branch) { return !branch.isLabelled; });
    const bool hasNames = std::ranges::any_of(_branches, [](const ScriptBranch& branch) { return branch.isLabelled; });
    if (!hasNames && !isChecked && !isTold)
        return true;
    const Layout layout(*this, script, isChecked);
    for (size_t i = 0; i < _branches.size(); ++i) {
        const ScriptBranch& branch = _branches[i];
        const Layout::Spot& spot = layout.branches[i];
        if (branch.isLabelled) {
            const auto found = names.find(branch.label);
            if (branch.label.empty() || !found)
                fail(branch.offset, targetAttribute, branch.label, "is the name of no place in this script");
            const int64_t distance = int64_t(layout.labels[*found]) - spot.start - branchBytes;
            Operand::set(branch, spot, numberFor(branch, _labels[*found], distance));
        } else if (isChecked) {
            std::optional<SwfWarning> warning = check(branch, Operand::get(branch, spot), layout, spot.start);
            if (warning && !mayWarn)
                return false;
            if (warning)
                _context.warn(std::move(*warning), branch.offset);
        }
    }
    if (isTold)
        tell(script, layout);
    return true;
}

void ScriptNotes::tell(SwfActions& script, const Layout& layout) const {
    ScriptBranches told;
    std::vector<ScriptBranches::Place> places;
    size_t action = 0;
    told.first = _elements.front();
    told.last = addPlaces(script, places, action);
    SwfContext measure;
    measure.fullForm = _context.fullForm;
    const std::vector<uint32_t> targets = ScriptView::targetsOf(measure, script);
    for (size_t i = 0; i < _branches.size(); ++i) {
        const ScriptBranch& branch = _branches[i];
        ScriptBranches::Branch& known = told.branches.emplace_back();
        known.element = branch.offset;
        if (targets[i] != ScriptView::noPlace)
            known.target = places[targets[i]];
        known.number = Operand::get(branch, layout.branches[i]);
        known.skips = branch.skips();
        known.isLabelled = branch.isLabelled;
    }
    for (const ScriptLabel& label : _labels)
        told.labels.push_back({std::string(label.name), label.offset});
    _context.scripts->script(std::move(told));
}

// In the order in which places are counted: a list's actions, each with its bodies behind it, and its end. Gives the
// element of the last action.
size_t ScriptNotes::addPlaces(SwfActions& list, std::vector<ScriptBranches::Place>& places, size_t& action) const {
    size_t last = 0;
    for (SwfAction* each : list) {
        last = _elements[action++];
        places.push_back({last, false});
        for (SwfActions* body : bodiesOf(*each)) {
            if (body != nullptr)
                addPlaces(*body, places, action);
        }
    }
    places.push_back({last, true});
    return last;
}

int32_t ScriptNotes::numberFor(const ScriptBranch& branch, const ScriptLabel& label, int64_t distance) const {
    if (branch.hasBoth)
        fail(branch.offset, targetAttribute, label.name,
             "stands beside " + std::string(branch.number()) + ": only one of them can hold");
    if (!branch.skips()) {
        if (distance < INT16_MIN || distance > INT16_MAX)
            fail(branch.offset, targetAttribute, label.name,
                 "lies " + times(std::abs(distance), "byte") + " away, out of a branch's reach");
        return static_cast<int32_t>(distance);
    }
    if (label.list != branch.list || label.position <= branch.position)
        fail(branch.offset, targetAttribute, label.name, "does not lie behind the action in the same list");
    const uint32_t skipped = label.position - branch.position - 1;
    if (skipped > UINT8_MAX)
        fail(branch.offset, targetAttribute, label.name,
             "lies " + times(skipped, "action") + " away, out of a skip count's reach");
    return static_cast<int32_t>(skipped);
}

// What is wrong with a number.
std::optional<SwfWarning> ScriptNotes::check(const ScriptBranch& branch, int32_t number, const Layout& layout,
                                             uint32_t start) const {
    SwfWarning warning;
    warning.kind = SwfWarning::Kind::astray;
    warning.tagName = elementAt(branch.offset);
    warning.reason = std::string(branch.number()) + " " + std::to_string(number);
    if (branch.skips()) {
        const uint32_t size = branch.list == 0 ? _list.position : _listSizes[branch.list - 1];
        const uint32_t left = size - branch.position - 1;
        if (static_cast<uint32_t>(number) <= left)
            return {};
        warning.reason += " passes the end of its list, which holds " + times(left, "more action");
        return warning;
    }
    const int64_t target = int64_t(start) + branchBytes + number;
    if (target < 0) {
        warning.reason += " leads " + times(-target, "byte") + " before the start of its script";
        return warning;
    }
    if (target > layout.end) {
        warning.reason += " leads " + times(target - layout.end, "byte") + " behind the end of its script";
        return warning;
    }
    const auto next = std::upper_bound(layout.starts.begin(), layout.starts.end(), target);
    const auto action = static_cast<size_t>(next - layout.starts.begin()) - 1;
    if (target == layout.end || layout.starts[action] == target)
        return {};
    warning.targetOffset = _elements[action];
    warning.reason += " leads " + times(target - layout.starts[action], "byte") + " into the " +
                      std::string(elementAt(_elements[action]));
    return warning;
}

std::string_view ScriptNotes::elementAt(size_t offset) const {
    const std::string_view text = _context.document->text();
    const char* start = text.data() + offset;
    return {start, static_cast<size_t>(findFirst<NameEnd>(start, text.data() + text.size()) - start)};
}

void ScriptNotes::fail(size_t offset, std::string_view attribute, std::string_view value,
                       const std::string& reason) const {
    throw XmlValueError(elementAt(offset), attribute, "\"" + std::string(value) + "\" " + reason, offset);
}

} // namespace xml2swf
