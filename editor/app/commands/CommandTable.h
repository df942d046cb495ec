// Every command of the main window: its id, texts, keys, icon and when it can be chosen. Menus, tool bar, context menus
// and shortcuts are built from these tables.
#pragma once

#include <cstdint>
#include <span>

namespace zelk {

namespace CommandId {
constexpr int separator = 0;
constexpr int showColor = 131;
constexpr int insertStructTemplate = 686;
constexpr int closeAll = 688;
constexpr int openFolder = 689;
constexpr int copyFileName = 690;
constexpr int copyFullPath = 691;
constexpr int closeOthers = 692;
constexpr int insertTagTemplate = 700;
constexpr int copyAll = 719;
constexpr int cutAll = 720;
constexpr int insertColor = 744;
constexpr int gotoLine = 860;
constexpr int insertActionTemplate = 883;
constexpr int checkXml = 31900;
constexpr int play = 32900;
constexpr int updates = 32994;
constexpr int movieXml = 33002;
constexpr int tagList = 33003;
constexpr int insert = 33005;
constexpr int insertTag = 33006;
constexpr int insertStruct = 33007;
constexpr int insertAction = 33008;
constexpr int fileNew = 57600;
constexpr int fileOpen = 57601;
constexpr int close = 57602;
constexpr int save = 57603;
constexpr int saveAs = 57604;
constexpr int firstRecentFile = 57616; ///< as many follow as the list may hold
constexpr int clear = 57632;
constexpr int copy = 57634;
constexpr int cut = 57635;
constexpr int find = 57636;
constexpr int paste = 57637;
constexpr int findNext = 57640;
constexpr int replace = 57641;
constexpr int selectAll = 57642;
constexpr int undo = 57643;
constexpr int redo = 57644;
constexpr int about = 57664;
constexpr int exit = 57665;
// From here on without a fixed number.
constexpr int recentFiles = 60000; ///< the submenu
constexpr int homePage = 60001;
constexpr int findPrevious = 60002;
constexpr int zoomIn = 60003;
constexpr int zoomOut = 60004;
constexpr int zoomReset = 60005;
constexpr int toggleFold = 60006;
constexpr int foldAll = 60007;
constexpr int unfoldAll = 60008;
constexpr int nextDocument = 60009;
constexpr int previousDocument = 60010;
constexpr int warnings = 60011;
constexpr int texts = 60070;
constexpr int theme = 60012; ///< the submenu
constexpr int themeSystem = 60013;
constexpr int themeLight = 60014;
constexpr int themeDark = 60015;
constexpr int movieSettings = 60016;
constexpr int exportPayload = 60020;
constexpr int replacePayload = 60021;
constexpr int complete = 60025;
constexpr int preview = 60030;
constexpr int reopenSession = 60040;
constexpr int openInFullForm = 60041;
constexpr int labelBranches = 60050;
constexpr int unlabelBranches = 60051;
constexpr int gotoTarget = 60052;
constexpr int jumpBack = 60053;
constexpr int jumpForward = 60054;
constexpr int findSymbol = 60055;
constexpr int showUses = 60060;
constexpr int renameCharacter = 60061;
constexpr int kinds = 60062;
constexpr int print = 60091;
constexpr int printPreview = 60092;
constexpr int exportText = 60093;
constexpr int guide = 60090;
constexpr int duplicateLines = 60080;
constexpr int moveLinesUp = 60081;
constexpr int moveLinesDown = 60082;
constexpr int formatXml = 60083;
constexpr int findInAll = 60084;
constexpr int results = 60085;
constexpr int toggleBookmark = 60086;
constexpr int nextBookmark = 60087;
constexpr int previousBookmark = 60088;
constexpr int editTag = 60100;
constexpr int duplicateTags = 60101;
constexpr int playApart = 60102;
constexpr int wordWrap = 60110;
constexpr int settings = 60111;
constexpr int switchView = 60112;
} // namespace CommandId

/// What has to be there for a command to be chosen.
enum class Needs : uint8_t {
    nothing,
    document,
    file, ///< a document that has a file
    undo,
    redo,
    text,      ///< a document that is shown as text
    selection, ///< of text, or of tags in the list
    selectedText,
    selectedTags, ///< in the list
    severalDocuments,
    neverMet ///< for what this build does not have
};

struct CommandRow {
    int id;
    const char* text;   ///< of the menu; "\t" separates the keys
    const char* status; ///< a long text, "\n" and a tooltip; may be empty
    const char* icon;   ///< name of a file under icons/; may be empty
    Needs needs;
    const char* otherKeys; ///< more keys, separated by "; "
};

std::span<const CommandRow> commandTable();
/// Null when there is none.
const CommandRow* findCommand(int id);

/// An entry of a menu. Without a text of its own it has that of its command.
struct MenuItem {
    int id;
    const char* text = nullptr;
};

struct Menu {
    const char* title;
    std::span<const MenuItem> items;
};

std::span<const Menu> menuBar();
std::span<const MenuItem> themeMenu();
std::span<const int> toolBarCommands();
std::span<const MenuItem> tabMenu();
std::span<const MenuItem> textViewMenu();
std::span<const MenuItem> tagListMenu();

} // namespace zelk
