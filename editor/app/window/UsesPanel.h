// Where a character is defined and used, in a list that leads there.
#pragma once

#include <QAbstractTableModel>
#include <QDockWidget>
#include <QPointer>

#include "CharacterIndex.h"
#include "DocumentView.h"

class QLabel;
class QTreeView;

namespace zelk {

class UsesModel;

/// Looks again after each change of the text, while it can be seen.
class UsesPanel : public QDockWidget {
    Q_OBJECT
public:
    explicit UsesPanel(QWidget* parent = nullptr);

    /// Shows the list of one character of a document and gives it the keyboard.
    void showUses(DocumentView& view, uint16_t id);
    /// Another document is the current one; null for none. The list becomes empty.
    void showDocument(DocumentView* view);

    QTreeView& list() { return *_list; }
    QString words() const;

Q_SIGNALS:
    /// The user is done here.
    void left();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void look();
    void choose(const QModelIndex& index);

    QPointer<DocumentView> _view;
    uint16_t _id = 0;
    UsesModel* _model;
    QLabel* _words;
    QTreeView* _list;
};

} // namespace zelk
