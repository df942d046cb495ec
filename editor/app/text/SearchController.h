// Find and replace in the text that is shown, with one pair of bars for all documents.
#pragma once

#include <QObject>
#include <QPointer>
#include <QSettings>
#include <QTimer>

#include "FindDlg.h"
#include "ReplaceDlg.h"
#include "TextEditorView.h"

namespace zelk {

class SearchController : public QObject {
    Q_OBJECT
public:
    /// What was searched for is remembered in the settings, which outlive it.
    SearchController(QWidget* window, QSettings& settings);

    /// The bars, one of which may be seen: to stand below the text.
    QWidget& bars() { return *_bars; }
    /// Null when no document is open.
    void setTarget(TextEditorView* view);

    void openFind();
    void openReplace();
    /// In all documents, for what the bar says or what is selected; opens the bar when there is nothing.
    void findInAll();
    /// Without a bar: what was searched for last; the selection when there was nothing yet.
    void findNext() { findAgain(false); }
    void findPrevious() { findAgain(true); }

Q_SIGNALS:
    void resultShown(const QString& text);
    /// The text does not have this, which was searched for as it stands.
    void nothingFound(const QString& pattern, bool up);
    /// In all documents; the options are without fault.
    void findInAllAsked(const zelk::SearchOptions& options);
    /// The user is done here.
    void left();

private:
    void connectBar(FindDlg& bar);
    FindDlg* openBar() const;
    void close();
    void search(FindDlg& bar, bool up);
    void count(FindDlg& bar);
    void replace();
    void replaceAll();
    void findAgain(bool up);
    void find(bool up, bool wraps);
    std::optional<TextMatch> findFrom(bool up, bool wraps, bool& wrapped) const;
    /// False when there is nothing to search with: the reason is shown.
    bool prepare(FindDlg& bar);
    void show(const QString& text, bool isFailure = false);

    /// Marks all matches and counts them, as long as a bar is open.
    void markAll();
    void startCount(std::optional<TextMatch> current, const QString& words);
    void countOn(int milliseconds);
    QString countText() const;
    void saveHistory();

    QSettings& _settings;
    QPointer<TextEditorView> _view;
    QWidget* _bars;
    FindDlg* _find;
    ReplaceDlg* _replace;
    std::shared_ptr<const TextSearch> _search;

    // What is being counted, a little between any two events.
    QTimer _counting, _marking;
    TextSearch::Count _count;
    std::optional<TextMatch> _current;
    QString _words;         // with %1 for the count
    uint64_t _counted = 0;  // change of the text
    bool _wantsAll = false; // Return finds what is typed in all documents
};

} // namespace zelk
