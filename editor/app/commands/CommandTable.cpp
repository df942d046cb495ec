#include "CommandTable.h"

#include <algorithm>

namespace zelk {

using namespace CommandId;

namespace {

// clang-format off
constexpr CommandRow rows[] = {
    {fileNew, "&New\tCtrl+N", "Create a new Xml\nNew", "new", Needs::nothing, ""},
    {fileOpen, "&Open...\tCtrl+O", "Open an existing file\nOpen", "open", Needs::nothing, ""},
    {save, "&Save...\tCtrl+S", "Save the active Xml\nSave", "save", Needs::document, ""},
    {saveAs, "&Save As...\tCtrl+Alt+S", "Save As\nSave Xml", "save-as", Needs::document, ""},
    {play, "P&lay...\tCtrl+Enter", "Playing swf file in new window\nPlay", "play", Needs::document, "Ctrl+Return"},
    {playApart, "Play in Ne&w Window\tCtrl+Shift+Enter", "Play beside what is playing already\nPlay in New Window", "", Needs::document,
     "Ctrl+Shift+Return"},
    {recentFiles, "Recent &Files", "", "", Needs::nothing, ""},
    {firstRecentFile, "(empty)", "", "", Needs::neverMet, ""},
    {reopenSession, "Reopen Files at S&tart", "Open the files of the last session at each start\nReopen Files", "",
     Needs::nothing, ""},
    {print, "&Print...\tCtrl+P", "Print the text with the numbers of its lines\nPrint", "", Needs::document, ""},
    {printPreview, "Print Pre&view...", "", "", Needs::document, ""},
    {exportText, "&Export Text...", "Save the text, or the selected lines, in colours as PDF or HTML\nExport Text", "",
     Needs::document, ""},
    {CommandId::exit, "E&xit\tAlt+F4", "Quit the application; prompts to save Xml\nExit", "", Needs::nothing, ""},
    {undo, "&Undo\tCtrl+Z", "Undo text\nUndo", "undo", Needs::undo, "Alt+Backspace"},
    {redo, "&Redo\tCtrl+Shift+Z", "Redo text\nRedo", "redo", Needs::redo, "Ctrl+Y"},
    {cut, "&Cut\tCtrl+X", "Cut text\nCut", "cut", Needs::selection, ""},
    {copy, "C&opy\tCtrl+C", "Copy text\nCopy", "copy", Needs::selection, "Ctrl+Insert"},
    {paste, "&Paste\tCtrl+V", "Paste text\nPaste", "paste", Needs::document, "Shift+Insert"},
    {find, "&Find...\tCtrl+F", "Find in document\nFind", "find", Needs::document, ""},
    {findNext, "Find &Next\tF3", "", "", Needs::text, ""},
    {findPrevious, "Find Pre&vious\tShift+F3", "", "", Needs::text, ""},
    {replace, "R&eplace...\tCtrl+R", "", "replace", Needs::text, ""},
    {findInAll, "Find in A&ll Documents...\tCtrl+Shift+F", "List what is found in all open documents\nFind in All Documents", "",
     Needs::text, ""},
    {toggleBookmark, "Set or Clear Boo&kmark\tCtrl+B", "", "", Needs::text, ""},
    {nextBookmark, "Next Bookmark\tAlt+PgDown", "", "", Needs::text, ""},
    {previousBookmark, "Previous Bookmark\tAlt+PgUp", "", "", Needs::text, ""},
    {gotoLine, "Go &To Line...", "", "", Needs::document, "Ctrl+G"},
    {gotoTarget, "Go To Tar&get\tF12", "Go to where the branch, constant, name or id at the caret leads\nGo To Target", "",
     Needs::document, ""},
    {showUses, "F&ind Uses\tShift+F12", "List where the character at the caret is defined and used\nFind Uses", "",
     Needs::document, ""},
    {renameCharacter, "Rename C&haracter...", "Give the character at the caret another id wherever it is used\nRename Character", "",
     Needs::document, ""},
    {jumpBack, "Jump &Back\tAlt+Left", "", "", Needs::text, ""},
    {jumpForward, "Jump For&ward\tAlt+Right", "", "", Needs::text, ""},
    {findSymbol, "Find &Symbol...\tCtrl+Shift+O", "Find a class, method, tag or label by name\nFind Symbol", "",
     Needs::document, ""},
    {duplicateLines, "&Duplicate Lines\tCtrl+D", "", "", Needs::text, ""},
    {moveLinesUp, "Move Lines Up\tAlt+Up", "", "", Needs::text, ""},
    {moveLinesDown, "Move Lines Down\tAlt+Down", "", "", Needs::text, ""},
    {movieXml, "&Movie XML", "", "", Needs::document, ""},
    {tagList, "&Tag list", "", "", Needs::document, ""},
    {insert, "&Insert", "Insert a tag behind the selected one\nInsert", "", Needs::document, ""},
    {switchView, "&Switch View\tCtrl+L", "Show the tag list instead of the text, or the text again\nSwitch View", "",
     Needs::document, ""},
    {wordWrap, "Word Wr&ap\tAlt+Z", "Break long lines at the edge of the window\nWord Wrap", "", Needs::nothing, ""},
    {CommandId::settings, "Settin&gs...\tCtrl+,", "Change how the editor looks and what it keeps\nSettings", "", Needs::nothing, ""},
    {zoomIn, "Zoom &In\tCtrl++", "", "", Needs::text, "Ctrl+="},
    {zoomOut, "Zoom &Out\tCtrl+-", "", "", Needs::text, ""},
    {zoomReset, "&Normal Size\tCtrl+0", "", "", Needs::text, ""},
    {toggleFold, "Fol&d or Unfold\tCtrl+M", "", "", Needs::text, ""},
    {foldAll, "&Fold All\tCtrl+Shift+M", "", "", Needs::text, ""},
    {unfoldAll, "&Unfold All\tCtrl+Alt+M", "", "", Needs::text, ""},
    {warnings, "&Warnings\tCtrl+Shift+W", "Show what was lost on load or save\nWarnings", "", Needs::document, ""},
    {texts, "Te&xts\tCtrl+Shift+X", "List the texts that people read, to find and edit them\nTexts", "", Needs::document, ""},
    {results, "Search &Results\tCtrl+Shift+R", "Show what was found in all documents\nSearch Results", "", Needs::nothing, ""},
    {preview, "&Preview\tF9", "Show a picture of the tag at the caret\nPreview", "", Needs::nothing, ""},
    {kinds, "&Kinds\tCtrl+Shift+K", "Show the tags by kind\nKinds", "", Needs::nothing, ""},
    {theme, "T&heme", "", "", Needs::nothing, ""},
    {themeSystem, "&System", "", "", Needs::nothing, ""},
    {themeLight, "&Light", "", "", Needs::nothing, ""},
    {themeDark, "&Dark", "", "", Needs::nothing, ""},
    {checkXml, "&Check XML...", "Check xml for correct\nCheck Xml", "check", Needs::document, ""},
    {formatXml, "Fo&rmat XML\tCtrl+Shift+I", "Put each element of the selection, or of all, on a line of its own\nFormat XML", "",
     Needs::document, ""},
    {movieSettings, "&Movie Settings...", "Change version, size and frame rate of the movie\nMovie Settings", "",
     Needs::document, ""},
    {openInFullForm, "Open Movies in the &Full Form",
     "Open and make movies in the form that shows every value as players read it\nFull Form", "", Needs::nothing, ""},
    {complete, "C&omplete\tCtrl+Space", "Show what may be typed here\nComplete", "", Needs::text, ""},
    {insertTag, "Insert &tag\tCtrl+Shift+T", "", "", Needs::document, ""},
    {insertStruct, "Insert &struct\tCtrl+Shift+S", "", "", Needs::text, ""},
    {insertAction, "Insert &action\tCtrl+Shift+C", "", "", Needs::text, ""},
    {labelBranches, "&Label Branches", "Let the branches of scripts lead to labels\nLabel Branches", "", Needs::document, ""},
    {unlabelBranches, "Branches by &Number", "Let the branches of scripts count bytes again\nBranches by Number", "",
     Needs::document, ""},
    {exportPayload, "E&xport Payload...\tCtrl+E", "Save the picture, sound or data of the tag at the caret as a file\nExport Payload", "",
     Needs::document, ""},
    {replacePayload, "Re&place Payload...\tCtrl+Shift+E", "Put a file in place of the picture, sound or data of the tag at the caret\nReplace Payload",
     "", Needs::document, ""},
    {editTag, "&Edit Tag...", "Edit the selected tag\nEdit Tag (Enter)", "", Needs::selectedTags, ""}, // Enter and Ctrl+D are the list's own
    {duplicateTags, "&Duplicate Tags", "Put copies of the selected tags behind them\nDuplicate Tags (Ctrl+D)", "", Needs::selectedTags, ""},
    {close, "&Close\tCtrl+F4", "Close the active document\nClose", "close", Needs::document, "Ctrl+W"},
    {closeAll, "Close &All", "Close all documents", "", Needs::document, ""},
    {nextDocument, "&Next Document\tCtrl+Tab", "", "", Needs::severalDocuments, ""},
    {previousDocument, "&Previous Document\tCtrl+Shift+Tab", "", "", Needs::severalDocuments, ""},
    {updates, "Upda&tes...", "", "", Needs::neverMet, ""},
    {homePage, "&Home Page", "", "", Needs::neverMet, ""},
    {guide, "&Guide\tF1", "Read how things are done, one page for each task\nGuide", "guide", Needs::nothing, ""},
    {about, "&About", "Display program information, version number and copyright\nAbout", "about", Needs::nothing, ""},
    {closeOthers, "Close All But This", "", "", Needs::severalDocuments, ""},
    {copyFullPath, "Copy Full Path", "", "", Needs::document, ""},
    {copyFileName, "Copy File Name", "", "", Needs::document, ""},
    {openFolder, "Open Containing Folder", "", "", Needs::file, ""},
    {cutAll, "Cut All", "", "", Needs::text, ""},
    {copyAll, "Copy All", "", "", Needs::text, ""},
    {clear, "Clear", "", "", Needs::selection, ""}, // The Delete key belongs to the widget that has the focus.
    {selectAll, "Select All", "", "", Needs::document, "Ctrl+A"},
    {insertColor, "Insert Color As Hex...", "Insert selected color by hex string", "", Needs::text, ""},
    {showColor, "Show Color", "", "", Needs::selectedText, ""},
    {insertTagTemplate, "Insert Tag Template...", "", "", Needs::document, ""},
    {insertActionTemplate, "Insert Action Template...", "", "", Needs::document, ""},
    {insertStructTemplate, "Insert Struct Template...", "", "", Needs::document, ""},
};
// clang-format on

constexpr MenuItem line = {separator};

constexpr MenuItem fileItems[] = {
    {fileNew}, {fileOpen}, {save},         {saveAs},     line, {play},      line, {recentFiles},    {reopenSession},
    line,      {print},    {printPreview}, {exportText}, line, {playApart}, line, {CommandId::exit}};
constexpr MenuItem editItems[] = {{undo},
                                  {redo},
                                  {cut},
                                  {copy},
                                  {paste},
                                  line,
                                  {find},
                                  {findNext},
                                  {findPrevious},
                                  {replace},
                                  {findInAll},
                                  line,
                                  {gotoLine},
                                  {findSymbol},
                                  {gotoTarget},
                                  {jumpBack},
                                  {jumpForward},
                                  {showUses},
                                  {renameCharacter},
                                  line,
                                  {selectAll, "Select &All"},
                                  {duplicateLines},
                                  {moveLinesUp},
                                  {moveLinesDown},
                                  line,
                                  {toggleBookmark},
                                  {nextBookmark},
                                  {previousBookmark}};
constexpr MenuItem viewItems[] = {{movieXml}, {tagList}, {switchView}, line,      {zoomIn},    {zoomOut}, {zoomReset},
                                  {wordWrap}, line,      {toggleFold}, {foldAll}, {unfoldAll}, line,      {warnings},
                                  {texts},    {preview}, {theme},      {kinds},   {results}};
constexpr MenuItem toolsItems[] = {{checkXml},
                                   {formatXml},
                                   {movieSettings},
                                   {openInFullForm},
                                   line,
                                   {insertTag},
                                   {insertStruct},
                                   {insertAction},
                                   {complete},
                                   line,
                                   {exportPayload},
                                   {replacePayload},
                                   line,
                                   {labelBranches},
                                   {unlabelBranches},
                                   line,
                                   {editTag},
                                   {duplicateTags},
                                   line,
                                   {CommandId::settings}};
constexpr MenuItem windowItems[] = {{close}, {closeAll}, line, {nextDocument}, {previousDocument}};
constexpr MenuItem helpItems[] = {{updates}, {homePage}, {about}, {guide}};
constexpr Menu menus[] = {{"&File", fileItems},   {"&Edit", editItems},     {"&View", viewItems},
                          {"&Tools", toolsItems}, {"&Window", windowItems}, {"&Help", helpItems}};

constexpr MenuItem themeItems[] = {{themeSystem}, {themeLight}, {themeDark}};

constexpr int toolBar[] = {fileNew, fileOpen, save,      saveAs, separator, undo,      redo,     separator, cut,
                           copy,    paste,    separator, find,   replace,   separator, checkXml, play};

constexpr MenuItem tabItems[] = {
    {close, "Close"}, {closeAll, "Close All"}, {closeOthers}, line, {save, "&Save"}, {saveAs, "&Save As..."}, line,
    {copyFullPath},   {copyFileName},          {openFolder}};
constexpr MenuItem textViewItems[] = {{undo, "&Undo"},
                                      {redo, "&Redo"},
                                      line,
                                      {cut, "Cut"},
                                      {cutAll},
                                      line,
                                      {copy, "Copy"},
                                      {copyAll},
                                      line,
                                      {paste, "Paste"},
                                      {clear},
                                      {selectAll},
                                      line,
                                      {insertColor},
                                      {showColor},
                                      line,
                                      {insertTagTemplate},
                                      {insertActionTemplate},
                                      {insertStructTemplate}};
constexpr MenuItem tagListItems[] = {{insert},
                                     line,
                                     {cut, "C&ut"},
                                     {copy, "&Copy"},
                                     {paste, "&Paste"},
                                     line,
                                     {clear, "&Clear"},
                                     line,
                                     {undo, "&Undo"},
                                     {redo, "&Redo"},
                                     line,
                                     {editTag, "&Edit...\tEnter"},
                                     {duplicateTags, "&Duplicate\tCtrl+D"},
                                     {exportPayload, "E&xport...\tCtrl+E"},
                                     {replacePayload, "Rep&lace...\tCtrl+Shift+E"}};

} // namespace

std::span<const CommandRow> commandTable() { return rows; }

const CommandRow* findCommand(int id) {
    const auto* row = std::ranges::find(rows, id, &CommandRow::id);
    return row == std::end(rows) ? nullptr : row;
}

std::span<const Menu> menuBar() { return menus; }
std::span<const MenuItem> themeMenu() { return themeItems; }
std::span<const int> toolBarCommands() { return toolBar; }
std::span<const MenuItem> tabMenu() { return tabItems; }
std::span<const MenuItem> textViewMenu() { return textViewItems; }
std::span<const MenuItem> tagListMenu() { return tagListItems; }

} // namespace zelk
