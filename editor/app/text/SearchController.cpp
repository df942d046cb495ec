#include "SearchController.h"

#include <QVBoxLayout>

#include "PaintLoop.h"

namespace zelk {

SearchController::SearchController(QWidget* window, QSettings& settings)
    : QObject(window), _settings(settings), _bars(new QWidget(window)), _find(new FindDlg(_bars)),
      _replace(new ReplaceDlg(_bars)) {
    auto* layout = new QVBoxLayout(_bars);
    layout->setContentsMargins(0, 0, 0, 0);
    for (FindDlg* bar : {_find, static_cast<FindDlg*>(_replace)}) {
        layout->addWidget(bar);
        connectBar(*bar);
        bar->setHistory(_settings.value(QStringLiteral("Search/find")).toStringList());
    }
    _replace->setReplacements(_settings.value(QStringLiteral("Search/replace")).toStringList());
    connect(_replace, &ReplaceDlg::replaceAsked, this, &SearchController::replace);
    connect(_replace, &ReplaceDlg::replaceAllAsked, this, &SearchController::replaceAll);
    _counting.setInterval(0);
    connect(&_counting, &QTimer::timeout, this, [this] { countOn(10); });
    _marking.setSingleShot(true);
    _marking.setInterval(200);
    connect(&_marking, &QTimer::timeout, this, &SearchController::markAll);
}

void SearchController::connectBar(FindDlg& bar) {
    connect(&bar, &FindDlg::findAsked, this, [this, &bar] { search(bar, bar.searchesUp()); });
    connect(&bar, &FindDlg::entered, this, [this, &bar] {
        if (_wantsAll)
            findInAll();
        else
            search(bar, bar.searchesUp());
    });
    connect(&bar, &FindDlg::findPreviousAsked, this, [this, &bar] { search(bar, !bar.searchesUp()); });
    connect(&bar, &FindDlg::countAsked, this, [this, &bar] { count(bar); });
    connect(&bar, &FindDlg::findInAllAsked, this, &SearchController::findInAll);
    connect(&bar, &FindDlg::optionsChanged, this, [this] {
        _counting.stop();
        _marking.start();
    });
    connect(&bar, &FindDlg::left, this, &SearchController::close);
}

void SearchController::setTarget(TextEditorView* view) {
    if (_view == view)
        return;
    if (_view != nullptr) {
        _view->markMatches(nullptr);
        disconnect(_view, nullptr, this, nullptr);
    }
    _view = view;
    _counting.stop();
    if (view == nullptr)
        return;
    connect(view, &TextControl::edited, this, [this] {
        if (openBar() != nullptr && _view->changeCount() != _counted)
            _marking.start();
    });
    if (openBar() != nullptr)
        _marking.start();
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

FindDlg* SearchController::openBar() const {
    return !_find->isHidden() ? _find : !_replace->isHidden() ? _replace : nullptr;
}

void SearchController::openFind() {
    _wantsAll = false;
    if (openBar() == _replace)
        _find->takeOver(*_replace);
    _replace->hide();
    _find->present(proposal(_view));
    markAll();
}

void SearchController::openReplace() {
    _wantsAll = false;
    if (openBar() != _replace)
        _replace->takeOver(*_find);
    _find->hide();
    _replace->present(proposal(_view));
    markAll();
}

void SearchController::close() {
    _counting.stop();
    _marking.stop();
    if (_view != nullptr)
        _view->markMatches(nullptr);
    if (openBar() == _replace)
        _find->takeOver(*_replace);
    _find->hide();
    _replace->hide();
    Q_EMIT left();
}

void SearchController::findInAll() {
    if (openBar() == nullptr) {
        const bool hasProposal = !proposal(_view).isEmpty();
        openFind();
        if (!hasProposal) {
            _wantsAll = true;
            return;
        }
    }
    _wantsAll = false;
    if (prepare(*openBar()))
        Q_EMIT findInAllAsked(_search->options());
}

void SearchController::show(const QString& text, bool isFailure) {
    if (FindDlg* bar = openBar())
        bar->showResult(text, isFailure);
    Q_EMIT resultShown(text);
}

bool SearchController::prepare(FindDlg& bar) {
    _marking.stop();
    const SearchOptions options = bar.options();
    if (_view == nullptr || options.pattern.empty())
        return false;
    bar.remember();
    saveHistory();
    try {
        if (!_search || _search->options() != options)
            _search = std::make_shared<TextSearch>(options);
        _view->markMatches(openBar() == nullptr ? nullptr : _search);
        return true;
    } catch (const SearchError& error) {
        show(tr("The expression is not correct: %1").arg(QString::fromUtf8(error.what())), true);
        return false;
    }
}

void SearchController::saveHistory() {
    _settings.setValue(QStringLiteral("Search/find"), openBar() == _replace ? _replace->history() : _find->history());
    _settings.setValue(QStringLiteral("Search/replace"), _replace->replacements());
}

void SearchController::search(FindDlg& bar, bool up) {
    if (prepare(bar))
        find(up, bar.wraps());
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
        _search = std::make_shared<TextSearch>(SearchOptions{selected, false, true, false});
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
            const QString pattern = QString::fromStdString(_search->options().pattern);
            show(tr("Not found: %1").arg(pattern), true);
            if (!_search->options().regularExpression)
                Q_EMIT nothingFound(pattern, up);
            return;
        }
        _view->select(*match);
        startCount(match, wrapped ? tr("%1, continued from the other end") : QStringLiteral("%1"));
    } catch (const SearchError& error) {
        show(QString::fromUtf8(error.what()), true);
    }
}

void SearchController::count(FindDlg& bar) {
    if (prepare(bar))
        startCount(std::nullopt, QStringLiteral("%1"));
}

// --- all matches -----------------------------------------------------------------------------------------------------

void SearchController::markAll() {
    FindDlg* bar = openBar();
    if (bar == nullptr || _view == nullptr)
        return;
    const SearchOptions options = bar->options();
    try {
        if (!_search || _search->options() != options)
            _search = std::make_shared<TextSearch>(options);
        _view->markMatches(_search);
        if (options.pattern.empty())
            bar->showResult({}, false);
        else
            startCount(_view->selection(), QStringLiteral("%1"));
    } catch (const SearchError& error) { // It is being typed.
        _view->markMatches(nullptr);
        bar->showResult(tr("The expression is not correct: %1").arg(QString::fromUtf8(error.what())), true);
    }
}

void SearchController::startCount(std::optional<TextMatch> current, const QString& words) {
    _count = {};
    _current = current;
    _words = words;
    _counted = _view->changeCount();
    _counting.start();
    countOn(30);
}

void SearchController::countOn(int milliseconds) {
    if (_view == nullptr || _view->changeCount() != _counted) {
        _counting.stop();
        return;
    }
    try {
        _search->count(_view->text(), _current, _count, milliseconds);
        if (_count.isComplete)
            _counting.stop();
        show(_words.arg(countText()));
    } catch (const SearchError& error) {
        _counting.stop();
        show(QString::fromUtf8(error.what()), true);
    }
}

QString SearchController::countText() const {
    const QString total = _count.isComplete ? QString::number(_count.total) : tr("more than %1").arg(_count.total);
    if (_count.index != 0)
        return tr("%1 of %2").arg(_count.index).arg(total);
    return _count.total == 1 && _count.isComplete ? tr("1 match") : tr("%1 matches").arg(total);
}

// --- replacing -------------------------------------------------------------------------------------------------------

// The selection when it is a match, then on to the next one.
void SearchController::replace() {
    if (!prepare(*_replace))
        return;
    _replace->rememberReplacement();
    saveHistory();
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
    saveHistory();
    const std::string_view text = _view->text();
    const TextMatch range = _replace->onlyInSelection() ? _view->selection() : TextMatch{0, text.size()};
    const auto search = _search;
    const std::string with = _replace->replacement();
    TextSearch::Replaced replaced;
    const auto work = [&] { replaced = search->replaceAll(text, range.start, range.end, with); };
    try {
        if (range.end - range.start > TextControl::bigSize)
            besideWindow(work);
        else
            work();
        if (replaced.count > 0) {
            const TextChange change{replaced.start, replaced.end, std::move(replaced.text)};
            _view->replaceAll({&change, 1});
        }
        _counting.stop();
        _counted = _view->changeCount(); // so that this stays to be read
        show(replaced.count == 1 ? tr("1 replaced") : tr("%1 replaced").arg(replaced.count), replaced.count == 0);
    } catch (const SearchError& error) {
        show(QString::fromUtf8(error.what()), true);
    }
}

} // namespace zelk
