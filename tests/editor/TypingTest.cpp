// What is typed into the text by hand, the list of what may be typed, the dialog for new elements, and Format XML in
// the window.

#include "InsertElementDlg.h"
#include "WindowFixture.h"

namespace {

using namespace zelk;

class TypingTest : public WindowTest {
protected:
    void keys(const char* text) {
        for (; *text != 0; ++text) {
            if (*text == '\n')
                press(Qt::Key_Return);
            else if (*text == '\t')
                QTest::keyClick(&editor(), Qt::Key_Down);
            else
                QTest::keyClick(&editor(), *text);
            QApplication::processEvents();
        }
    }
    void setText(std::string text) { // with the caret at "|"
        const size_t caret = text.find('|');
        editor().setText(text.erase(caret, 1));
        editor().select({caret, caret});
    }
    std::string textAndCaret() { return std::string(editor().text()).insert(editor().caret(), "|"); }
    bool hasList() { return editor().send(QsciScintillaBase::SCI_AUTOCACTIVE) != 0; }
    void selectLines(long first, long last) {
        editor().select({static_cast<size_t>(editor().send(QsciScintillaBase::SCI_POSITIONFROMLINE, first)),
                         static_cast<size_t>(editor().send(QsciScintillaBase::SCI_POSITIONFROMLINE, last + 1))});
    }
};

TEST_F(TypingTest, AScriptIsTypedAndItsLinesAreMoved) {
    setText("<Movie>|</Movie>");
    keys("\n<DoAction>\n<Actions>\n<Push>\n<Integer Value=\"1\"/>\n</\n</\n</");
    const std::string typed = "<Movie>\n"
                              "    <DoAction>\n"
                              "        <Actions>\n"
                              "            <Push>\n"
                              "                <Integer Value=\"1\"/>\n"
                              "            </Push>\n"
                              "        </Actions>\n"
                              "    </DoAction>|\n"
                              "</Movie>";
    EXPECT_EQ(textAndCaret(), typed);

    editor().gotoPlace(5, 20);
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(editor().row(), 6u);
    editor().replaceBytes(editor().text().rfind("\"1\""), editor().text().rfind("\"1\"") + 3, "\"2\"");
    press(Qt::Key_Up, Qt::AltModifier);
    const std::string both = "                <Integer Value=\"2\"/>\n                <Integer Value=\"1\"/>\n";
    EXPECT_NE(editor().text().find(both), std::string_view::npos) << editor().text();
    press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(editor().text().find(both), std::string_view::npos);
    const std::string before(editor().text());
    for (long last : {4L, 5L}) { // one line, two lines
        selectLines(4, last);
        press(Qt::Key_Tab);
        EXPECT_NE(editor().text().find("\n                    <Integer Value=\"1\"/>\n"), std::string_view::npos);
        press(Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(editor().text(), before);
    }
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_NE(editor().text(), before) << "it is indented again";
    press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(editor().text(), before);
    for (QAction* each : window->menuBar()->actions()[1]->menu()->actions()) {
        if (each->text() == QStringLiteral("Select &All"))
            each->trigger();
    }
    EXPECT_EQ(editor().selectedText(), before);
}

TEST_F(TypingTest, KeysDoWhatTheirPlaceAsksFor) {
    std::string far = "<Movie>\n    <DefineSprite>\n"; // whose start tag no one wants to look for tag by tag
    while (far.size() < 3 << 20)
        far += "        <ShowFrame />\n";
    const struct {
        std::string text;
        const char* keys;
        std::string expected;
    } cases[] = {
        {"<A>\r\n\t<B x=\"1\">|", "\n", "<A>\r\n\t<B x=\"1\">\r\n\t    |"},
        {"<A>|</A>", "\n", "<A>\n    |\n</A>"},
        {"x\r<A/>|", "\n", "x\r<A/>\r|"},
        {"  <A/>|", "\n", "  <A/>\n  |"},
        {"<A>\n    <B/>|</A>", "\n", "<A>\n    <B/>\n|</A>"},
        {"<A x=\"a>|b\"/>", "\n", "<A x=\"a>\n|b\"/>"},
        {"<A x=\"1|\"/>", "2\"", "<A x=\"12\"|/>"},
        {"<A x='1|'/>", "\"'", "<A x='1\"'|/>"},
        {"<A x=|\"1\"/>", "\"", "<A x=\"|\"1\"/>"},
        {"<A>|", "<B>", "<A><B>|"},
        {"<A>\n        |", "</", "<A>\n</A>|"},
        {"<A><B/>|", "</", "<A><B/></A>|"},
        {"<A>|>", "</", "<A></A>|"},
        {"<A><|/B>", "/", "<A></|/B>"},
        {"<![CDATA[<A>|]]>", "</", "<![CDATA[<A></|]]>"},
        {"<Actions><Push><Null/></Push>|</Actions>", "</", "<Actions><Push><Null/></Push></Actions>|</Actions>"},
        {far + "        |", "</", far + "    </DefineSprite>|"},
    };
    for (const auto& c : cases) {
        setText(c.text);
        keys(c.keys);
        EXPECT_TRUE(textAndCaret() == c.expected) << c.text.substr(0, 50) << "\n" << textAndCaret().substr(0, 50);
        while (editor().canUndo())
            editor().undo();
    }
}

TEST_F(TypingTest, TheListPutsInWhatIsChosen) {
    const struct {
        const char *text, *keys, *expected;
        bool hasList;
    } cases[] = {
        {"<FillStyles>|</FillStyles>", "<gr\n", "<FillStyles><GradientFillStyle|</FillStyles>", false},
        {"<FillStyles>|</FillStyles>", "<gr\n \n", "<FillStyles><GradientFillStyle Type=\"|\"</FillStyles>", true},
        {"<FillStyles>|</FillStyles>", "<gr\n \n\t\n/>",
         "<FillStyles><GradientFillStyle Type=\"Radial\"/>|</FillStyles>", false},
        {"<FillStyles>\n|", "</", "<FillStyles>\n</FillStyles>|", false},
        {"<FillStyles>\n|", "<\t\t\t\n", "<FillStyles>\n</FillStyles>|", false},
        {"<FillStyles>\n<|/FillStyles>", "s", "<FillStyles>\n<s|/FillStyles>", false},
        {"<Edges><Line DX=\"1\"|/>", " \n", "<Edges><Line DX=\"1\" DY=\"|\"/>", false},
        {"<Protect>|", " x", "<Protect> x|", false},
        {"<DefineShape><Bounds|/>", " q", "<DefineShape><Bounds q|/>", false},
    };
    for (const auto& c : cases) {
        setText(c.text);
        const std::string before(editor().text());
        keys(c.keys);
        EXPECT_EQ(textAndCaret(), c.expected) << c.text << c.keys;
        EXPECT_EQ(hasList(), c.hasList) << c.text << c.keys;
        while (editor().canUndo())
            editor().undo();
        EXPECT_EQ(editor().text(), before);
    }
    setText("<Push><Nu|");
    editor().complete();
    EXPECT_TRUE(hasList());
    keys("\n");
    EXPECT_EQ(textAndCaret(), "<Push><Null|");
}

TEST_F(TypingTest, NewElementsAreChosenByPartOfTheirName) {
    setText("<Movie>\n    <End />|\n</Movie>");
    answers.add([](QWidget& asked) {
        auto* dialog = qobject_cast<InsertElementDlg*>(&asked);
        ASSERT_NE(dialog, nullptr);
        QTest::keyClicks(dialog->focusWidget(), QStringLiteral("color"));
        EXPECT_EQ(dialog->choice().name, "SetBackgroundColor");
        QTest::keyClicks(dialog->focusWidget(), QStringLiteral("s"));
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
        EXPECT_TRUE(dialog->isVisible()) << "there is no \"colors\"";
        static_cast<QLineEdit*>(dialog->focusWidget())->setText(QStringLiteral("shape"));
        EXPECT_EQ(dialog->choice().name, "DefineMorphShape");
        static_cast<QLineEdit*>(dialog->focusWidget())->setText(QStringLiteral("sc"));
        EXPECT_EQ(dialog->choice().name, "ScriptLimits") << "and not DefineScalingGrid, which has it inside";
        EXPECT_TRUE(dialog->findChild<QPlainTextEdit*>()->toPlainText().startsWith(QStringLiteral("<ScriptLimits")));
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
    });
    editor().insertNewTag();
    EXPECT_EQ(editor().text(), "<Movie>\n    <End />\n"
                               "    <ScriptLimits MaxRecursionDepth=\"0\" ScriptTimeoutSeconds=\"0\" />\n</Movie>");
    EXPECT_EQ(editor().selectedText(), "0");
    editor().undo();
    EXPECT_EQ(editor().text(), "<Movie>\n    <End />\n</Movie>");
}

TEST_F(TypingTest, ALongLineIsOfferedToBeFormatted) {
    std::string text = "<Movie>", expected = "<Movie>";
    while (text.size() < 4 << 20) {
        text += "<End x=\"1\"/>";
        expected += "\n    <End x=\"1\" />";
    }
    text += "<Protect><![CDATA[ x ]]></Protect></Movie>";
    expected += "\n    <Protect><![CDATA[ x ]]></Protect>\n</Movie>";
    openFile("plain.xml", expected);
    EXPECT_EQ(view().notice(QStringLiteral("lines")), nullptr);
    openFile("long.xml", text);
    ASSERT_NE(view().notice(QStringLiteral("lines")), nullptr);
    editor().select({text.size() - 3, text.size()});
    press(Qt::Key_O, Qt::AltModifier); // The button looks pressed for a moment.
    ASSERT_TRUE(runUntil([&] { return view().notice(QStringLiteral("lines")) == nullptr; }));
    EXPECT_TRUE(editor().text() == expected);
    EXPECT_EQ(editor().caret(), expected.size()) << "it stays where it was";
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(editor().text() == text) << "one step";
    EXPECT_FALSE(editor().canUndo());

    editor().setText("<Movie><A></Movie>");
    answers.addButton(QMessageBox::Ok, QStringLiteral("Error description: "));
    press(Qt::Key_I, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(editor().text(), "<Movie><A></Movie>");
}

} // namespace
