#include "DocumentViewListCommands.h"

#include <algorithm>
#include <span>
#include <utility>

#include "TagCheck.h"
#include "TagClipboard.h"
#include "TagEdits.h"
#include "TagText.h"

namespace zelk::guicommand::documentviewlist {

namespace {

struct TagListParams : ThreadParams {
    std::string_view text;                ///< in; the user cannot change it while the job runs
    std::shared_ptr<const TagIndex> tags; ///< out
};

void buildList(TagListParams& params) { params.tags = std::make_shared<TagIndex>(params.text, &params.progress); }

} // namespace

TagPath positionBehind(TagSelection selection) {
    std::ranges::sort(selection);
    TagPath last;
    for (TagPath& path : selection) {
        const bool isInLast = path.size() > last.size() && std::ranges::equal(std::span(path).first(last.size()), last);
        if (last.empty() || !isInLast)
            last = std::move(path);
    }
    if (!last.empty())
        ++last.back();
    return last;
}

bool BuildTagListCmd::Execute() {
    if (_text.isCurrent())
        return true;
    TagListParams params;
    params.text = _text.text();
    runJob<buildList>(_session.user, "Listing tags", params);
    _text.setTags(std::move(params.tags));
    return true;
}

bool TagListCmd::Execute() {
    if (_isPrepared) {
        if (!_text.view().redo())
            return false;
    } else {
        _edit = prepare();
        if (_edit.changes.empty())
            return false;
        change();
        _isPrepared = true;
    }
    _shown = _edit.shown;
    finish();
    return true;
}

// A text that is no longer well-formed could not be shown any more, and nobody would know why. It is looked at before
// it is there, since a change that is taken back still stands in the history, in the place of what could be repeated.
void TagListCmd::change() {
    std::string after;
    size_t at = 0;
    const std::string_view before = _text.text();
    for (const TextChange& change : _edit.changes) {
        after.append(before.substr(at, change.start - at)).append(change.text);
        at = change.end;
    }
    after.append(before.substr(at));
    auto tags = std::make_shared<const TagIndex>(after);
    after = {};
    _text.view().replaceAll(_edit.changes);
    _edit.changes = {};
    _text.setTags(std::move(tags));
}

bool TagListCmd::Unexecute() {
    _shown = _edit.back;
    return _text.view().undo();
}

TagListCmd::Edit DeleteCmd::prepare() {
    const TagIndex& index = text().tags();
    const std::vector<uint32_t> tags = tagsAt(index, _selection);
    Edit edit;
    if (tags.empty())
        return edit;
    for (uint32_t tag : tags) {
        _removed.push_back(loneElement(text(), tag));
        edit.back.push_back(index.path(tag));
    }
    edit.place = edit.back.front();
    edit.changes = removal(text(), tags);
    return edit;
}

void CutCmd::finish() {
    putOnClipboard(_clipboard, removed(), lineEndOf(text().text()), layoutAtStart(text().text()).fullForm);
}

bool CopyCmd::Execute() {
    std::vector<std::string> elements;
    for (uint32_t tag : tagsAt(_text.tags(), _selection))
        elements.push_back(loneElement(_text, tag));
    return !elements.empty() &&
           putOnClipboard(_clipboard, elements, lineEndOf(_text.text()), layoutAtStart(_text.text()).fullForm);
}

TagListCmd::Edit InsertCmd::prepare() {
    for (std::string& element : _elements)
        element = withLineEnds(element, lineEndOf(text().text()));
    return put(std::exchange(_elements, {})); // The text's history has them from now on.
}

TagListCmd::Edit InsertCmd::put(const std::vector<std::string>& elements) {
    if (elements.empty() || _position.empty())
        return {};
    const TagIndex& index = text().tags();
    TagPath position(_position.begin(), _position.end() - 1);
    const uint32_t first = std::min(_position.back(), index.childCount(index.find(position)));
    Edit edit;
    edit.changes = {insertionAt(text(), _position, elements)};
    position.push_back(first);
    edit.place = position;
    for (; position.back() < first + elements.size(); ++position.back())
        edit.shown.push_back(position);
    return edit;
}

TagListCmd::Edit PasteCmd::prepare() { return put(tagsOnClipboard(_clipboard, text())); }

TagListCmd::Edit DuplicateCmd::prepare() {
    std::vector<std::string> elements;
    TagSelection copied;
    for (uint32_t tag : tagsAt(text().tags(), _selection)) {
        elements.push_back(loneElement(text(), tag));
        copied.push_back(text().tags().path(tag));
    }
    Edit edit = put(elements);
    edit.back = std::move(copied);
    return edit;
}

TagListCmd::Edit EditSingleTagCmd::prepare() {
    const uint32_t tag = text().tags().find(_position);
    if (tag == TagIndex::movie)
        return {};
    const std::string before = loneElement(text(), tag);
    const std::optional<std::string> after = _editor.editTag(before, layoutAtStart(text().text()));
    if (!after || *after == before)
        return {};
    // The tag editor keeps the line ends of the element; an element of one line gets those of the text.
    const bool hasLines = before.find_first_of("\r\n") != before.npos;
    std::string element = trimmed(*after);
    if (!hasLines)
        element = withLineEnds(element, lineEndOf(text().text()));
    return {{replacement(text(), tag, element)}, {_position}, {_position}, _position};
}

} // namespace zelk::guicommand::documentviewlist
