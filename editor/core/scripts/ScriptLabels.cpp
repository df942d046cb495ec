#include "ScriptLabels.h"

#include <algorithm>
#include <map>
#include <set>

#include "AttributeText.h"
#include "Conversion.h"
#include "ScriptText.h"
#include "XmlSurroundings.h"

namespace zelk {

using namespace xml2swf;

namespace {

constexpr std::string_view at = "At", to = "To", placeName = "Place", blanks = " \t\r\n";

// One script of a text, and the changes to it.
class ScriptEdit {
public:
    ScriptEdit(std::string_view text, const ScriptBranches& script, size_t limit)
        : _text(text), _script(script), _limit(limit) {}

    void toLabels() {
        for (const ScriptBranches::Label& label : _script.labels) {
            _taken.insert(label.name);
            _firstNames.emplace(label.element, label.name);
        }
        for (const ScriptBranches::Branch& branch : _script.branches) {
            if (!branch.isLabelled && branch.target)
                _names.emplace(placeOf(*branch.target), std::string());
        }
        for (auto& [place, name] : _names)
            name = place.isEnd ? nameOfEnd(place) : nameOfAction(place.at);
        for (const ScriptBranches::Branch& branch : _script.branches) {
            if (!branch.isLabelled && branch.target)
                setTarget(branch, numberName(branch), to, _names[placeOf(*branch.target)]);
        }
    }

    void toNumbers() {
        for (const ScriptBranches::Branch& branch : _script.branches) {
            if (branch.isLabelled)
                setTarget(branch, to, numberName(branch), std::to_string(branch.number));
        }
        std::set<size_t> labelled;
        for (const ScriptBranches::Label& label : _script.labels)
            labelled.insert(label.element);
        for (size_t element : labelled) {
            if (tagAt(element).name == placeName)
                removeElement(element);
            else
                removeAttribute(element, at);
        }
    }

    std::vector<TextChange> changes;

private:
    // Where a place stands in the text: an action's element, or the end tag of a list.
    struct Place {
        size_t at = 0;
        bool isEnd = false;
        size_t lastAction = 0, lastEnd = 0; // of the list
        bool operator<(const Place& other) const { return at < other.at; }
    };

    static std::string_view numberName(const ScriptBranches::Branch& branch) {
        return branch.skips ? "SkipCount" : "Offset";
    }

    XmlTagToken tagAt(size_t open) const {
        const auto tag = tagTokenAt(_text, open, _limit);
        return tag.value_or(XmlTagToken{XmlTagToken::Kind::empty, open, open, {}});
    }
    std::string_view startTag(size_t open) const { return _text.substr(open, tagAt(open).end - open); }
    size_t offsetOf(std::string_view part) const { return static_cast<size_t>(part.data() - _text.data()); }
    size_t behindName(size_t open) const { return open + 1 + tagAt(open).name.size(); }

    Place placeOf(const ScriptBranches::Place& target) {
        if (!target.isEnd)
            return {target.element};
        Place& end = _ends[target.element];
        if (!end.isEnd) {
            const size_t lastEnd = elementEnd(_text, target.element, _limit).value_or(_limit);
            const auto close = endTagBehind(_text, lastEnd, _limit - lastEnd);
            end = {close ? close->open : _limit, true, target.element, lastEnd};
        }
        return end;
    }

    std::string newName() {
        std::string name;
        do {
            name = "L" + std::to_string(++_lastName);
        } while (!_taken.insert(name).second);
        return name;
    }

    std::string nameOfAction(size_t element) {
        if (const auto known = _firstNames.find(element); known != _firstNames.end())
            return known->second;
        const std::string name = newName();
        if (attributeOf(startTag(element), at)) // an empty one would not have compiled
            return name;
        const size_t start = behindName(element);
        changes.push_back({start, start, " " + std::string(at) + "=\"" + name + "\""});
        return name;
    }

    std::string nameOfEnd(const Place& place) {
        // Behind the last action only a Place can have a name.
        const auto known = _firstNames.lower_bound(place.lastEnd);
        if (known != _firstNames.end() && known->first < place.at)
            return known->second;
        const std::string name = newName();
        std::string element = "<" + std::string(placeName) + " " + std::string(at) + "=\"" + name + "\" />";
        const std::string_view indent = lineIndent(_text, place.at);
        const bool isFirst = offsetOf(indent) + indent.size() == place.at; // on its line
        const size_t start = isFirst ? offsetOf(indent) : place.at;
        if (isFirst)
            element = std::string(lineIndent(_text, place.lastAction)) + element + std::string(lineEndOf(_text));
        changes.push_back({start, start, std::move(element)});
        return name;
    }

    // Puts one attribute in place of another; in front of all others when that is missing.
    void setTarget(const ScriptBranches::Branch& branch, std::string_view old, std::string_view name,
                   std::string_view value) {
        const std::string attribute = std::string(name) + "=\"" + escapedAttribute(value) + "\"";
        if (const auto there = attributeOf(startTag(branch.element), old)) {
            const size_t start = offsetOf(there->name), end = offsetOf(there->value) + there->value.size() + 1;
            changes.push_back({start, end, attribute});
        } else {
            const size_t start = behindName(branch.element);
            changes.push_back({start, start, " " + attribute});
        }
    }

    void removeAttribute(size_t element, std::string_view name) {
        const auto there = attributeOf(startTag(element), name);
        if (!there)
            return;
        const size_t before = _text.find_last_not_of(blanks, offsetOf(there->name) - 1) + 1;
        changes.push_back({before, offsetOf(there->value) + there->value.size() + 1, {}});
    }

    // With its line when nothing else stands there.
    void removeElement(size_t element) {
        size_t start = element, end = elementEnd(_text, element, _limit).value_or(element);
        const std::string_view indent = lineIndent(_text, element);
        const size_t lineEnd = std::min(_text.find_first_not_of(" \t", end), _text.size());
        const bool isAlone = offsetOf(indent) + indent.size() == element &&
                             (lineEnd < _text.size() && (_text[lineEnd] == '\n' || _text[lineEnd] == '\r'));
        if (isAlone) {
            start = offsetOf(indent);
            end = lineEnd + (_text.substr(lineEnd).starts_with("\r\n") ? 2 : 1);
        }
        changes.push_back({start, end, {}});
    }

    const std::string_view _text;
    const ScriptBranches& _script;
    const size_t _limit; // the end of the tag
    std::set<std::string, std::less<>> _taken;
    std::map<Place, std::string> _names;
    std::map<size_t, std::string> _firstNames; // by the elements that have names
    std::map<size_t, Place> _ends;             // of lists, by their last action
    uint32_t _lastName = 0;
};

bool touches(std::string_view text, const ScriptBranches& script, size_t start, size_t end, size_t limit) {
    return start == end || (start <= elementEnd(text, script.last, limit).value_or(limit) && script.first <= end);
}

// Most tags that may have scripts have none, and those need not be compiled.
bool mayChange(BranchTargets targets, std::string_view element) {
    const auto has = [&](std::string_view word) { return element.find(word) != element.npos; };
    return targets == BranchTargets::numbers ? has(at) : has("<Jump") || has("<If") || has("<WaitForFrame");
}

} // namespace

std::vector<TextChange> changeBranches(BranchTargets targets, std::string_view text, const TagIndex& tags, size_t start,
                                       size_t end, IProgressReporter* progress) {
    std::vector<TextChange> changes;
    for (uint32_t tag = 0; tag < tags.count(); ++tag) {
        if (progress != nullptr)
            progress->report(double(tag) / tags.count());
        const size_t from = tags.start(tag), limit = tags.end(tag);
        const bool isTouched = start == end || (start <= limit && from <= end);
        const std::string_view element = text.substr(from, limit - from);
        if (!isTouched || !holdsScripts(elementName(element)) || !mayChange(targets, element))
            continue;
        for (const ScriptBranches& script : scriptsOf(text, from, limit)) {
            if (!touches(text, script, start, end, limit))
                continue;
            ScriptEdit edit(text, script, limit);
            targets == BranchTargets::labels ? edit.toLabels() : edit.toNumbers();
            std::ranges::move(edit.changes, std::back_inserter(changes));
        }
    }
    // What goes in at one place stays in its order: a name stands in front of a target.
    std::ranges::stable_sort(changes, {}, &TextChange::start);
    return changes;
}

} // namespace zelk
