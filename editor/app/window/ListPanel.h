// What the panes with a list have in common: a line of words, a filter, and their keys.
#pragma once

#include "Pane.h"

class QBoxLayout;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QModelIndex;
class QTreeView;

namespace zelk {

/// Escape empties the filter before it closes the pane; Down and Return go from the filter to the list; Find goes to
/// the filter.
class ListPanel : public Pane {
    Q_OBJECT
public:
    QTreeView& list() const { return *_list; }
    QLineEdit& filter() const { return *_filter; }
    QLabel& words() const { return *_words; }

    /// Shows it and gives the list the keyboard.
    void open() override;
    /// Carries out a command of the table that means this list while it has the keyboard: Find, and Copy (a line for
    /// each selected row) and Select All where rows are copied. False for one that does not.
    bool run(int id);

protected:
    /// Beside the text, or below or beside it.
    enum class Place : uint8_t { side, bottom };
    /// `name` is remembered with the places of the panes.
    ListPanel(const QString& title, const QString& name, Place place, QWidget* parent);

    /// Where the filter stands.
    QBoxLayout& top() { return *_top; }
    /// It becomes visible.
    virtual void look() {}
    /// The line that a row is copied as; none where rows are not copied.
    virtual QString lineOf(const QModelIndex&) const { return {}; }
    /// Before the keys that all panes have. True when it is done.
    virtual bool takeKey(QObject* /*watched*/, QKeyEvent&) { return false; }
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool copy() const;
    void enterList();

    QLineEdit* _filter;
    QLabel* _words;
    QTreeView* _list;
    QBoxLayout* _top;
};

} // namespace zelk
