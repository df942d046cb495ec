// Offers the documents of a run that ended without closing them.
#pragma once

#include <QDialog>
#include <functional>

#include "RecoverySession.h"

class QTreeWidget;

namespace zelk {

class TextEditorView;

class RecoveryDialog : public QDialog {
    Q_OBJECT
public:
    enum class Choice { later, recover, discard };
    /// The text of a document, by its place in the list.
    using Texts = std::function<std::string(size_t)>;

    RecoveryDialog(const std::vector<KeptDocument>& documents, Texts texts, QWidget* parent);

    /// Asks. `later` when the dialog is closed.
    Choice ask();
    /// The documents that the choice is for.
    std::vector<size_t> selected() const;

private:
    void addRow(const KeptDocument& document);
    void addButton(const QString& text, const char* tip, std::function<void()> work);
    void choose(Choice choice);
    bool isSureToDiscard();
    void look();

    Texts _texts;
    QTreeWidget* _list;
    TextEditorView* _text;
    Choice _choice = Choice::later;
};

} // namespace zelk
