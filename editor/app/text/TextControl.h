// The editing control, holding bytes.
#pragma once

#include <Qsci/qsciscintillabase.h>

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
    void setBytes(std::string bytes);
    /// Valid until the next change.
    std::string_view bytes() const;
    std::string_view bytes(size_t start, size_t end) const { return bytes().substr(start, end - start); }
    /// One undo step.
    void replaceBytes(size_t start, size_t end, std::string_view bytes);
    /// Ascending and apart from each other. One undo step.
    void replaceAll(std::span<const TextChange> changes);
    /// Another number after every change.
    uint64_t changeCount() const { return _changeCount; }

    /// What a text view put on the clipboard keeps its bytes; line ends of other texts become those of this one.
    void pasteBytes();

    QuoteMap::State quoteStateAt(size_t position) { return _quotes.at(bytes(), position); }
    void setStyles(size_t start, const std::string& styles);

    long send(unsigned message, long wParam = 0, long lParam = 0) const {
        return SendScintilla(message, static_cast<unsigned long>(wParam), lParam);
    }

Q_SIGNALS:
    /// After changes, once for all that were made before the window got to run again.
    void edited();

protected:
    bool canInsertFromMimeData(const QMimeData* source) const override;
    QByteArray fromMimeData(const QMimeData* source, bool& rectangular) const override;
    QMimeData* toMimeData(const QByteArray& text, bool rectangular) const override;

private:
    void willChange(int position, int type);

    QuoteMap _quotes;
    uint64_t _changeCount = 0;
    bool _isEditedQueued = false;
};

} // namespace zelk
