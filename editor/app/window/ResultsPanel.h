// What was found in all open documents, in a list that leads there.
#pragma once

#include <QDockWidget>
#include <QPointer>
#include <QTimer>

#include "DocumentView.h"

class QLabel;
class QTreeView;

namespace zelk {

class ResultsModel;

class ResultsPanel : public QDockWidget {
    Q_OBJECT
public:
    explicit ResultsPanel(QWidget* parent = nullptr);

    /// Looks through the documents, a little between any two events, and shows what it finds.
    void search(const SearchOptions& options, const QList<DocumentView*>& views);

    /// Shows the list with the keyboard in it; hides it when it has that already.
    void toggle();

    QTreeView& list() { return *_list; }
    /// How many there are, and of what.
    QString words() const;

Q_SIGNALS:
    void chosen(zelk::DocumentView* view, size_t start, size_t end);
    /// The user is done here.
    void left();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void lookOn();
    void showWords(bool isDone);
    void choose(const QModelIndex& index);

    ResultsModel* _model;
    QLabel* _words;
    QTreeView* _list;
    QTimer _looking;
    std::shared_ptr<const TextSearch> _search;
    QList<QPointer<DocumentView>> _waiting; // the first one is being looked through
    size_t _from = 0, _piece = 0;
};

} // namespace zelk
