// The warnings of the current document that are still true, in a list that leads to their places.
#pragma once

#include <QDockWidget>
#include <QPointer>

#include "DocumentView.h"

class QLabel;
class QLineEdit;
class QTreeView;

namespace zelk {

class WarningsModel;

class WarningsPanel : public QDockWidget {
    Q_OBJECT
public:
    explicit WarningsPanel(QWidget* parent = nullptr);

    /// Shows what is true of a document now; null for none. Rows follow its edits by themselves.
    void showDocument(DocumentView* view);
    /// Shows the list and gives it the keyboard.
    void open();
    /// Opens or closes it.
    void toggle();
    /// Carries out a command of the table that means this list while it has the keyboard: Copy puts the selected
    /// warnings on the clipboard, a line each. False for one that does not.
    bool run(int id);

    QTreeView& list() { return *_list; }
    QLineEdit& filter() { return *_filter; }

Q_SIGNALS:
    /// One of the current document.
    void chosen(WarningList::Entry entry);
    /// The user is done here.
    void left();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildLayout();
    void refresh();
    void openFilter();
    void copy() const;
    bool handleKey(QObject* watched, int key);
    void choose(const QModelIndex& index);
    std::vector<WarningList::Entry> openGroups() const;
    void showCounts();

    QPointer<DocumentView> _view;
    QMetaObject::Connection _edits;
    WarningsModel* _model;
    QLineEdit* _filter;
    QLabel* _counts;
    QTreeView* _list;
};

} // namespace zelk
