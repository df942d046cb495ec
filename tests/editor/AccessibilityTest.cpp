// What people perceive who hear the window.
#include "WindowFixture.h"

#include <QAccessible>

namespace zelk {

class AccessibilityTest : public WindowTest {
protected:
    static constexpr const char* movie =
        "<Movie SwfVersion=\"6\">\n<DefineShape "
        "ShapeId=\"1\"><Bounds/><FillStyles/><LineStyles/><Edges/></DefineShape>\n"
        "<DefineEditText Id=\"2\"><InitialText><![CDATA[Hello]]></InitialText></DefineEditText>\n"
        "<PlaceObject2 Depth=\"1\" CharacterId=\"1\" Move=\"false\"/>\n<Odd/>\n<ShowFrame/>\n</Movie>\n";

    AccessibilityTest() { openFile("a.xml", movie); }
};

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
