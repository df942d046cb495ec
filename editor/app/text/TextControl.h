// The editing control, holding bytes.
#pragma once

#include <Qsci/qsciscintillabase.h>

#include <functional>
#include <string>
#include <string_view>

#include "QuoteMap.h"
#include "Session.h"
#include "TextDocument.h"

namespace zelk {

/// The control keeps every byte as it is: no conversion of line ends, broken UTF-8 included. Only NUL may not be in a
/// text.
class TextControl : public QsciScintillaBase {
    Q_OBJECT
public:
    explicit TextControl(QWidget* parent = nullptr);

    /// Smaller texts are there, and changed, before anyone waits: bytes.
    static constexpr size_t bigSize = 8 << 20;

    /// Replaces everything. No undo step; the new text counts as saved. Its memory goes as the control takes it in.
    /// A big text is taken in beside a loop of its own, so that the window goes on painting; what the user does
    /// meanwhile waits, and until it returns the text is still the one before. Throws std::bad_alloc.
    void setBytes(std::string bytes);
    /// Valid until the next change.
    std::string_view bytes() const;
    std::string_view bytes(size_t start, size_t end) const { return bytes().substr(start, end - start); }
    /// At a cost that does not grow with the rest of the text, even between edits.
    std::string copyOf(size_t start, size_t end) const;
    /// What ends a new line.
    std::string lineEnd() const;
    /// What a line is indented by for each level.
    std::string indentUnit() const;
    /// One undo step.
    void replaceBytes(size_t start, size_t end, std::string_view bytes);
    /// Ascending and apart from each other. One undo step. Big ones are made in a loop, as that of setBytes; edited()
    /// comes when all are made. Those that change much of a big text show another document: folds are open then.
    void replaceAll(std::span<const TextChange> changes);
    bool isModified() const { return _saved != _shown || send(SCI_GETMODIFY) != 0; }
    void setSavePoint();
    bool canUndo() const { return _shown > 0 || send(SCI_CANUNDO) != 0; }
    bool canRedo() const { return hasNext() || send(SCI_CANREDO) != 0; }
    void undo();
    void redo();
    /// Another number after every change.
    uint64_t changeCount() const { return _changeCount; }

    /// The format in which texts keep their bytes on the clipboard, also those that are no UTF-8.
    static constexpr const char* bytesFormat = "application/x-zelk-text";
    /// Puts in what the clipboard holds with its bytes and line ends.
    void pasteBytes();

    QuoteMap::State quoteStateAt(size_t position) { return _quotes.at(bytes(), position); }
    void setStyles(size_t start, const std::string& styles);

    long send(unsigned message, long wParam = 0, long lParam = 0) const {
        return SendScintilla(message, static_cast<unsigned long>(wParam), lParam);
    }

Q_SIGNALS:
    /// Before each change, but for those of setBytes.
    void willInsert(size_t at, size_t length);
    void willDelete(size_t start, size_t end);
    /// After changes, once for all that were made before the window got to run again.
    void edited();
    /// It is another one, with nothing of what documents keep for themselves.
    void documentShown();

protected:
    bool canInsertFromMimeData(const QMimeData* source) const override;
    QByteArray fromMimeData(const QMimeData* source, bool& rectangular) const override;
    QMimeData* toMimeData(const QByteArray& text, bool rectangular) const override;
    void dropEvent(QDropEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    /// A change that led to another version of the text: bytes of the one before.
    struct Moved {
        uint32_t start, removed, added;
    };
    /// What a big change led to, or began with. The control would take long for it, and longer to undo it.
    struct Version {
        TextDocument document = {}; // of those not shown; so is the rest
        QuoteMap quotes = {};
        long caret = -1; // as long as it was not shown
        std::vector<Moved> toNext = {};
        size_t undone = 0; // steps since it led to the next one; the control may know of older ones to redo
    };

    void setUpDocument();
    void queueEdited();
    void willChange(int position, int type, int length);
    bool isBig(std::span<const TextChange> changes) const;
    void addVersion(std::span<const TextChange> changes);
    void showVersion(size_t version);
    bool hasNext() const { return _shown + 1 < _versions.size(); }
    void forgetNext();
    void tellMoved(const std::vector<Moved>& moved, bool isBack);
    static std::vector<size_t> movedPlaces(const std::vector<Moved>& moved, std::vector<size_t> places);
    std::vector<size_t> markedPlaces() const;
    bool insertFrom(const QMimeData* source);
    void moveOrCopyTo(size_t place, std::string_view bytes, bool isMove);

    QuoteMap _quotes;
    std::vector<Version> _versions{1};
    size_t _shown = 0, _saved = 0; // of them
    uint64_t _changeCount = 0;
    bool _isEditedQueued = false, _isReplacingAll = false;
};

} // namespace zelk
