#include "XmlScriptNotes.h"

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
    std::vector<uint32_t> starts; // of each action
    std::vector<Spot> branches;
    uint32_t end = 0; // of the script

    Layout(const ScriptNotes& script, SwfActions& actions) : _script(script) {
        starts.reserve(script._elements.size());
        branches.reserve(script._branches.size());
        _context.fullForm = script._context.fullForm;
        actions.getSize(_context);
        add(actions);
        swfAssert(starts.size() == script._elements.size() && branches.size() == script._branches.size(),
                  "actions read == actions laid out");
    }

    // Where the action starts; where the script ends for the one behind the last.
    uint32_t startOf(uint32_t action) const { return action < starts.size() ? starts[action] : end; }

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
        start(action, 0, end);
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
        for (size_t at = 0; at < bytes.size();) {
            start(block, static_cast<uint32_t>(at), end + static_cast<uint32_t>(at));
            at += recordBytes(bytes.subspan(at));
        }
        end += static_cast<uint32_t>(bytes.size());
    }

    // Up to the next record: bodies stand between the records of their list.
    uint32_t recordBytes(std::span<const uint8_t> record) {
        while (_odd < _script._odd.size() && _script._odd[_odd].action + 1 < starts.size())
            ++_odd;
        if (_odd < _script._odd.size() && _script._odd[_odd].action + 1 == starts.size())
            return _script._odd[_odd].bytes;
        const bool hasLength = _context.fullForm ? record[0] >= 0x80 : record[0] > 0x80;
        return hasLength ? 3 + (record[1] | uint32_t(record[2]) << 8) : 1;
    }

    void start(SwfAction& action, uint32_t place, uint32_t at) {
        const size_t next = branches.size();
        if (next < _script._branches.size() && _script._branches[next].action == starts.size())
            branches.push_back({&action, place, at});
        starts.push_back(at);
    }

    const ScriptNotes& _script;
    SwfContext _context;
    size_t _odd = 0;
};

// The number of each branch, in an object or in bytes; for branches in the order of the script.
class ScriptNotes::Operand {
public:
    ~Operand() { finish(); }

    int32_t get(const ScriptBranch& branch, const Layout::Spot& spot) {
        const SwfActionCompiled* block = bytesOf(*spot.action);
        if (block == nullptr)
            return branch.skips() ? skipCount(*spot.action) : static_cast<SwfActionBranch*>(spot.action)->branchOffset;
        const uint8_t* at = (block == _block ? _bytes.data() : block->records.data()) + placeOf(branch, spot);
        return branch.skips() ? at[0] : static_cast<int16_t>(at[0] | at[1] << 8);
    }

    void set(const ScriptBranch& branch, const Layout::Spot& spot, int32_t value) {
        SwfActionCompiled* block = bytesOf(*spot.action);
        if (block != nullptr) {
            open(*block);
            uint8_t* at = _bytes.data() + placeOf(branch, spot);
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

    void open(SwfActionCompiled& block) {
        if (_block == &block)
            return;
        finish();
        _block = &block;
        _bytes.assign(block.records.span().begin(), block.records.span().end());
    }
    void finish() {
        if (_block != nullptr)
            _block->records = SwfBytes::adopt(std::move(_bytes));
        _block = nullptr;
        _bytes.clear();
    }

    SwfActionCompiled* _block = nullptr; // whose bytes are being changed
    std::vector<uint8_t> _bytes;
};

bool ScriptNotes::settle(SwfActions& script, bool mayWarn) {
    if (_context.observer != nullptr)
        return true;
    std::unordered_map<std::string_view, const ScriptLabel*> places;
    for (const ScriptLabel& label : _labels) {
        if (label.name.empty())
            fail(label.offset, labelAttribute, label.name, "is no name");
        if (!places.emplace(label.name, &label).second)
            fail(label.offset, labelAttribute, label.name, "is the name of another place, too");
    }
    const bool isChecked = _context.warnings != nullptr;
    const bool isTold = _context.scripts != nullptr && !_elements.empty();
    const bool hasWork = std::any_of(_branches.begin(), _branches.end(),
                                     [&](const ScriptBranch& branch) { return branch.isLabelled || isChecked; });
    if (!hasWork && !isTold)
        return true;
    const Layout layout(*this, script);
    Operand operand;
    for (size_t i = 0; i < _branches.size(); ++i) {
        const ScriptBranch& branch = _branches[i];
        const Layout::Spot& spot = layout.branches[i];
        if (branch.isLabelled) {
            const auto found = places.find(branch.label);
            if (branch.label.empty() || found == places.end())
                fail(branch.offset, targetAttribute, branch.label, "is the name of no place in this script");
            operand.set(branch, spot, numberFor(branch, *found->second, layout, spot.start));
        } else if (isChecked) {
            std::optional<SwfWarning> warning = check(branch, operand.get(branch, spot), layout, spot.start);
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
    Operand operand;
    for (size_t i = 0; i < _branches.size(); ++i) {
        const ScriptBranch& branch = _branches[i];
        ScriptBranches::Branch& known = told.branches.emplace_back();
        known.element = branch.offset;
        if (targets[i] != ScriptView::noPlace)
            known.target = places[targets[i]];
        known.number = operand.get(branch, layout.branches[i]);
        known.skips = branch.skips();
        known.isLabelled = branch.isLabelled;
    }
    for (const ScriptLabel& label : _labels)
        told.labels.push_back({label.name, label.offset});
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

int32_t ScriptNotes::numberFor(const ScriptBranch& branch, const ScriptLabel& label, const Layout& layout,
                               uint32_t start) const {
    if (branch.hasBoth)
        fail(branch.offset, targetAttribute, label.name,
             "stands beside " + std::string(branch.number()) + ": only one of them can hold");
    if (!branch.skips()) {
        const int64_t distance = int64_t(layout.startOf(label.action)) - start - branchBytes;
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
