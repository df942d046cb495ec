#include "TextFolds.h"

#include "TextControl.h"

namespace zelk {

namespace {

using Sci = QsciScintillaBase;

// Whether a tag begins here. Other lines hold text, at any indentation, and belong to the element above them.
bool isContent(const TextControl& control, long line) {
    return control.send(Sci::SCI_GETCHARAT, control.send(Sci::SCI_GETLINEINDENTPOSITION, line)) != '<';
}

// Columns of indentation, whatever the step from one level to the next.
long depth(const TextControl& control, long line) {
    return std::min(control.send(Sci::SCI_GETLINEINDENTATION, line), 1000L);
}

long lineCount(const TextControl& control) { return control.send(Sci::SCI_GETLINECOUNT); }

constexpr long contentFlag = Sci::SC_FOLDLEVELWHITEFLAG;

long contentLevel(const TextControl& control, long line) {
    for (long above = line - 1; above >= 0; --above) {
        if (!isContent(control, above))
            return (Sci::SC_FOLDLEVELBASE + depth(control, above)) | contentFlag;
        const long level = control.send(Sci::SCI_GETFOLDLEVEL, above);
        if ((level & contentFlag) != 0)
            return level;
    }
    return Sci::SC_FOLDLEVELBASE | contentFlag;
}

} // namespace

void setFoldLevel(TextControl& control, long line) {
    long level = Sci::SC_FOLDLEVELBASE + depth(control, line);
    if (isContent(control, line))
        level = contentLevel(control, line);
    else if (line + 1 < lineCount(control) && !isContent(control, line + 1) &&
             depth(control, line + 1) > depth(control, line))
        level |= Sci::SC_FOLDLEVELHEADERFLAG;
    if (control.send(Sci::SCI_GETFOLDLEVEL, line) != level)
        control.send(Sci::SCI_SETFOLDLEVEL, line, level);
}

void setFoldLevelsBelow(TextControl& control, long header) {
    setFoldLevel(control, header);
    const long level = depth(control, header);
    for (long line = header + 1; line < lineCount(control); ++line) {
        setFoldLevel(control, line);
        if (!isContent(control, line) && depth(control, line) <= level)
            return;
    }
}

long foldHeader(TextControl& control, long line) {
    setFoldLevel(control, line);
    if ((control.send(Sci::SCI_GETFOLDLEVEL, line) & Sci::SC_FOLDLEVELHEADERFLAG) != 0)
        return line;
    const long level = control.send(Sci::SCI_GETFOLDLEVEL, line) & Sci::SC_FOLDLEVELNUMBERMASK;
    for (long above = line - 1; above >= 0; --above) {
        if (!isContent(control, above) && Sci::SC_FOLDLEVELBASE + depth(control, above) < level) {
            setFoldLevel(control, above);
            return above;
        }
    }
    return -1;
}

} // namespace zelk
