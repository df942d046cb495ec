// What the text view looks like.
#include <QApplication>
#include <QEvent>
#include <QFontDatabase>

#include "LongLines.h"
#include "TextEditorView.h"
#include "TextMarks.h"

namespace zelk {

namespace {

constexpr QRgb faint = 0xFF707070, tagShade = 0xFF2A6DB8, targetShade = 0xFFD07000, matchShade = 0xFFE0B000;

} // namespace

void TextEditorView::setLook() {
    send(SCI_SETCARETLINEVISIBLE, 1);
    send(SCI_SETCARETLINEVISIBLEALWAYS, 1);
    setMargins();
    setIndicators();
    send(SCI_SETLEXER, SCLEX_CONTAINER);
    send(SCI_SETIDLESTYLING, SC_IDLESTYLING_ALL);
    send(SCI_SETLAYOUTCACHE, SC_CACHE_PAGE);
    send(SCI_SETPOSITIONCACHE, 16 * 1024); // pieces of text whose widths are known: three times as fast in long lines
    send(SCI_SETSCROLLWIDTH, 1);
    send(SCI_SETSCROLLWIDTHTRACKING, 1);
}

std::array<QRgb, 3> TextEditorView::grounds(bool isDark) {
    return isDark ? std::array<QRgb, 3>{0xFF1F1F22, 0xFF2A2D33, 0xFF204060}
                  : std::array<QRgb, 3>{0xFFFFFFFF, 0xFFEEF4FB, 0xFFB5D5FF};
}

QRgb TextEditorView::selectedColour(bool isDark, int style) {
    return SwfSyntaxHighlighter::colours(isDark).at(isDark ? style : SwfSyntaxHighlighter::Other);
}

// What the theme and the settings say.
void TextEditorView::setColors() {
    const bool isDark = QApplication::palette().color(QPalette::Base).lightness() < 128;
    const auto [ground, lineGround, selectionGround] = grounds(isDark);
    const auto& colors = SwfSyntaxHighlighter::colours(isDark);
    const QColor text(colors.at(SwfSyntaxHighlighter::Other)), margin(isDark ? 0xFF2A2A2E : 0xFFF5F5F5);
    const QColor marks(isDark ? 0xFFA0A0A4 : faint);
    const auto set = [this](unsigned message, int what, const QColor& color) {
        SendScintilla(message, static_cast<unsigned long>(what), color);
    };
    const QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    const QByteArray family = (_look.family.isEmpty() ? font.family() : _look.family).toUtf8();
    SendScintilla(SCI_STYLESETFONT, static_cast<uintptr_t>(STYLE_DEFAULT), family.constData());
    send(SCI_STYLESETSIZE, STYLE_DEFAULT, _look.size > 0 ? _look.size : std::max(10, font.pointSize()));
    set(SCI_STYLESETBACK, STYLE_DEFAULT, QColor(ground));
    set(SCI_STYLESETFORE, STYLE_DEFAULT, text);
    send(SCI_STYLECLEARALL);
    for (const auto& [style, color] : colors) {
        if (style >= 0)
            set(SCI_STYLESETFORE, style, QColor(color));
    }
    send(SCI_STYLESETVISIBLE, hiddenStyle, 0);
    set(SCI_STYLESETFORE, STYLE_LINENUMBER, marks);
    set(SCI_STYLESETBACK, STYLE_LINENUMBER, margin);
    set(SCI_SETSELBACK, 1, QColor(selectionGround));
    set(SCI_SETSELFORE, isDark ? 0 : 1, QColor(selectedColour(isDark, SwfSyntaxHighlighter::Other)));
    SendScintilla(SCI_SETCARETLINEBACK, QColor(lineGround));
    SendScintilla(SCI_SETCARETFORE, text);
    set(SCI_SETFOLDMARGINCOLOUR, 1, margin);
    set(SCI_SETFOLDMARGINHICOLOUR, 1, margin);
    for (int marker = int(SC_MARKNUM_FOLDEREND); marker <= int(SC_MARKNUM_FOLDEROPEN); ++marker) {
        set(SCI_MARKERSETFORE, marker, QColor(ground));
        set(SCI_MARKERSETBACK, marker, marks);
    }
    _digits = 0; // They may have another width.
    fitNumbers();
}

void TextEditorView::setTextLook(const Look& look) {
    if (std::exchange(_look, look) != look)
        setColors();
    send(SCI_SETTABWIDTH, look.tabWidth);
    send(SCI_SETINDENT, look.tabWidth);
    send(SCI_SETWRAPMODE, look.wraps && canWrap() ? SC_WRAP_WORD : SC_WRAP_NONE);
}

// The control lays a line out in one piece, and notes the height of all lines at once: the window would stand still.
bool TextEditorView::canWrap() const {
    constexpr size_t most = size_t(32) << 20, longest = size_t(128) << 10; // each a tenth of a second at most
    const std::string_view bytes = text();
    if (bytes.size() > most)
        return false;
    for (size_t start = 0; start < bytes.size();) {
        const size_t end = std::min(bytes.find('\n', start), bytes.size());
        if (end - start > longest)
            return false;
        start = end + 1;
    }
    return true;
}

void TextEditorView::changeEvent(QEvent* event) {
    TextControl::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        setColors();
}

void TextEditorView::setMargins() {
    send(SCI_SETMARGINTYPEN, numbers, SC_MARGIN_NUMBER);
    send(SCI_SETMARGINTYPEN, folds, SC_MARGIN_SYMBOL);
    send(SCI_SETMARGINMASKN, folds, static_cast<long>(SC_MASK_FOLDERS));
    send(SCI_SETMARGINWIDTHN, folds, 16);
    send(SCI_SETMARGINSENSITIVEN, folds, 1);
    send(SCI_SETMARGINTYPEN, bookmarks, SC_MARGIN_SYMBOL);
    send(SCI_SETMARGINMASKN, bookmarks, 1 << bookmark);
    send(SCI_SETMARGINWIDTHN, bookmarks, 0); // until there is one
    send(SCI_MARKERDEFINE, bookmark, SC_MARK_BOOKMARK);
    SendScintilla(SCI_MARKERSETFORE, static_cast<unsigned long>(bookmark), QColor(tagShade));
    SendScintilla(SCI_MARKERSETBACK, static_cast<unsigned long>(bookmark), QColor(tagShade));
    for (const auto& [marker, symbol] : {std::pair(SC_MARKNUM_FOLDER, SC_MARK_BOXPLUS),
                                         {SC_MARKNUM_FOLDEROPEN, SC_MARK_BOXMINUS},
                                         {SC_MARKNUM_FOLDEREND, SC_MARK_BOXPLUS},
                                         {SC_MARKNUM_FOLDEROPENMID, SC_MARK_BOXMINUS},
                                         {SC_MARKNUM_FOLDERSUB, SC_MARK_EMPTY},
                                         {SC_MARKNUM_FOLDERTAIL, SC_MARK_EMPTY},
                                         {SC_MARKNUM_FOLDERMIDTAIL, SC_MARK_EMPTY}}) {
        send(SCI_MARKERDEFINE, marker, symbol);
    }
    send(SCI_SETFOLDFLAGS, SC_FOLDFLAG_LINEAFTER_CONTRACTED);
    send(SCI_SETAUTOMATICFOLD, SC_AUTOMATICFOLD_SHOW | SC_AUTOMATICFOLD_CHANGE);
}

void TextEditorView::fitNumbers() {
    const size_t digits = std::to_string(rowCount()).size();
    if (std::exchange(_digits, digits) == digits)
        return;
    const QByteArray widest(static_cast<qsizetype>(digits) + 2, '9');
    send(SCI_SETMARGINWIDTHN, numbers,
         SendScintilla(SCI_TEXTWIDTH, static_cast<uintptr_t>(STYLE_LINENUMBER), widest.constData()));
}

void TextEditorView::setIndicators() {
    send(SCI_INDICSETSTYLE, tagIndicator, INDIC_ROUNDBOX);
    SendScintilla(SCI_INDICSETFORE, static_cast<unsigned long>(tagIndicator), QColor(tagShade));
    send(SCI_INDICSETALPHA, tagIndicator, 60);
    send(SCI_INDICSETSTYLE, targetIndicator, INDIC_STRAIGHTBOX);
    SendScintilla(SCI_INDICSETFORE, static_cast<unsigned long>(targetIndicator), QColor(targetShade));
    send(SCI_INDICSETALPHA, targetIndicator, 70);
    send(SCI_INDICSETOUTLINEALPHA, targetIndicator, 200);
    send(SCI_INDICSETSTYLE, matchIndicator, INDIC_STRAIGHTBOX);
    SendScintilla(SCI_INDICSETFORE, static_cast<unsigned long>(matchIndicator), QColor(matchShade));
    send(SCI_INDICSETALPHA, matchIndicator, 90);
    send(SCI_INDICSETOUTLINEALPHA, matchIndicator, 220);
    send(SCI_INDICSETUNDER, matchIndicator, 1);
}

} // namespace zelk
