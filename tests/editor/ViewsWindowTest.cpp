// The two views, panes, settings and places, by keys.

#include "WindowFixture.h"

namespace {

using namespace zelk;
using Sci = QsciScintillaBase;

class ViewsTest : public WindowTest {
protected:
    std::tuple<size_t, long, long> look() { // the caret, the first line shown, whether a line is folded away
        return {editor().caret(), editor().send(Sci::SCI_GETFIRSTVISIBLELINE),
                editor().send(Sci::SCI_GETLINEVISIBLE, 3)};
    }
};

TEST_F(ViewsTest, ViewsStayWhereTheyWereLeft) {
    std::string text =
        "<Movie>\n    <DefineSprite Id=\"1\">\n        <ShowFrame/>\n        <End/>\n    </DefineSprite>\n";
    for (int i = 0; i < 300; ++i)
        text += "    <ShowFrame/>\n";
    openFile("views.xml", text + "</Movie>");
    editor().gotoPlace(2, 1);
    press(Qt::Key_M, Qt::ControlModifier);
    for (uint32_t row : {1u, 200u}) {
        editor().gotoPlace(row, 3);
        editor().send(Sci::SCI_LINESCROLL, 0, 5);
        QApplication::processEvents();
        const auto before = look();
        press(Qt::Key_L, Qt::ControlModifier);
        EXPECT_TRUE(view().showsList());
        const uint32_t tag = view().list().currentTag();
        press(Qt::Key_L, Qt::ControlModifier);
        EXPECT_TRUE(editor().hasFocus());
        EXPECT_EQ(look(), before) << row;
        press(Qt::Key_L, Qt::ControlModifier);
        EXPECT_EQ(view().list().currentTag(), tag);
        press(Qt::Key_Up);
        press(Qt::Key_L, Qt::ControlModifier);
    }
    EXPECT_EQ(editor().row(), 199u) << "the tag that was chosen in the list";

    editor().gotoPlace(20, 1);
    QTest::qWait(750);
    press(Qt::Key_End, Qt::ControlModifier);
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(editor().row(), 20u);
    press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(editor().row(), editor().rowCount());

    press(Qt::Key_Z, Qt::AltModifier);
    EXPECT_EQ(editor().send(Sci::SCI_GETWRAPMODE), long(Sci::SC_WRAP_WORD));
    openFile("long.xml", "<Movie a=\"" + std::string(140'000, 'x') + "\"/>");
    EXPECT_EQ(editor().send(Sci::SCI_GETWRAPMODE), long(Sci::SC_WRAP_NONE));

    auto* preview = window->findChild<QDockWidget*>(QStringLiteral("preview"));
    ASSERT_NE(preview, nullptr);
    preview->widget()->setFocusPolicy(Qt::StrongFocus);
    for (bool isFloating : {false, true}) {
        press(Qt::Key_F9);
        ASSERT_TRUE(preview->isVisible());
        preview->setFloating(isFloating);
        QApplication::setActiveWindow(preview->window());
        preview->widget()->setFocus();
        QTest::keyClick(preview->widget(), Qt::Key_Escape);
        EXPECT_FALSE(preview->isVisible());
        EXPECT_TRUE(window->focusWidget() == &editor());
    }
}

} // namespace
