// Where a character is defined and used, in a list that leads there.
#pragma once

#include <QAbstractTableModel>
#include <QPointer>

#include "CharacterIndex.h"
#include "DocumentView.h"
#include "ListPanel.h"

namespace zelk {

class UsesModel;

/// Looks again after each change of the text, while it can be seen.
class UsesPanel : public ListPanel {
    Q_OBJECT
public:
    explicit UsesPanel(QWidget* parent = nullptr);

    /// Shows the list of one character of a document and gives it the keyboard.
    void showUses(DocumentView& view, uint16_t id);
    /// Another document is the current one; null for none. The list becomes empty.
    void showDocument(DocumentView* view);

private:
    void lookAgain();
    void choose(const QModelIndex& index);

    QPointer<DocumentView> _view;
    uint16_t _id = 0;
    UsesModel* _model;
};

} // namespace zelk
