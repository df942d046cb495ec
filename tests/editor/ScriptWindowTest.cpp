// Scripts and code in the window, by keys: targets, jumps, labels, symbols.

#include "WindowFixture.h"

namespace {

using namespace zelk;

using ScriptWindow = WindowTest;
using Sci = QsciScintillaBase;

constexpr const char* loop = R"(<Movie SwfVersion="8" Width="10" Height="10" FrameRate="12">
    <FrameLabel Name="begin" IsAnchor="false" />
    <DoAction>
        <Actions>
            <ConstantPool>
                <Constant Name="i" />
            </ConstantPool>
            <Push>
                <Constant8 Value="0" />
            </Push>
            <If Offset="5" />
            <Jump Offset="-15" />
            <Stop />
        </Actions>
    </DoAction>
</Movie>)";

TEST_F(ScriptWindow, KeysFollowTheCodeAndComeBack) {
    editor().setText(loop);
    const std::string text = loop;
    const auto at = [&](const char* word) { return text.find(word); };
    const size_t branch = at("<If") + 2, jump = at("<Jump"), index = at("<Constant8");
    editor().gotoOffset(branch);
    QApplication::processEvents();
    EXPECT_NE(editor().send(Sci::SCI_INDICATORVALUEAT, 9, static_cast<long>(at("Stop"))), 0) << "the target is marked";
    press(Qt::Key_F12);
    EXPECT_EQ(editor().caret(), at("Stop"));
    EXPECT_EQ(editor().send(Sci::SCI_INDICATORVALUEAT, 9, static_cast<long>(at("Stop"))), 0);
    editor().gotoOffset(jump);
    press(Qt::Key_F12);
    EXPECT_EQ(editor().caret(), at("Push"));
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(editor().caret(), jump);
    editor().replaceBytes(0, 0, "<!-- -->"); // places move with the text
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(editor().caret(), branch + 8);
    press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(editor().caret(), jump + 8);
    editor().undo();

    editor().gotoOffset(index + 3);
    const QPoint point(static_cast<int>(editor().send(Sci::SCI_POINTXFROMPOSITION, 0, static_cast<long>(index + 3))),
                       static_cast<int>(editor().send(Sci::SCI_POINTYFROMPOSITION, 0, static_cast<long>(index + 3))));
    QTest::mouseClick(editor().viewport(), Qt::LeftButton, Qt::ControlModifier, point + QPoint(1, 3));
    EXPECT_EQ(editor().caret(), at("Constant Name")) << "to the entry of the pool";
    press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(editor().caret(), at("Constant Name")) << "a jump forgets what was gone back from";
    press(Qt::Key_F12);
    EXPECT_NE(editor().send(Sci::SCI_CALLTIPACTIVE), 0) << "it says why it goes nowhere";
    editor().replaceBytes(at("<DoAction"), text.size(), "");
    editor().gotoOffset(0);
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(editor().caret(), at("<DoAction")) << "where the place went";
}

TEST_F(ScriptWindow, BranchesAreLabelledInOneStep) {
    editor().setText(loop);
    choose(CommandId::labelBranches);
    const std::string labelled(editor().text());
    EXPECT_NE(labelled, loop);
    choose(CommandId::unlabelBranches);
    EXPECT_EQ(editor().text(), loop);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(editor().text(), labelled);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(editor().canUndo());
    const size_t label = editor().text().find("<FrameLabel");
    editor().select({label, label + 5});
    answers.addButton(QMessageBox::Ok, QStringLiteral("There is no branch here"));
    choose(CommandId::labelBranches);
}

TEST_F(ScriptWindow, SymbolsAreFoundByName) {
    const std::string text = R"(<Movie SwfVersion="9" Form="full">
    <DefineSprite Id="7" FrameCount="1">
        <FrameLabel Name="begin" IsAnchor="false" />
    </DefineSprite>
    <DoABC Flags="1" Name="code">
        <Abc MajorVersion="46" MinorVersion="16">
            <Class Name="game::Ball" Base="Object">
                <Constructor><Code><Nop /></Code></Constructor>
                <Method Name="begin" />
                <Method Name="bounce" />
            </Class>
        </Abc>
    </DoABC>
</Movie>)";
    editor().setText(text);
    const auto find = [&](const std::string& typed, const char* element) {
        answers.addText(typed);
        press(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(editor().caret(), text.find(element)) << typed;
    };
    find("boun", "<Method Name=\"bounce");
    find("ball", "<Class");
    find("sprite", "<DefineSprite");
    find("begin ball", "<Method Name=\"begin");
    find("begin", "<FrameLabel");
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(editor().caret(), text.find("<Method Name=\"begin"));
    // In the tag list only what is in the selected tag.
    editor().gotoOffset(text.find("<DoABC"));
    choose(CommandId::tagList);
    find("begin", "<Method Name=\"begin");
    EXPECT_FALSE(window->tabs().current()->showsList());
}

} // namespace
