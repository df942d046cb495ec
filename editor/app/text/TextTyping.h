// What keys do to a text of XML besides putting in their characters.
#pragma once

#include <string>

class QKeyEvent;

namespace zelk {

class TextControl;

/// Each does one step of undo.
class TextTyping {
public:
    explicit TextTyping(TextControl& control) : _control(control) {}

    /// Whether this is all that the key does.
    bool press(const QKeyEvent& event);
    /// What follows from a character that was typed.
    void typed(int character);

    /// The lines that the selection touches, or that of the caret.
    void duplicateLines();
    void moveLines(bool up);
    void indentLines(bool deeper);

private:
    void startLine();
    bool stepOver(char quote);
    void closeElement();

    size_t selectionStart() const;
    size_t selectionEnd() const;
    /// The first and the last of the lines that the selection touches.
    std::pair<long, long> lines() const;
    std::string indentationOf(size_t place) const;

    TextControl& _control;
};

} // namespace zelk
