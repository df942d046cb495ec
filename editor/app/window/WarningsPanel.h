// The warnings of the current document that are still true, in a list that leads to their places.
#pragma once

#include <QPointer>

#include "DocumentView.h"
#include "ListPanel.h"

namespace zelk {

class WarningsModel;

class WarningsPanel : public ListPanel {
    Q_OBJECT
public:
    explicit WarningsPanel(QWidget* parent = nullptr);

    /// Shows what is true of a document now; null for none. Rows follow its edits by themselves.
    void showDocument(DocumentView* view);
Q_SIGNALS:
    /// One of the current document.
    void chosen(WarningList::Entry entry);

protected:
    void look() override { refresh(); }
    QString lineOf(const QModelIndex& index) const override;

private:
    void refresh();
    void choose(const QModelIndex& index);
    std::vector<WarningList::Entry> openGroups() const;
    void showCounts();

    QPointer<DocumentView> _view;
    QMetaObject::Connection _edits;
    WarningsModel* _model;
};

} // namespace zelk
