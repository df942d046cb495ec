// The editing control, holding bytes.
#pragma once

#include <Qsci/qsciscintillabase.h>

#include <functional>
#include <string>
#include <string_view>

#include "QuoteMap.h"
#include "Session.h"

namespace zelk {

/// The control keeps every byte as it is: no conversion of line ends, broken UTF-8 included. Only NUL may not be in a
/// text.
class TextControl : public QsciScintillaBase {
    Q_OBJECT
public:
    explicit TextControl(QWidget* parent = nullptr);

    /// Replaces everything. No undo step; the new text counts as saved. Its memory goes as the control takes it in.
    /// A big text is taken in piece by piece in a loop of its own, so that the window goes on painting; what the user
    /// does meanwhile waits, and until it returns the text is still the one before.
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
    /// Ascending and apart from each other. One undo step. Big ones are made one after the other in a loop, as those of
    /// setBytes; edited() comes when all are made.
    void replaceAll(std::span<const TextChange> changes);
    /// Another number after every change.
    uint64_t changeCount() const { return _changeCount; }

    /// The format in which texts keep their bytes on the clipboard, also those that are no UTF-8.
    static constexpr const char* bytesFormat = "application/x-zelk-text";
    /// Puts in what the clipboard holds with its bytes and line ends.
    void pasteBytes();

    /// Calls it until it says that it is done, in a loop that lets the window paint, but lets no one use it.
    static void untilDone(const std::function<bool()>& work);
    /// Does something with all of a text of `size` bytes, as setBytes does when it is big.
    static void inTurns(size_t size, const std::function<void(size_t start, size_t size)>& work);

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

protected:
    bool canInsertFromMimeData(const QMimeData* source) const override;
    QByteArray fromMimeData(const QMimeData* source, bool& rectangular) const override;
    QMimeData* toMimeData(const QByteArray& text, bool rectangular) const override;
    void dropEvent(QDropEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void setUpDocument();
    static void takeInto(QsciScintillaBase& taker, std::string& bytes);
    void queueEdited();
    void willChange(int position, int type, int length);
    bool insertFrom(const QMimeData* source);
    void moveOrCopyTo(size_t place, std::string_view bytes, bool isMove);

    QuoteMap _quotes;
    uint64_t _changeCount = 0;
    bool _isEditedQueued = false, _isReplacingAll = false;
};

} // namespace zelk
