// The tree by kind in the window.

#include "WindowFixture.h"

namespace {

using namespace zelk;

constexpr const char* text = R"(<Movie SwfVersion="8" Width="10" Height="10" FrameRate="12">
    <DefineShape ShapeId="1"><Bounds MaxX="400" MaxY="400" MinX="0" MinY="0"/>
        <FillStyles><SolidFillStyle Color="449944ff"/></FillStyles><LineStyles/>
        <Edges><StyleChange><SetFill1 Index="1"/></StyleChange><Line DX="400" DY="0"/><Line DX="0" DY="400"/>
        <Line DX="-400" DY="-400"/></Edges></DefineShape>
    <DefineSprite Id="2" FrameCount="1">
        <PlaceObject2 Depth="1" CharacterId="1" Name="ball" Move="false" />
        <ShowFrame/>
    </DefineSprite>
    <DoAction><Actions><Stop/></Actions></DoAction>
    <ShowFrame/>
</Movie>)";

class KindsWindow : public WindowTest {
protected:
    KindsWindow() {
        editor().setText(text);
        press(Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_TRUE(runUntil([&] { return tree().model()->rowCount() == 4 && !panel().isBusy(); }));
    }
    KindsPanel& panel() { return *window->findChild<KindsPanel*>(); }
    QTreeView& tree() { return panel().list(); }
    QModelIndex row(std::initializer_list<int> rows, int column = 0) {
        QModelIndex index;
        for (int row : rows)
            index = tree().model()->index(row, 0, index);
        return index.siblingAtColumn(column);
    }
    QString textAt(std::initializer_list<int> rows, int column = 0) { return row(rows, column).data().toString(); }
    size_t at(const char* word) { return editor().text().find(word); }
};

TEST_F(KindsWindow, SortsTagsWithNamesSizesAndPictures) {
    EXPECT_EQ(textAt({0}), QStringLiteral("Shapes (1)"));
    EXPECT_EQ(textAt({0, 0}), QStringLiteral("DefineShape 1 (ball)"));
    EXPECT_EQ(textAt({1, 0, 0}), QStringLiteral("Frame 1"));
    EXPECT_EQ(textAt({2}), QStringLiteral("Scripts (1)"));
    EXPECT_EQ(textAt({3}), QStringLiteral("Others (1)"));
    EXPECT_TRUE(tree().hasFocus());
    tree().expandToDepth(0);
    ASSERT_TRUE(runUntil([&] { return !textAt({2, 0}, 1).isEmpty() && !panel().isBusy(); }));
    EXPECT_EQ(textAt({2, 0}, 1), QStringLiteral("3")) << "header and action";
    const QImage picture = row({0, 0}).data(Qt::DecorationRole).value<QImage>();
    EXPECT_EQ(picture.pixelColor(18, 6), QColor(0x44, 0x99, 0x44));
    EXPECT_EQ(picture.pixelColor(3, 20).alpha(), 0);
}

TEST_F(KindsWindow, KeysShowFilterAndEdit) {
    tree().setCurrentIndex(row({1, 0, 0}));
    EXPECT_EQ(editor().caret(), at("<PlaceObject2"));
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(panel().filter().hasFocus());
    QTest::keyClicks(&panel().filter(), QStringLiteral("stop"));
    ASSERT_TRUE(runUntil([&] { return !panel().isBusy(); }));
    EXPECT_EQ(textAt({2}), QStringLiteral("Scripts (0)"));
    panel().inside().click();
    ASSERT_TRUE(runUntil([&] { return !panel().isBusy(); }));
    EXPECT_EQ(textAt({2}), QStringLiteral("Scripts (1)")) << "inside";
    EXPECT_EQ(textAt({0}), QStringLiteral("Shapes (0)"));
    panel().filter().setFocus();
    press(Qt::Key_Down);
    tree().setCurrentIndex(row({2, 0}));
    EXPECT_EQ(editor().caret(), at("<DoAction"));
    press(Qt::Key_Delete);
    EXPECT_EQ(at("<DoAction"), std::string::npos);
    EXPECT_TRUE(window->tabs().current()->showsList());
    ASSERT_TRUE(runUntil([&] { return !panel().isBusy() && tree().model()->rowCount() == 3; }));
    window->tabs().current()->undo();
    ASSERT_TRUE(runUntil([&] { return !panel().isBusy() && tree().model()->rowCount() == 4; }));
    panel().inside().setFocus();
    press(Qt::Key_Escape);
    EXPECT_EQ(panel().filter().text(), QString());
    press(Qt::Key_Escape);
    EXPECT_FALSE(panel().isVisible());
    EXPECT_TRUE(view().list().tree().hasFocus());
}

} // namespace
