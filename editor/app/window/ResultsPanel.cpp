#include "ResultsPanel.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>

namespace zelk {

namespace {

constexpr size_t usualPiece = size_t(1) << 20; // of a text that is looked through at once
constexpr size_t mostResults = 10000, longestLine = 200;

} // namespace

/// A row for each match. They move with their texts.
class ResultsModel : public QAbstractTableModel {
public:
    enum Column { document, row, line, columns };
    struct Result {
        QPointer<DocumentView> view;
        size_t start, end;
    };

    using QAbstractTableModel::QAbstractTableModel;

    void clear() {
        beginResetModel();
        _results.clear();
        endResetModel();
    }
    void add(const std::vector<Result>& results) {
        if (results.empty())
            return;
        const int count = rowCount();
        beginInsertRows({}, count, count + static_cast<int>(results.size()) - 1);
        _results.insert(_results.end(), results.begin(), results.end());
        endInsertRows();
    }
    const std::vector<Result>& results() const { return _results; }

    void inserted(const DocumentView* view, size_t at, size_t bytes) {
        for (Result& each : _results) {
            if (each.view == view && each.end > at) {
                each.start += each.start >= at ? bytes : 0;
                each.end += bytes;
            }
        }
    }
    void removed(const DocumentView* view, size_t start, size_t end) {
        const auto moved = [&](size_t place) {
            return place <= start ? place : std::max(start, place - std::min(place, end) + start);
        };
        for (Result& each : _results) {
            if (each.view == view) {
                each.start = moved(each.start);
                each.end = moved(each.end);
            }
        }
    }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(_results.size());
    }
    int columnCount(const QModelIndex& = {}) const override { return columns; }

    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid() || role != Qt::DisplayRole)
            return {};
        const Result& result = _results[static_cast<size_t>(index.row())];
        if (result.view == nullptr)
            return index.column() == document ? ResultsPanel::tr("(closed)") : QString();
        switch (index.column()) {
        case document: return QFileInfo(result.view->fileName()).fileName();
        case row: return result.view->rowOf(result.start);
        default: return lineOf(result);
        }
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
            return {};
        switch (section) {
        case document: return ResultsPanel::tr("Document");
        case row: return ResultsPanel::tr("Row");
        default: return ResultsPanel::tr("Line");
        }
    }

private:
    // From the start of the line, or from a little before the match in a long one.
    static QString lineOf(const Result& result) {
        const TextEditorView& editor = result.view->editor();
        const size_t size = editor.text().size(), start = std::min(result.start, size);
        const size_t least = start > longestLine / 2 ? start - longestLine / 2 : 0;
        std::string text = editor.copyOf(least, std::min(size, start + longestLine));
        const size_t before = text.find_last_of("\r\n", start == least ? 0 : start - least - 1);
        text.erase(0, start > least && before != text.npos ? before + 1 : 0);
        return QString::fromStdString(text.substr(0, text.find_first_of("\r\n"))).trimmed();
    }

    std::vector<Result> _results;
};

ResultsPanel::ResultsPanel(QWidget* parent)
    : ListPanel(tr("Search Results"), QStringLiteral("results"), Place::bottom, parent),
      _model(new ResultsModel(this)) {
    list().setModel(_model);
    list().setRootIsDecorated(false);
    list().setColumnWidth(ResultsModel::document, 180);
    list().setColumnWidth(ResultsModel::row, 90);
    filter().hide(); // The bar of the search says what is looked for.
    connect(&list(), &QTreeView::activated, this, &ResultsPanel::choose);
    _looking.setInterval(0);
    connect(&_looking, &QTimer::timeout, this, &ResultsPanel::lookOn);
}

void ResultsPanel::search(const SearchOptions& options, const QList<DocumentView*>& views) {
    for (const QPointer<DocumentView>& each : std::as_const(_waiting)) {
        if (each != nullptr)
            disconnect(&each->editor(), nullptr, this, nullptr);
    }
    _model->clear();
    _search = std::make_shared<TextSearch>(options);
    _waiting.clear();
    for (DocumentView* view : views) {
        _waiting.append(view);
        disconnect(&view->editor(), nullptr, this, nullptr);
        connect(&view->editor(), &TextControl::willInsert, this,
                [this, view](size_t at, size_t length) { _model->inserted(view, at, length); });
        connect(&view->editor(), &TextControl::willDelete, this,
                [this, view](size_t start, size_t end) { _model->removed(view, start, end); });
    }
    _from = 0;
    _piece = usualPiece;
    open();
    _looking.start();
    lookOn();
}

// A text that changes meanwhile is looked through up to its end all the same.
void ResultsPanel::lookOn() {
    constexpr int most = 10; // ms
    QElapsedTimer clock;
    clock.start();
    std::vector<ResultsModel::Result> found;
    try {
        while (!_waiting.isEmpty() && clock.elapsed() < most && _model->results().size() + found.size() < mostResults) {
            DocumentView* view = _waiting.first();
            const std::string_view text = view == nullptr ? std::string_view() : view->text();
            const size_t before = _from = std::min(_from, text.size());
            const auto match = _search->nextUpTo(text, _from, before + std::min(_piece, text.size() - before));
            _piece = match || _from != before ? usualPiece : _piece * 2;
            if (match) {
                found.push_back({view, match->start, match->end});
                _from = std::max(match->start + 1, match->end);
            }
            if (_from > text.size() || (!match && _from >= text.size())) {
                _waiting.removeFirst();
                _from = 0;
                _piece = usualPiece;
            }
        }
    } catch (const SearchError&) { // takes too long in this document
        _waiting.removeFirst();
        _from = 0;
    }
    const bool wasEmpty = _model->results().empty();
    _model->add(found);
    if (wasEmpty && !found.empty())
        list().setCurrentIndex(_model->index(0, 0));
    const bool isDone = _waiting.isEmpty() || _model->results().size() >= mostResults;
    if (isDone)
        _looking.stop();
    showWords(isDone);
}

void ResultsPanel::showWords(bool isDone) {
    const QString pattern = QString::fromStdString(_search->options().pattern);
    const size_t count = _model->results().size();
    if (!isDone)
        words().setText(tr("Looking for %1: %2 so far").arg(pattern).arg(count));
    else if (count >= mostResults)
        words().setText(tr("%1: the first %2 matches").arg(pattern).arg(count));
    else
        words().setText(count == 1 ? tr("%1: 1 match").arg(pattern) : tr("%1: %2 matches").arg(pattern).arg(count));
}

void ResultsPanel::choose(const QModelIndex& index) {
    if (!index.isValid())
        return;
    const ResultsModel::Result& result = _model->results()[static_cast<size_t>(index.row())];
    if (result.view != nullptr)
        Q_EMIT chosen(result.view, result.start, result.end);
}

} // namespace zelk
