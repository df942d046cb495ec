// What commands ask of a document's text view and of the clipboard.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zelk {

/// A range of a text, in bytes, and what shall stand in its place.
struct TextChange {
    size_t start, end;
    std::string text;
};

/// The text of a document where it is edited.
class ITextView {
public:
    virtual ~ITextView() = default;

    virtual void setText(std::string bytes) = 0;
    /// Valid until the text changes.
    virtual std::string_view text() = 0;
    /// One step of undo.
    virtual void replace(size_t start, size_t end, std::string_view bytes) = 0;
    /// What stands there now is what the file holds.
    virtual void setSavePoint() = 0;
    /// Row and column count from 1, the column in characters.
    virtual void gotoPlace(uint32_t row, uint32_t column) = 0;
    virtual uint32_t row() const = 0;
    virtual uint32_t rowCount() const = 0;
};

/// A text that commands change. It has one history, which the user goes through in the text view as well.
class IEditableText : public ITextView {
public:
    /// Makes all of them as one step of undo. Ascending; none overlaps another.
    virtual void replaceAll(std::span<const TextChange> changes) = 0;
    /// Takes the last step back, whoever made it. False when there is none.
    virtual bool undo() = 0;
    virtual bool redo() = 0;
    /// Another number after every change, undo and redo included.
    virtual uint64_t changeCount() const = 0;
};

/// Where tags are on their way between documents and programs.
class IClipboard {
public:
    virtual ~IClipboard() = default;
    /// XML elements, UTF-8, as tags of a text in this form and as plain text. False when it cannot be done.
    virtual bool setTags(const std::string& elements, bool fullForm) = 0;
    /// What setTags put there, if it is what stands there.
    virtual std::optional<std::string> tags() = 0;
    /// Whether these came from a text in the full form.
    virtual bool tagsAreFull() = 0;
    /// With its bytes when a text view put it there.
    virtual std::string plainText() = 0;
};

} // namespace zelk
