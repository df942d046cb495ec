// The texts that people read in the current document, in a list that leads to their tags and in which they are edited.
#pragma once

#include <QDockWidget>
#include <QPointer>
#include <QTimer>

#include "DocumentTexts.h"
#include "DocumentView.h"

class QLabel;
class QLineEdit;
class QTreeView;

namespace zelk {

class TextsModel;

class TextsPanel : public QDockWidget {
    Q_OBJECT
public:
    explicit TextsPanel(QWidget* parent = nullptr);

    /// Shows those of a document; null for none. The list follows its edits after a moment.
    void showDocument(DocumentView* view);
    /// Shows the list and gives it the keyboard, or closes it.
    void toggle();
    /// Carries out a command of the table that means this list while it has the keyboard. False for one that does not.
    bool run(int id);

    QTreeView& list() { return *_list; }
    QLineEdit& filter() { return *_filter; }
    QLabel& message() { return *_message; }

Q_SIGNALS:
    /// A tag of the current document. `staysInList`: the list keeps the keyboard.
    void chosen(size_t offset, bool staysInList);
    /// The user is done here.
    void left();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildLayout();
    void read();
    void take(uint64_t change, std::vector<DocumentText> texts, const QString& problem);
    void change(const DocumentText& which, const QString& text);
    void finishChange(uint64_t change, const TextChange& edit, const QString& problem);
    void choose(const QModelIndex& index, bool staysInList);
    void copy() const;
    bool handleKey(QObject* watched, int key);
    void showCount();

    QPointer<DocumentView> _view;
    QMetaObject::Connection _edits;
    TextsModel* _model;
    QLineEdit* _filter;
    QLabel* _message;
    QTreeView* _list;
    QTimer _later; // after an edit
    bool _isReading = false;
    QPointer<DocumentView> _readView; // whose texts are in the list
    uint64_t _readChange = 0;
};

} // namespace zelk
