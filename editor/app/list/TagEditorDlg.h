// Edits the XML of one tag.
#pragma once

#include <QDialog>

#include "Session.h"
#include "SwfWarnings.h"
#include "TaggedText.h"
#include "TextEditorView.h"

namespace zelk {

class TagEditorDlg : public QDialog, public ITagEditor {
    Q_OBJECT
public:
    /// Edits tags of this document, in whose fonts texts are written.
    TagEditorDlg(QWidget* parent, TaggedText& document);

    std::optional<std::string> editTag(const std::string& element, MovieLayout layout) override;
    TextEditorView& editor() { return *_editor; }

public Q_SLOTS:
    /// Stays open, with the caret at the place, when the text is not one tag that compiles. Asks when compiling would
    /// leave something out.
    void accept() override;
    /// Asks before changes are given up.
    void reject() override;

private:
    void addEditActions();
    bool confirms(const libswf::SwfWarnings& warnings);

    TaggedText& _document;
    TextEditorView* _editor;
    MovieLayout _layout;
};

} // namespace zelk
