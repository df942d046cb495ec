// What is noted of a script while its elements are read: labels, branches, and the constants in force.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "ScriptBranches.h"
#include "XmlConstants.h"
#include "XmlElement.h"
#include "XmlRegisters.h"

namespace xml2swf {

/// An action that leads to another one by a number: Jump and If by bytes, the WaitForFrames by actions.
struct ScriptBranch {
    uint8_t code = 0;        ///< of the action
    bool isLabelled = false; ///< it leads to a name,
    bool hasBoth = false;    ///< and has a number as well
    uint32_t action = 0;     ///< which action it is
    uint32_t list = 0;       ///< the list that it stands in,
    uint32_t position = 0;   ///< and where in it
    size_t offset = 0;       ///< of its element in the text
    std::string_view label;

    bool skips() const { return code != libswf::SwfActionCode::Jump && code != libswf::SwfActionCode::If; }
    std::string_view number() const { return skips() ? "SkipCount" : "Offset"; }
};

/// A name for the place where an action starts, or a list ends.
struct ScriptLabel {
    std::string_view name;
    uint32_t action = 0; ///< the first one behind the place
    uint32_t list = 0, position = 0;
    size_t offset = 0; ///< of the element that has it
};

/// The attributes and the element by which places have names.
constexpr std::string_view labelAttribute = "At", targetAttribute = "To", placeElement = "Place";

/// One script: a list of actions and all lists nested in it. Branches may lead from any of them into any other, and
/// what a name stands for is known only when the last action has its size: they get their numbers in settle(). Actions
/// are counted in the order of their bytes, nested ones included, however they are read; so it does not matter whether
/// they became objects or bytes.
class ScriptNotes {
public:
    /// Is the script of the context for as long as it lives.
    explicit ScriptNotes(XmlReadContext& context) : _context(context), _outer(context.script) { context.script = this; }
    ~ScriptNotes() { _context.script = _outer; }
    ScriptNotes(const ScriptNotes&) = delete;
    ScriptNotes& operator=(const ScriptNotes&) = delete;

    ConstantsInForce constants;
    const RegisterNames* registers = nullptr; ///< of the function being read; null in none

    /// An action begins, whose element this is.
    template <class Element>
    void startAction(Element& element) {
        addLabels(element);
        _elements.push_back(element.offset());
        ++_list.position;
    }
    /// The names that an element has for the place of what comes next.
    template <class Element>
    void addLabels(Element& element) {
        if (element.has(labelAttribute)) [[unlikely]]
            addLabels(namesIn(element, labelAttribute, XmlValueForm::Kind::places), element.offset());
    }
    /// The action begun last is a branch. What it leads to by name stands in front of the number.
    template <class Element>
    void addBranch(Element& element, uint8_t code) {
        ScriptBranch& branch = _branches.emplace_back();
        branch.code = code;
        branch.action = actions() - 1;
        branch.list = _list.id;
        branch.position = _list.position - 1;
        branch.offset = element.offset();
        branch.isLabelled = element.has(targetAttribute);
        if (!branch.isLabelled)
            return;
        branch.label = namesIn(element, targetAttribute, XmlValueForm::Kind::place);
        branch.hasBoth = _context.observer == nullptr && element.has(branch.number());
    }
    /// The record of the action begun last does not end, up to the next record, where its length says: room for the
    /// bytes that it takes, which are told when they are known.
    size_t addOddRecord() {
        _odd.push_back({actions() - 1, 0});
        return _odd.size() - 1;
    }
    void setOddRecord(size_t index, uint32_t bytes) { _odd[index].bytes = bytes; }

    /// How much was noted, for taking back what came of actions that are read again.
    struct Mark {
        size_t elements, branches, labels, odd, lists;
        ConstantsInForce::Mark constants;
    };
    Mark mark() const {
        return {_elements.size(), _branches.size(), _labels.size(), _odd.size(), _listSizes.size(), constants.mark()};
    }
    /// In the list that the mark was made in.
    void rewind(const Mark& mark);

    /// Gives the branches of the script, all of whose actions are there now, their numbers. Throws XmlValueError for
    /// names that are not known, or twice, and for places out of reach. Warns of numbers that do not lead to the start
    /// of an action; with `mayWarn` off it is false instead where that would happen.
    bool settle(libswf::SwfActions& script, bool mayWarn);

private:
    friend class ScriptList;
    struct List {
        uint32_t id = 0, position = 0;
    };
    struct OddRecord {
        uint32_t action, bytes;
    };
    class Layout;
    struct Operand;
    class LabelsByName;

    // Names that stay for as long as this lives: they stand in the document, or are kept.
    template <class Element>
    std::string_view namesIn(Element& element, std::string_view attribute, XmlValueForm::Kind kind) {
        std::string room;
        const std::string_view names = element.label(attribute, kind, room);
        return standsInText(names) ? names : std::string_view(_names.emplace_back(names));
    }
    bool standsInText(std::string_view names) const;

    uint32_t actions() const { return static_cast<uint32_t>(_elements.size()); }
    void addLabels(std::string_view names, size_t offset);
    void tell(libswf::SwfActions& script, const Layout& layout) const;
    size_t addPlaces(libswf::SwfActions& list, std::vector<ScriptBranches::Place>& places, size_t& action) const;
    // What leads a branch to a label, so many bytes behind it.
    int32_t numberFor(const ScriptBranch& branch, const ScriptLabel& label, int64_t distance) const;
    std::optional<libswf::SwfWarning> check(const ScriptBranch& branch, int32_t number, const Layout& layout,
                                            uint32_t start) const;
    std::string_view elementAt(size_t offset) const;
    [[noreturn]] void fail(size_t offset, std::string_view attribute, std::string_view value,
                           const std::string& reason) const;

    XmlReadContext& _context;
    ScriptNotes* const _outer;     // scripts do not nest, but one may be read ahead while another is
    std::vector<size_t> _elements; // where each action stands in the text
    std::vector<ScriptBranch> _branches;
    std::vector<ScriptLabel> _labels;
    std::deque<std::string> _names; // that are written otherwise than they stand
    std::vector<OddRecord> _odd;
    List _list;
    std::vector<uint32_t> _listSizes; // in actions, of all nested lists
};

/// A list in the script being read, for as long as it lives.
class ScriptList {
public:
    explicit ScriptList(ScriptNotes& script)
        : _script(script), _outer(script._list), _changes(script.constants.changes()) {
        script._listSizes.push_back(0);
        script._list = {static_cast<uint32_t>(script._listSizes.size()), 0};
    }
    ~ScriptList() {
        _script._listSizes[_script._list.id - 1] = _script._list.position;
        _script._list = _outer;
        if (_script.constants.changes() != _changes)
            _script.constants.forget();
    }
    ScriptList(const ScriptList&) = delete;
    ScriptList& operator=(const ScriptList&) = delete;

private:
    ScriptNotes& _script;
    const ScriptNotes::List _outer;
    const uint32_t _changes;
};

} // namespace xml2swf
