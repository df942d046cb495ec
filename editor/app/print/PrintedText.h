// A text, line by line, as it is put on paper.
#pragma once

#include <QString>

#include <optional>
#include <string_view>
#include <vector>

#include "SwfSyntaxHighlighter.h"

namespace zelk {

/// Characters of one colour. Broken UTF-8 shows as replacement characters.
struct PrintedRun {
    QString text;
    SwfSyntaxHighlighter::Class colour = SwfSyntaxHighlighter::Other;
};

struct PrintedLine {
    size_t number = 0; ///< from 1, in the whole text
    std::vector<PrintedRun> runs;
};

/// [any thread] Data of a movie that fills lines is shortened to its first characters and its length; tabs become
/// blanks.
class PrintedText {
public:
    /// Of a text the bytes from `start` to before `end`, which have to begin and end a line.
    PrintedText(std::string_view text, size_t start, size_t end);

    /// None behind the last line.
    std::optional<PrintedLine> next();
    /// From 0 to 1.
    double progress() const;
    size_t lastNumber() const { return _lastNumber; }

private:
    std::string_view _text; // of the part
    size_t _position = 0, _number = 0, _lastNumber = 0;
    bool _isInString = false;
};

} // namespace zelk
