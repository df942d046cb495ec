// The list of what may be typed, and the dialog for new elements.
#include <gtest/gtest.h>

#include <QTest>

#include "InsertElementDlg.h"
#include "TextEditorView.h"

namespace {

using namespace zelk;

struct View : TextEditorView {
    explicit View(std::string text) {
        const size_t caret = text.find('|');
        text.erase(caret, 1);
        setText(text);
        show();
        setFocus();
        select({caret, caret});
    }
    void type(const char* keys) {
        for (; *keys != 0; ++keys) {
            if (*keys == '\n')
                QTest::keyClick(this, Qt::Key_Return);
            else if (*keys == '\t')
                QTest::keyClick(this, Qt::Key_Down);
            else
                QTest::keyClick(this, *keys);
            QApplication::processEvents();
        }
    }
    std::string textAndCaret() { return std::string(text()).insert(static_cast<size_t>(send(SCI_GETCURRENTPOS)), "|"); }
    bool hasList() const { return send(SCI_AUTOCACTIVE) != 0; }
};

TEST(Autocomplete, PutsInWhatIsChosen) {
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
        View view(c.text);
        const std::string before(view.text());
        view.type(c.keys);
        EXPECT_EQ(view.textAndCaret(), c.expected) << c.text << c.keys;
        EXPECT_EQ(view.hasList(), c.hasList) << c.text << c.keys;
        while (view.canUndo())
            view.undo();
        EXPECT_EQ(view.text(), before);
    }
    View view("<Push><Nu|");
    view.complete();
    EXPECT_TRUE(view.hasList());
    view.type("\n");
    EXPECT_EQ(view.textAndCaret(), "<Push><Null|");
}

TEST(Autocomplete, NewElementsAreChosenByPartOfTheirName) {
    View view("<Movie>\n    <End />|\n</Movie>");
    QTimer::singleShot(50, &view, [] {
        auto* dialog = qobject_cast<InsertElementDlg*>(QApplication::activeModalWidget());
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
    view.insertNewTag();
    EXPECT_EQ(view.text(), "<Movie>\n    <End />\n"
                           "    <ScriptLimits MaxRecursionDepth=\"0\" ScriptTimeoutSeconds=\"0\" />\n</Movie>");
    EXPECT_EQ(view.selectedText(), "0");
    view.undo();
    EXPECT_EQ(view.text(), "<Movie>\n    <End />\n</Movie>");
}

} // namespace
