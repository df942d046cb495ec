#include "DocumentWarnings.h"

#include <algorithm>
#include <map>
#include <unordered_map>

#include "Problems.h"
#include "SwfTags.h"

namespace zelk {

using namespace libswf;
using xml2swf::TagText;

namespace {

// Many warnings may be of one big element.
class ElementHashes {
public:
    explicit ElementHashes(std::string_view text) : _text(text) {}
    size_t of(size_t start, size_t size) {
        const auto [found, isNew] = _known.emplace(std::pair(start, size), 0);
        if (isNew)
            found->second = std::hash<std::string_view>()(_text.substr(start, size));
        return found->second;
    }

private:
    std::string_view _text;
    std::map<std::pair<size_t, size_t>, size_t> _known;
};

// The element of every tag that a warning names by its path.
class TagElements {
public:
    explicit TagElements(std::vector<TagText> texts) {
        std::ranges::sort(texts, {}, &TagText::start);
        std::vector<size_t> ends;
        std::vector<uint32_t> path = {0};
        for (const TagText& tag : texts) {
            for (; !ends.empty() && ends.back() <= tag.start; ends.pop_back()) {
                path.resize(ends.size());
                ++path.back();
            }
            _elements.emplace(tagPathText(path), tag);
            ends.push_back(tag.end);
            path.push_back(0);
        }
    }

    /// Null when there is no such tag.
    const TagText* of(const std::string& path) const {
        const auto found = _elements.find(path);
        return found == _elements.end() ? nullptr : &found->second;
    }

private:
    std::unordered_map<std::string, TagText> _elements;
};

ConversionWarnings unplaced(const SwfWarnings& warnings) {
    ConversionWarnings result;
    for (const SwfWarning& warning : warnings.items())
        result.items.push_back({warning});
    result.more = warnings.total() - warnings.items().size();
    return result;
}

} // namespace

// --- of a conversion -------------------------------------------------------------------------------------------------

ConversionWarnings warningsOfLoad(const SwfWarnings& warnings, std::string_view text, std::vector<TagText> tags) {
    ConversionWarnings result = unplaced(warnings);
    if (result.items.empty())
        return result;
    const TagElements elements(std::move(tags));
    ElementHashes hashes(text);
    for (DocumentWarning& item : result.items) {
        const TagText* tag = elements.of(item.warning.path);
        if (tag == nullptr)
            continue;
        item.offset = tag->start;
        item.size = tag->end - tag->start;
        item.hash = hashes.of(item.offset, item.size);
    }
    return result;
}

ConversionWarnings warningsOfCompile(const SwfWarnings& warnings, std::string_view text) {
    ConversionWarnings result = unplaced(warnings);
    for (DocumentWarning& item : result.items) {
        if (item.warning.row == 0)
            continue;
        const auto place = static_cast<size_t>(item.warning.offset);
        const size_t start = text.rfind('<', place);
        if (start == text.npos)
            continue;
        item.offset = start;
        item.inElement = place - start;
    }
    return result;
}

ConversionWarnings warningsOfCheck(const Problems& problems, std::string_view text) {
    ConversionWarnings result;
    for (const Problem& problem : problems.items) {
        DocumentWarning item{problem.warning};
        item.warning.path = problem.path;
        item.warning.tagName = problem.tag;
        item.warning.reason = problem.reason;
        item.effect = severityName(problem.severity);
        const size_t start = problem.offset == Problem::nowhere ? text.npos : text.rfind('<', problem.offset);
        if (start != text.npos) {
            item.offset = start;
            item.inElement = problem.offset - start;
        }
        result.items.push_back(std::move(item));
    }
    result.more = problems.more;
    return result;
}

// --- while the text is edited ----------------------------------------------------------------------------------------

WarningList::Set::Set(ConversionWarnings warnings) : more(warnings.more) {
    std::vector<size_t> offsets;
    for (DocumentWarning& warning : warnings.items) {
        offsets.push_back(warning.offset == DocumentWarning::nowhere ? 0 : warning.offset);
        items.push_back({std::move(warning)});
    }
    places = TextAnchors(offsets);
}

void WarningList::loaded(ConversionWarnings warnings) {
    for (Set& set : _sets)
        set = Set();
    of(From::load) = Set(std::move(warnings));
}

void WarningList::compiled(ConversionWarnings warnings) { of(From::save) = Set(std::move(warnings)); }
void WarningList::checked(ConversionWarnings warnings) { of(From::check) = Set(std::move(warnings)); }

void WarningList::savedAsMovie(std::string_view text, bool keepsOriginal) {
    ElementHashes hashes(text);
    Set& load = of(From::load);
    for (uint32_t i = 0; i < load.items.size(); ++i) {
        Item& item = load.items[i];
        const size_t start = offset({From::load, i});
        if (item.given.offset == DocumentWarning::nowhere)
            item.isOver = !keepsOriginal;
        else if (start != DocumentWarning::nowhere)
            item.isOver = !keepsOriginal || start > text.size() || hashes.of(start, item.given.size) != item.given.hash;
    }
}

void WarningList::willInsert(size_t at, size_t length) {
    for (Set& set : _sets)
        set.places.willInsert(at, length);
}

void WarningList::willDelete(size_t start, size_t end, const Reader& text) {
    for (Set& set : _sets)
        set.places.willDelete(start, end, text);
}

bool WarningList::settle(const Reader& text) {
    bool isChanged = false;
    for (Set& set : _sets)
        isChanged |= set.places.settle(text);
    return isChanged;
}

size_t WarningList::offset(Entry entry) const {
    if (of(entry.from).items[entry.number].given.offset == DocumentWarning::nowhere)
        return DocumentWarning::nowhere;
    return of(entry.from).places.at(entry.number).value_or(DocumentWarning::nowhere);
}

bool WarningList::isTrue(Entry entry) const {
    const Item& item = of(entry.from).items[entry.number];
    const bool hadPlace = item.given.offset != DocumentWarning::nowhere;
    return !item.isOver && (!hadPlace || offset(entry) != DocumentWarning::nowhere);
}

std::vector<WarningList::Entry> WarningList::entries() const {
    std::vector<Entry> result;
    for (const From from : {From::load, From::save, From::check}) {
        for (uint32_t i = 0; i < of(from).items.size(); ++i) {
            if (isTrue({from, i}))
                result.push_back({from, i});
        }
    }
    std::ranges::stable_sort(result, {}, [this](Entry entry) { return offset(entry); });
    return result;
}

// --- groups ----------------------------------------------------------------------------------------------------------

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isWordPart(char c) { return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }

// A reason without its numbers, but for those of names and error codes, and without its offset.
std::string withoutNumbers(std::string_view reason) {
    constexpr std::string_view offset = "offset 0x", code = "(code ";
    if (reason.starts_with(offset) && reason.find(": ") != reason.npos)
        reason.remove_prefix(reason.find(": ") + 2);
    std::string result;
    for (size_t i = 0; i < reason.size(); ++i) {
        const bool isNumber = isDigit(reason[i]) && (i == 0 || !isWordPart(reason[i - 1])) && !result.ends_with(code);
        while (isNumber && i < reason.size() && isWordPart(reason[i]))
            ++i;
        if (i == reason.size())
            break;
        if (reason[i] != ' ' || !(result.empty() || result.ends_with(' ')))
            result += reason[i];
    }
    while (result.ends_with(' ') || result.ends_with(':'))
        result.pop_back();
    return result;
}

std::string titleOf(const WarningList& list, const std::vector<WarningList::Entry>& entries,
                    const std::string& general) {
    const SwfWarning& first = list.at(entries.front()).warning;
    if (entries.size() == 1)
        return first.reason;
    const bool areEqual = std::ranges::all_of(
        entries, [&](WarningList::Entry entry) { return list.at(entry).warning.reason == first.reason; });
    std::vector<size_t> elements;
    elements.reserve(entries.size());
    for (WarningList::Entry entry : entries)
        elements.push_back(list.offset(entry));
    elements.erase(std::unique(elements.begin(), elements.end()), elements.end()); // They are in the order of the text.
    const char* what = elements.size() != entries.size()                 ? " times"
                       : entries.front().from == WarningList::From::load ? " tags"
                                                                         : " elements";
    return (areEqual ? first.reason : general) + ", " + std::to_string(entries.size()) + what;
}

} // namespace

std::vector<WarningGroup> grouped(const WarningList& list, const std::vector<WarningList::Entry>& entries) {
    std::map<std::tuple<WarningList::From, SwfWarning::Kind, std::string>, size_t> known;
    std::vector<WarningGroup> groups;
    std::vector<const std::string*> general;
    for (WarningList::Entry entry : entries) {
        const SwfWarning& warning = list.at(entry).warning;
        const auto [found, isNew] =
            known.emplace(std::tuple(entry.from, warning.kind, withoutNumbers(warning.reason)), groups.size());
        if (isNew) {
            groups.emplace_back();
            general.push_back(&std::get<std::string>(found->first));
        }
        groups[found->second].entries.push_back(entry);
    }
    for (size_t i = 0; i < groups.size(); ++i)
        groups[i].title = titleOf(list, groups[i].entries, *general[i]);
    return groups;
}

} // namespace zelk
