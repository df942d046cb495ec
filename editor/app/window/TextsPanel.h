// The texts that people read in the current document, in a list that leads to their tags and in which they are edited.
#pragma once

#include <QPointer>
#include <QTimer>

#include "DocumentTexts.h"
#include "DocumentView.h"
#include "ListPanel.h"

namespace zelk {

class TextsModel;

class TextsPanel : public ListPanel {
    Q_OBJECT
public:
    explicit TextsPanel(QWidget* parent = nullptr);

    /// Shows those of a document; null for none. The list follows its edits after a moment.
    void showDocument(DocumentView* view);
Q_SIGNALS:
    /// A tag of the current document. `staysInList`: the list keeps the keyboard.
    void chosen(size_t offset, bool staysInList);

protected:
    void look() override { read(); }
    QString lineOf(const QModelIndex& index) const override;
    bool takeKey(QObject* watched, QKeyEvent& event) override;

private:
    void read();
    void take(uint64_t change, std::vector<DocumentText> texts, const QString& problem);
    void change(const DocumentText& which, const QString& text);
    void finishChange(uint64_t change, const TextChange& edit, const QString& problem);
    void choose(const QModelIndex& index, bool staysInList);
    void showCount();

    QPointer<DocumentView> _view;
    QMetaObject::Connection _edits;
    TextsModel* _model;
    QTimer _later; // after an edit
    bool _isReading = false;
    QPointer<DocumentView> _readView; // whose texts are in the list
    uint64_t _readChange = 0;
};

} // namespace zelk
