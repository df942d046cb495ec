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
    const auto pass = [&](size_t at, bool blanks) {
        while (at < names.size() && NotBlank::test(names[at]) != blanks)
            ++at;
        return at;
    };
    size_t start = pass(0, true);
    do {
        const size_t end = pass(start, false);
        _labels.push_back({names.substr(start, end - start), actions(), _list.id, _list.position, offset});
        start = pass(end, true);
    } while (start < names.size());
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
        SwfAction* action;        // the branch; null when it is bytes:
        SwfActionCompiled* block; // those that it stands in,
        uint32_t place;           // and where there
        uint32_t start;           // in the script
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
        addLabels(end); // behind the last action
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
            note(&action, nullptr, 0, end);
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
                note(nullptr, &block, at, end + at);
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
    void note(SwfAction* action, SwfActionCompiled* block, uint32_t place, uint32_t at) {
        addLabels(at);
        if (_branch < _script._branches.size() && _script._branches[_branch].action == _action) {
            branches.push_back({action, block, place, at});
            ++_branch;
        }
        toNext();
    }

    void addLabels(uint32_t at) {
        for (; _label < _script._labels.size() && _script._labels[_label].action == _action; ++_label)
            labels.push_back(at);
    }

    // Branches and labels were noted in the order of the actions.
    void toNext() {
        _next = _branch < _script._branches.size() ? _script._branches[_branch].action : UINT32_MAX;
        if (_label < _script._labels.size())
            _next = std::min(_next, _script._labels[_label].action);
    }

    const ScriptNotes& _script;
    const bool _wantsStarts;
    SwfContext _context;
    size_t _odd = 0;
    size_t _label = 0, _branch = 0; // to come,
    uint32_t _action = 0;           // the action to come,
    uint32_t _next = 0;             // and the next one of interest
};

// The number of each branch, in an object or in bytes.
struct ScriptNotes::Operand {
    static int32_t get(const ScriptBranch& branch, const Layout::Spot& spot) {
        if (spot.block == nullptr)
            return branch.skips() ? skipCount(*spot.action) : static_cast<SwfActionBranch*>(spot.action)->branchOffset;
        const uint8_t* at = spot.block->records.data() + placeOf(branch, spot);
        return branch.skips() ? at[0] : static_cast<int16_t>(at[0] | at[1] << 8);
    }

    static void set(const ScriptBranch& branch, const Layout::Spot& spot, int32_t value) {
        if (spot.block != nullptr) {
            uint8_t* at = spot.block->records.own().data() + placeOf(branch, spot);
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

// Finds labels by their names. Those that the program writes itself, L1 and so on in the order of their places, need no
// table.
class ScriptNotes::LabelsByName {
public:
    explicit LabelsByName(const std::vector<ScriptLabel>& labels) : _labels(labels) {}

    // False when another label has its name.
    bool add(size_t index) {
        const std::string_view name = _labels[index].name;
        const size_t position = byNumber(name);
        return position == index || (position == none && _others.emplace(name, index).second);
    }
    // Its index; none when there is no such label.
    size_t find(std::string_view name) const {
        const size_t position = byNumber(name);
        if (position != none || _others.empty())
            return position;
        const auto found = _others.find(name);
        return found == _others.end() ? none : found->second;
    }
    static constexpr size_t none = SIZE_MAX;

private:
    // Of the label whose number is its position.
    size_t byNumber(std::string_view name) const {
        size_t number = 0;
        if (name.size() < 2 || name.size() > 9 || name[0] != 'L')
            return none;
        for (const char c : name.substr(1)) {
            if (c < '0' || c > '9')
                return none;
            number = number * 10 + static_cast<size_t>(c - '0');
        }
        return number - 1 < _labels.size() && _labels[number - 1].name == name ? number - 1 : none;
    }

    const std::vector<ScriptLabel>& _labels;
    std::unordered_map<std::string_view, size_t> _others;
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
            if (branch.label.empty() || found == LabelsByName::none)
                fail(branch.offset, targetAttribute, branch.label, "is the name of no place in this script");
            const int64_t distance = int64_t(layout.labels[found]) - spot.start - branchBytes;
            Operand::set(branch, spot, numberFor(branch, _labels[found], distance));
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
