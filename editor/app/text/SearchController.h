// Find and replace in the text that is shown, with one pair of dialogs for all documents.
#pragma once

#include <QObject>
#include <QPointer>

#include "FindDlg.h"
#include "ReplaceDlg.h"
#include "TextEditorView.h"

namespace zelk {

class SearchController : public QObject {
    Q_OBJECT
public:
    explicit SearchController(QWidget* window);

    /// Null when no document is open.
    void setTarget(TextEditorView* view) { _view = view; }

    void openFind();
    void openReplace();
    /// Without a dialog: what was searched for last; the selection when there was nothing yet.
    void findNext() { findAgain(false); }
    void findPrevious() { findAgain(true); }

Q_SIGNALS:
    void resultShown(const QString& text);

private:
    void search(FindDlg& dialog);
    void count(FindDlg& dialog);
    void replace();
    void replaceAll();
    void findAgain(bool up);
    void find(bool up, bool wraps);
    std::optional<TextMatch> findFrom(bool up, bool wraps, bool& wrapped) const;
    /// False when there is nothing to search with: the reason is shown.
    bool prepare(FindDlg& dialog);
    void show(const QString& text, bool isFailure = false);
    QString countText(const TextSearch::Count& count) const;

    QPointer<TextEditorView> _view;
    FindDlg* _find;
    ReplaceDlg* _replace;
    std::optional<TextSearch> _search;
};

} // namespace zelk
