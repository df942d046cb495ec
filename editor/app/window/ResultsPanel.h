// What was found in all open documents, in a list that leads there.
#pragma once

#include <QPointer>
#include <QTimer>

#include "DocumentView.h"
#include "ListPanel.h"

namespace zelk {

class ResultsModel;

class ResultsPanel : public ListPanel {
    Q_OBJECT
public:
    explicit ResultsPanel(QWidget* parent = nullptr);

    /// Looks through the documents, a little between any two events, and shows what it finds.
    void search(const SearchOptions& options, const QList<DocumentView*>& views);

Q_SIGNALS:
    void chosen(zelk::DocumentView* view, size_t start, size_t end);

private:
    void lookOn();
    void showWords(bool isDone);
    void choose(const QModelIndex& index);

    ResultsModel* _model;
    QTimer _looking;
    std::shared_ptr<const TextSearch> _search;
    QList<QPointer<DocumentView>> _waiting; // the first one is being looked through
    size_t _from = 0, _piece = 0;
};

} // namespace zelk
