// The tabs of the open documents.
#pragma once

#include <QTabWidget>

#include "DocumentView.h"

namespace zelk {

class DocumentTabsView : public QTabWidget {
    Q_OBJECT
public:
    explicit DocumentTabsView(QWidget* parent = nullptr);

    void add(DocumentView* view);
    void remove(DocumentView* view);
    /// Null when no document is open.
    DocumentView* current() const;
    DocumentView* at(int index) const;
    std::vector<DocumentView*> all() const;
    /// By plus or minus one, around the ends.
    void step(int by);

Q_SIGNALS:
    void closeAsked(DocumentView* view);
    void menuAsked(const QPoint& globalPos);
    /// Of the current document, or another document became the current one.
    void stateChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showTitle(DocumentView* view);
};

} // namespace zelk
