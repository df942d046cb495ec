#include "SearchController.h"

namespace zelk {

SearchController::SearchController(QWidget* window)
    : QObject(window), _find(new FindDlg(window)), _replace(new ReplaceDlg(window)) {
    for (FindDlg* dialog : {_find, static_cast<FindDlg*>(_replace)}) {
        connect(dialog, &FindDlg::findAsked, this, [this, dialog] { search(*dialog); });
        connect(dialog, &FindDlg::countAsked, this, [this, dialog] { count(*dialog); });
    }
    connect(_replace, &ReplaceDlg::replaceAsked, this, &SearchController::replace);
    connect(_replace, &ReplaceDlg::replaceAllAsked, this, &SearchController::replaceAll);
}

namespace {

// A selection inside one line is what the user most likely wants to find.
QString proposal(TextEditorView* view) {
    constexpr size_t longest = 200;
    const std::string text = view == nullptr ? std::string() : view->selectedText();
    const bool isUsable = text.size() <= longest && text.find_first_of("\r\n") == text.npos;
    return isUsable ? QString::fromStdString(text) : QString();
}

} // namespace

void SearchController::openFind() {
    _replace->hide();
    _find->present(proposal(_view));
}

void SearchController::openReplace() {
    _find->hide();
    _replace->present(proposal(_view));
}

void SearchController::show(const QString& text, bool isFailure) {
    for (FindDlg* dialog : {_find, static_cast<FindDlg*>(_replace)}) {
        if (dialog->isVisible())
            dialog->showResult(text, isFailure);
    }
    Q_EMIT resultShown(text);
}

bool SearchController::prepare(FindDlg& dialog) {
    const SearchOptions options = dialog.options();
    if (_view == nullptr || options.pattern.empty())
        return false;
    dialog.remember();
    try {
        if (!_search || _search->options() != options)
            _search.emplace(options);
        return true;
    } catch (const SearchError& error) {
        show(tr("The expression is not correct: %1").arg(QString::fromUtf8(error.what())), true);
        return false;
    }
}

void SearchController::search(FindDlg& dialog) {
    if (prepare(dialog))
        find(dialog.searchesUp(), dialog.wraps());
}

void SearchController::findAgain(bool up) {
    if (_view == nullptr)
        return;
    if (!_search) {
        const std::string selected = _view->selectedText();
        if (selected.empty()) {
            openFind();
            return;
        }
        _search.emplace(SearchOptions{selected, false, true, false});
    }
    find(up, true);
}

std::optional<TextMatch> SearchController::findFrom(bool up, bool wraps, bool& wrapped) const {
    const std::string_view text = _view->text();
    const TextMatch selection = _view->selection();
    std::optional<TextMatch> match;
    if (up) {
        match = _search->previous(text, selection.start);
    } else {
        match = _search->next(text, selection.end);
        if (match == selection && match->start == match->end) // an empty match at the caret would be found forever
            match = _search->next(text, selection.end + 1);
    }
    wrapped = !match && wraps;
    if (wrapped)
        match = up ? _search->previous(text, text.size()) : _search->next(text, 0);
    return match;
}

void SearchController::find(bool up, bool wraps) {
    try {
        bool wrapped = false;
        const std::optional<TextMatch> match = findFrom(up, wraps, wrapped);
        if (!match) {
            show(tr("Not found: %1").arg(QString::fromStdString(_search->options().pattern)), true);
            return;
        }
        _view->select(*match);
        const QString where = countText(_search->count(_view->text(), match));
        show(wrapped ? tr("%1, continued from the other end").arg(where) : where);
    } catch (const SearchError& error) {
        show(QString::fromUtf8(error.what()), true);
    }
}

QString SearchController::countText(const TextSearch::Count& count) const {
    const QString total = count.isComplete ? QString::number(count.total) : tr("more than %1").arg(count.total);
    if (count.index != 0)
        return tr("%1 of %2").arg(count.index).arg(total);
    return count.total == 1 && count.isComplete ? tr("1 match") : tr("%1 matches").arg(total);
}

void SearchController::count(FindDlg& dialog) {
    if (!prepare(dialog))
        return;
    try {
        show(countText(_search->count(_view->text(), std::nullopt)));
    } catch (const SearchError& error) {
        show(QString::fromUtf8(error.what()), true);
    }
}

// The selection when it is a match, then on to the next one.
void SearchController::replace() {
    if (!prepare(*_replace))
        return;
    _replace->rememberReplacement();
    try {
        const TextMatch selection = _view->selection();
        if (selection.start != selection.end && _search->next(_view->text(), selection.start) == selection)
            _view->replaceSelection(_search->replacement(_view->text(), selection, _replace->replacement()));
        find(_replace->searchesUp(), _replace->wraps());
    } catch (const SearchError& error) {
        show(QString::fromUtf8(error.what()), true);
    }
}

void SearchController::replaceAll() {
    if (!prepare(*_replace))
        return;
    _replace->rememberReplacement();
    const std::string_view text = _view->text();
    const TextMatch range = _replace->onlyInSelection() ? _view->selection() : TextMatch{0, text.size()};
    try {
        const TextSearch::Replaced replaced =
            _search->replaceAll(text, range.start, range.end, _replace->replacement());
        if (replaced.count > 0)
            _view->replaceBytes(replaced.start, replaced.end, replaced.text);
        show(replaced.count == 1 ? tr("1 replaced") : tr("%1 replaced").arg(replaced.count), replaced.count == 0);
    } catch (const SearchError& error) {
        show(QString::fromUtf8(error.what()), true);
    }
}

} // namespace zelk
