// One open document in its tab.
#pragma once

#include <QWidget>

#include "CharacterText.h"
#include "DocumentViewList.h"
#include "TextEditorView.h"

class QStackedWidget;

namespace zelk {

class NoticeBar;

class DocumentView : public QWidget, public IEditableText {
    Q_OBJECT
public:
    explicit DocumentView(QWidget* parent = nullptr);

    Document& document() { return _document; }
    const Document& document() const { return _document; }
    TextEditorView& editor() { return *_editor; }
    DocumentViewList& list() { return *_list; }
    TaggedText& tags() { return _tags; }

    /// As of the last warningsChanged.
    const WarningList& warnings() const { return _document.warnings; }
    /// The row of a place in the text, from 1.
    uint32_t rowOf(size_t offset) const { return _editor->rowOf(offset); }
    /// Shows the place of a warning. In the tag list, selects the tag there.
    void gotoWarning(WarningList::Entry entry);

    bool showsList() const;
    /// Shows the tag list with the tag at the caret selected. Throws XmlException and stays with the text when that is
    /// not well-formed.
    void showList();
    /// Start and end of the list's current tag in the text. None while the text is shown.
    std::optional<std::pair<size_t, size_t>> listedTag();
    /// What the Unknown tag is that the list is at, or else the caret; empty where it is at none.
    QString unknownTag();
    /// What is to be said of the character that the list's current tag, or the tag at the caret, is about; empty for
    /// none.
    QString characterWords();
    /// The id that is meant there.
    std::optional<IdAtPlace> characterId();
    /// Shows where that is defined, in the view that is shown.
    void gotoTarget();
    /// Shows a place in the view that is shown, which does not get the keyboard for it.
    void showPlace(size_t offset);
    /// Where that tag starts, or else the selected text.
    size_t place();
    /// Shows the text with the caret at the tag that is selected in the list.
    void showText();
    /// Shows the text there; the text view can go back to where it was.
    void jumpTo(size_t offset);

    /// Full path, or the made-up name.
    QString fileName() const { return QString::fromStdString(_document.fileName); }
    /// The file does not hold what the text was when it was last read or saved: it counts as modified, whatever undo
    /// says, until it is saved.
    void setApart(bool isApart);

    /// A bar above the text. Names tell bars apart.
    NoticeBar* addNotice(const QString& name);
    /// Null when there is none.
    NoticeBar* notice(const QString& name) const;
    void dropNotice(const QString& name);

    /// The name without its folder, with "*" behind it when it is modified.
    QString title() const;

    void setText(std::string bytes) override;
    std::string_view text() override { return _editor->text(); }
    void replace(size_t start, size_t end, std::string_view bytes) override {
        const TextChange change{start, end, std::string(bytes)};
        _editor->replaceAll({&change, 1});
    }
    void setSavePoint() override;
    /// In the tag list, selects the tag there; the text comes up when there is none.
    void gotoPlace(uint32_t row, uint32_t column) override;
    uint32_t row() const override { return _editor->row(); }
    uint32_t rowCount() const override { return _editor->rowCount(); }
    void replaceAll(std::span<const TextChange> changes) override { _editor->replaceAll(changes); }
    bool undo() override;
    bool redo() override;
    uint64_t changeCount() const override { return _editor->changeCount(); }

Q_SIGNALS:
    /// Whether it is modified, selected text, what can be undone, where the caret is.
    void stateChanged();
    /// What `listedTag` gives, or the text there.
    void currentTagChanged();
    /// Others are true now, be it by edits or by a conversion.
    void warningsChanged();

private:
    void followEdits();
    uint32_t tagAtCaret();
    void showCaret();
    void showView(QWidget* view);
    void showModified();

    Document _document;
    TextEditorView* _editor;
    TaggedText _tags{*this};
    DocumentViewList* _list;
    QStackedWidget* _views;
    bool _isApart = false;
    // Where the views stood when the other one came up: what was not moved since stays as it is.
    size_t _leftCaret = SIZE_MAX;
    uint32_t _leftTag = TagIndex::movie;
    std::optional<size_t> _leftCode;
};

} // namespace zelk
