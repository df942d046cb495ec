// What people perceive who hear the window, and who go through it by keys.
#include "WindowFixture.h"

#include <QAccessible>

#include "RecoveryDialog.h"
#include "Theme.h"

namespace zelk {

class AccessibilityTest : public WindowTest {
protected:
    static constexpr const char* movie =
        "<Movie SwfVersion=\"6\">\n<DefineShape "
        "ShapeId=\"1\"><Bounds/><FillStyles/><LineStyles/><Edges/></DefineShape>\n"
        "<DefineEditText Id=\"2\"><InitialText><![CDATA[Hello]]></InitialText></DefineEditText>\n"
        "<PlaceObject2 Depth=\"1\" CharacterId=\"1\" Move=\"false\"/>\n<Odd/>\n<ShowFrame/>\n</Movie>\n";

    AccessibilityTest() {
        QApplication::setCursorFlashTime(0);
        openFile("a.xml", movie);
        window->resize(1280, 720);
        editor().gotoOffset(std::string_view(movie).find("CharacterId") + 14);
    }
    ~AccessibilityTest() override { applyTheme(Theme::system); }

    static std::string describe(const QWidget& widget) {
        return std::string(widget.metaObject()->className()) + " '" + widget.objectName().toStdString() + "' in '" +
               widget.window()->windowTitle().toStdString() + "'";
    }

    // Rows are called what they say, and a field or a list of a box is no control of its own.
    static bool isPart(const QAccessibleInterface& item) {
        using enum QAccessible::Role;
        static constexpr QAccessible::Role parts[] = {TreeItem,  Cell,      ListItem,  ColumnHeader,
                                                      RowHeader, ScrollBar, Separator, Grip};
        const QObject* outer = item.object() == nullptr ? nullptr : item.object()->parent();
        return std::ranges::find(parts, item.role()) != std::end(parts) || qobject_cast<const QComboBox*>(outer) ||
               qobject_cast<const QAbstractSpinBox*>(outer);
    }

    static bool isReachedByTab(const QWidget& widget) {
        return widget.focusPolicy() & Qt::TabFocus && widget.isVisible() && widget.isEnabled() && !widget.focusProxy();
    }

    // Menus are closed, and read all the same.
    void expectNames(QAccessibleInterface* item, const std::string& outer) {
        using enum QAccessible::Role;
        static constexpr QAccessible::Role pressed[] = {MenuItem, PageTab,     Button, ButtonMenu,
                                                        CheckBox, RadioButton, Dialog, ProgressBar},
                                           reached[] = {EditableText, ComboBox, SpinBox, Slider,      List,      Tree,
                                                        Table,        Graphic,  Link,    PageTabList, StaticText};
        const auto isOneOf = [](QAccessible::Role role, const auto& roles) {
            return std::ranges::find(roles, role) != std::end(roles);
        };
        ASSERT_NE(item, nullptr) << outer;
        const QAccessible::Role role = item->role();
        if ((item->state().invisible && role != MenuItem && role != PopupMenu) || isPart(*item))
            return;
        const auto* widget = qobject_cast<QWidget*>(item->object());
        const std::string here = widget == nullptr ? outer : describe(*widget);
        const bool isReached = widget != nullptr && isReachedByTab(*widget);
        if (isReached || isOneOf(role, pressed)) {
            ++controls;
            EXPECT_FALSE(item->text(QAccessible::Name).isEmpty()) << here << ", role " << role << ", has no name";
            EXPECT_TRUE(isOneOf(role, pressed) || isOneOf(role, reached) || qobject_cast<const QGraphicsView*>(widget))
                << here << " has the role " << role;
        }
        for (int i = 0; i < item->childCount(); ++i)
            expectNames(item->child(i), here);
    }
    int controls = 0;

    // Pixels that are clearly another colour while it has the keyboard.
    static int pixelsOfFocus(QWidget& widget) {
        QWidget& top = *widget.window();
        const auto picture = [&] {
            QApplication::processEvents();
            return top.grab(QRect(widget.mapTo(&top, QPoint()), widget.size()).adjusted(-3, -3, 3, 3)).toImage();
        };
        widget.setFocus(Qt::TabFocusReason);
        EXPECT_TRUE(widget.hasFocus()) << describe(widget);
        const QImage with = picture();
        widget.clearFocus();
        const QImage without = picture();
        int different = 0;
        for (int y = 0; y < with.height(); ++y) {
            for (int x = 0; x < with.width(); ++x) {
                const QColor a = with.pixelColor(x, y), b = without.pixelColor(x, y);
                different +=
                    std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) > 96;
            }
        }
        return different;
    }

    void goThrough(QWidget& part) {
        QWidget& top = *part.window();
        expectNames(QAccessible::queryAccessibleInterface(&part), describe(part));
        QApplication::setActiveWindow(&top);
        top.setAttribute(Qt::WA_KeyboardFocusChange); // as the Tab key does
        for (const Theme theme : {Theme::light, Theme::dark}) {
            applyTheme(theme);
            QApplication::processEvents();
            for (QWidget* widget : part.findChildren<QWidget*>()) {
                if (widget->window() != &top || !isReachedByTab(*widget))
                    continue;
                const QRect place(widget->mapTo(&top, QPoint()), widget->size());
                EXPECT_TRUE(top.rect().intersects(place)) << describe(*widget) << " cannot be seen";
                EXPECT_GE(pixelsOfFocus(*widget), 10) << describe(*widget) << ", theme " << static_cast<int>(theme);
            }
        }
    }
};

TEST_F(AccessibilityTest, TheWindowSaysWhatIsInItAndWhereTheKeyboardIs) {
    static constexpr std::pair<int, const char*> panes[] = {
        {CommandId::preview, "preview"}, {CommandId::kinds, "kinds"},     {CommandId::warnings, "warnings"},
        {CommandId::texts, "texts"},     {CommandId::results, "results"}, {CommandId::showUses, "uses"}};
    goThrough(*window);
    for (const auto& [command, name] : panes) {
        choose(command);
        auto* pane = window->findChild<QDockWidget*>(QString::fromLatin1(name));
        ASSERT_TRUE(pane != nullptr && pane->isVisible()) << name;
        goThrough(*pane);
    }
    goThrough(*window);
    choose(CommandId::replace);
    choose(CommandId::tagList);
    goThrough(*window);
    choose(CommandId::closeAll);
    goThrough(*window);
    EXPECT_GT(controls, 300);
}

TEST_F(AccessibilityTest, DialogsSayWhatIsInThemAndWhereTheKeyboardIs) {
    using namespace CommandId;
    static constexpr int commands[] = {insertStruct,
                                       insertAction,
                                       CommandId::settings,
                                       CommandId::movieSettings,
                                       gotoLine,
                                       findSymbol,
                                       renameCharacter,
                                       insertTagTemplate,
                                       insertStructTemplate,
                                       insertActionTemplate,
                                       about,
                                       printPreview,
                                       saveAs,
                                       tagList,
                                       editTag};
    QStringList seen;
    answers.addForOthers([&](QWidget& dialog) {
        seen.append(dialog.windowTitle());
        goThrough(dialog);
        dialog.close();
    });
    for (const int command : commands) {
        choose(command);
        runUntil([] { return QApplication::activeModalWidget() == nullptr; });
    }
    EXPECT_EQ(seen.join(u',').toStdString(), "Insert Struct Template,Insert Action Template,Settings,Movie settings,"
                                             "Go To Line,Find Symbol,Rename Character,Insert Tag Template,"
                                             "Insert Struct Template,Insert Action Template,About Zelk,"
                                             "Print Preview - a.xml,Save As,Tag Editor");
    KeptDocument kept;
    kept.fileName = path("kept.swf");
    RecoveryDialog recovery(
        {kept}, [](size_t) { return std::string(movie); }, nullptr);
    recovery.show();
    button(recovery, QStringLiteral("Look")).click();
    ThreadParams job;
    ProgressBarDialog progress(nullptr, QStringLiteral("Converting"), job);
    progress.show();
    choose(CommandId::guide);
    for (QWidget* each : {static_cast<QWidget*>(&recovery), static_cast<QWidget*>(&progress),
                          static_cast<QWidget*>(window->findChild<QMainWindow*>())}) {
        ASSERT_NE(each, nullptr);
        goThrough(*each);
    }
}

TEST_F(AccessibilityTest, TheTextGivesItsLines) {
    auto* item = QAccessible::queryAccessibleInterface(&editor());
    ASSERT_NE(item, nullptr);
    QAccessibleTextInterface* text = item->textInterface();
    ASSERT_NE(text, nullptr);
    const QString all = QString::fromLatin1(movie);
    EXPECT_EQ(text->text(0, text->characterCount()), all);
    int start = 0, end = 0;
    const int place = static_cast<int>(all.indexOf(QStringLiteral("ShowFrame")));
    text->setCursorPosition(place);
    EXPECT_EQ(editor().row(), 6u);
    EXPECT_EQ(text->cursorPosition(), place);
    EXPECT_EQ(item->text(QAccessible::Value), QStringLiteral("<ShowFrame/>"));
    using enum QAccessible::TextBoundaryType;
    EXPECT_EQ(text->textAtOffset(place, LineBoundary, &start, &end), QStringLiteral("<ShowFrame/>\n"));
    EXPECT_EQ(start, place - 1);
    EXPECT_EQ(text->textBeforeOffset(place, LineBoundary, &start, &end), QStringLiteral("<Odd/>\n"));
    EXPECT_EQ(text->textAfterOffset(place, LineBoundary, &start, &end), QStringLiteral("</Movie>\n"));
    EXPECT_EQ(text->textAtOffset(place + 3, WordBoundary, &start, &end), QStringLiteral("ShowFrame"));
    EXPECT_EQ(text->textAtOffset(place, CharBoundary, &start, &end), QStringLiteral("S"));
    EXPECT_EQ(text->textAfterOffset(text->characterCount(), CharBoundary, &start, &end), QString());
    text->setSelection(0, place, place + 4);
    text->selection(0, &start, &end);
    EXPECT_EQ(text->selectionCount(), 1);
    EXPECT_EQ(text->text(start, end), QStringLiteral("Show"));
    const QRect rect = text->characterRect(place);
    EXPECT_EQ(text->offsetAtPoint(rect.center() - QPoint(1, 0)), place);
}

} // namespace zelk
