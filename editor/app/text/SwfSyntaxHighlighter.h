// Colours a movie's XML: quoted strings, and names of elements by the kind of element.
#pragma once

#include <QRgb>

#include <map>
#include <string>
#include <string_view>

#include "ISyntaxHighlighter.h"
#include "ITextBuffer.h"

namespace zelk {

class SwfSyntaxHighlighter : public ISyntaxHighlighter {
public:
    enum Class {
        EndOfText = -1, // or a NUL, behind which nothing is coloured
        Other,          // a character that is none of the below, tab and line break too
        Word,
        String, // with its quotes
        Less,
        Greater,
        Slash,
        Equals,
        Structure, // words that are names of elements: coloured behind "<" and "/" only
        Action,
        Tag,
        Field,
        CodeAttribute // words that are attributes of code: coloured before "=" only
    };

    /// The colour of every class that has one, on white or on a dark ground. All the rest is black, or nearly white.
    static const std::map<int, QRgb>& colours(bool onDark = false);
    /// Reads one token.
    static Class readToken(ITextBuffer& buffer);
    /// For each byte the class that it is coloured in, `Other` where it stays black. `startsInString`: a quoted string
    /// is open where the text starts.
    static std::string classesOf(std::string_view text, bool startsInString);

    void highlight(TextControl& control, size_t start, size_t end) override;
};

} // namespace zelk
