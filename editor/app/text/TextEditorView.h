// Shows and edits the XML text of one document.
#pragma once

#include <QElapsedTimer>

#include <array>
#include <unordered_map>

#include "ElementInsertion.h"
#include "JumpHistory.h"
#include "SwfSyntaxHighlighter.h"
#include "TextControl.h"
#include "TextEditorAutocomplete.h"
#include "TextSearch.h"
#include "TextTyping.h"

class QFont;

namespace zelk {

class TextEditorView : public TextControl {
    Q_OBJECT
public:
    explicit TextEditorView(QWidget* parent = nullptr);

    /// Replaces everything. No undo step; the new text counts as saved.
    void setText(std::string bytes);
    /// Valid until the next change.
    std::string_view text() const { return bytes(); }

    /// How texts are shown. An empty family and a size of 0 are the system's.
    struct Look {
        QString family = {};
        int size = 0, tabWidth = 4; ///< of type in points; of a level of indentation in columns
        bool wraps = false;
        bool operator==(const Look&) const = default;
    };
    void setTextLook(const Look& look);
    /// Not in a text of more than 32 MB, or with a line of more than 128 KB: it stays as it is.
    bool canWrap() const;
    /// The grounds that text stands on: the usual one, that of the caret's line, that of what is selected.
    static std::array<QRgb, 3> grounds(bool isDark);
    /// What selected text of a class has. On light ground that is one colour for all: theirs could not be read.
    static QRgb selectedColour(bool isDark, int style);

    bool hasSelection() const { return send(SCI_GETSELECTIONEMPTY) == 0; }
    TextMatch selection() const;
    std::string selectedText() const;
    /// One undo step; the caret stands behind the new text.
    void replaceSelection(std::string_view bytes);
    void select(const TextMatch& range);

    /// Marks what is found of it on the screen; null marks nothing.
    void markMatches(std::shared_ptr<const TextSearch> search);

    void toggleBookmark();
    void nextBookmark() { gotoBookmark(false); }
    void previousBookmark() { gotoBookmark(true); }

    /// Rows and columns count from 1; columns count characters.
    uint32_t row() const;
    uint32_t column() const;
    /// Offset of the caret.
    size_t caret() const { return static_cast<size_t>(send(SCI_GETCURRENTPOS)); }
    /// Puts the caret there and shows it.
    void gotoOffset(size_t offset);
    /// The row of a place in the text.
    uint32_t rowOf(size_t offset) const {
        return static_cast<uint32_t>(send(SCI_LINEFROMPOSITION, static_cast<long>(offset))) + 1;
    }
    /// The same, remembered: jumpBack leads to where the caret is now.
    void jumpTo(size_t offset);
    /// Jumps to where the branch, constant, name or id at the caret leads, or says why it cannot.
    void followCaret();
    /// Jumps to the tag that defines a character, or says that there is none.
    void gotoDefinition(uint16_t id);
    void jumpBack();
    void jumpForward();
    uint32_t rowCount() const { return static_cast<uint32_t>(send(SCI_GETLINECOUNT)); }
    /// The nearest place that there is. Shows it even if it was folded away.
    void gotoPlace(uint32_t row, uint32_t column);

    void cut() { send(SCI_CUT); }
    void copy() { send(SCI_COPY); }
    void paste() { pasteBytes(); }
    void clear() { send(SCI_CLEAR); }
    void cutAll();
    void copyAll();
    void selectAll() { send(SCI_SELECTALL); }
    void zoomIn() { send(SCI_ZOOMIN); }
    void zoomOut() { send(SCI_ZOOMOUT); }
    void zoomReset() { send(SCI_SETZOOM, 0); }
    void duplicateLines() { _typing.duplicateLines(); }
    void moveLinesUp() { _typing.moveLines(true); }
    void moveLinesDown() { _typing.moveLines(false); }
    void toggleFold();
    void foldAll();
    void unfoldAll();
    /// Asks for a colour and puts it, as attributes have it, in place of the selection.
    void insertColorAsHex();
    /// The form of a text that does not tell it: a part of a movie.
    void setForm(bool fullForm) { _autocomplete->setForm(fullForm); }
    /// Shows what may be typed at the caret.
    void complete() { _autocomplete->show(); }
    /// Ask for a new element and put it where it may stand, at the caret or behind what the caret is in.
    void insertNewTag() { insertElement(ElementKind::tag); }
    void insertNewAction() { insertElement(ElementKind::action); }
    void insertNewStruct() { insertElement(ElementKind::structure); }

Q_SIGNALS:
    void modificationChanged(bool isModified);
    /// A jump came to an end, maybe a while after it was asked for.
    void jumped();
    /// The caret or the selection is somewhere else.
    void placeChanged();
    void contextMenuAsked(const QPoint& globalPos);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void setLook();
    void setColors();
    void reveal(size_t offset);
    void noteMove();
    void setKeys();
    void setMargins();
    void fitNumbers();
    void setIndicators();
    /// The first and the last.
    std::pair<long, long> linesOnScreen() const;
    /// Calls it with the first and last line of each run of lines on the screen.
    void forVisible(const std::function<void(long first, long last)>& act) const;
    void styleVisible();
    void markVisibleMatches();
    void gotoBookmark(bool up);
    void styleLines(long first, long last);
    void styleLongLine(long line);
    void markTags();
    void markTarget();
    void toggleFoldAt(long line);
    void say(const QString& reason);
    void insertElement(ElementKind kind);

    struct StyledLine {
        size_t start = 0, caret = 0;
        uint64_t change = UINT64_MAX;
        bool operator==(const StyledLine&) const = default;
    };

    SwfSyntaxHighlighter _highlighter;
    Look _look;
    size_t _lastCaret = 0;
    QElapsedTimer _stays;                            // the caret, where it was last
    std::unordered_map<long, StyledLine> _longLines; // by line
    TextTyping _typing{*this};
    JumpHistory _jumps;
    std::shared_ptr<const TextSearch> _marked;
    TextEditorAutocomplete* _autocomplete;
    std::pair<long, long> _styled{-1, -1}; // lines
    size_t _digits = 0;                    // that line numbers have room for
};

} // namespace zelk
