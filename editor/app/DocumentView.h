// One open document in its tab.
#pragma once

#include <QWidget>

#include "Session.h"
#include "text/TextEditorView.h"

namespace zelk {

class DocumentView : public QWidget, public ITextView {
    Q_OBJECT
public:
    explicit DocumentView(QWidget* parent = nullptr);

    Document& document() { return _document; }
    const Document& document() const { return _document; }
    TextEditorView& editor() { return *_editor; }

    /// Full path, or the made-up name.
    QString fileName() const { return QString::fromStdString(_document.fileName); }
    /// The name without its folder, with "*" behind it when it is modified.
    QString title() const;

    void setText(std::string bytes) override;
    std::string_view text() override { return _editor->text(); }
    void replace(size_t start, size_t end, std::string_view bytes) override {
        _editor->replaceBytes(start, end, bytes);
    }
    void setSavePoint() override { _editor->setSavePoint(); }
    void gotoPlace(uint32_t row, uint32_t column) override;
    uint32_t row() const override { return _editor->row(); }
    uint32_t rowCount() const override { return _editor->rowCount(); }

Q_SIGNALS:
    /// Whether it is modified, selected text, what can be undone, where the caret is.
    void stateChanged();

private:
    Document _document;
    TextEditorView* _editor;
};

} // namespace zelk
