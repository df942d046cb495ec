// Find and Replace, and what the window does with the names of its documents, by keys and menus.

#include <set>

#include "ReplaceDlg.h"
#include "WindowFixture.h"

namespace {

using namespace zelk;

class SearchWindowTest : public WindowTest {
protected:
    // The bar of this title, which is open.
    FindDlg& dialog(const char* title) {
        for (FindDlg* each : window->findChildren<FindDlg*>()) {
            if (each->isVisible() && each->windowTitle() == QLatin1String(title))
                return *each;
        }
        throw std::runtime_error(std::string("no bar ") + title);
    }
    // Ticks these and clears the other boxes, fills in the fields, and presses a button.
    void ask(FindDlg& dialog, const QStringList& ticked, const QStringList& fields, const QString& pressed) {
        for (auto* box : dialog.findChildren<QCheckBox*>())
            box->setChecked(ticked.contains(box->text().remove(u'&')));
        button(dialog, ticked.contains(QStringLiteral("Up")) ? QStringLiteral("Up") : QStringLiteral("Down")).click();
        const auto edits = dialog.findChildren<QComboBox*>();
        for (qsizetype i = 0; i < fields.size(); ++i)
            edits[i]->setEditText(fields[i]);
        button(dialog, pressed).click();
    }
    std::string result(FindDlg& dialog) {
        std::string text;
        for (const auto* label : dialog.findChildren<QLabel*>())
            text += label->buddy() == nullptr ? label->text().toStdString() : "";
        return text;
    }
};

TEST_F(SearchWindowTest, FindGoesWhereItIsTold) {
    const QString around = QStringLiteral("Wrap around"), up = QStringLiteral("Up");
    const struct {
        size_t caret;
        QStringList ticked;
        const char *pattern, *result;
        TextMatch selection;
    } cases[] = {
        {0, {}, "ab", "1 of 4", {0, 2}},
        {1, {}, "ab", "2 of 4", {3, 5}},
        {7, {}, "ab", "4 of 4", {8, 10}},
        {9, {}, "ab", "Not found: ab", {9, 9}},
        {9, {around}, "ab", "1 of 4, continued from the other end", {0, 2}},
        {7, {up}, "ab", "2 of 4", {3, 5}},
        {1, {up}, "ab", "Not found: ab", {1, 1}},
        {1, {up, around}, "ab", "4 of 4, continued from the other end", {8, 10}},
        {1, {QStringLiteral("Match case")}, "ab", "2 of 3", {6, 8}},
        {5, {around, QStringLiteral("Match whole word only")}, "ab", "1 of 2, continued from the other end", {0, 2}},
        {0, {QStringLiteral("Regular expression")}, "b+$", "1 of 1", {9, 10}},
        {0, {QStringLiteral("Regular expression")}, "(", "The expression is not correct: ", {0, 0}},
    };
    editor().setText("ab Ab abab");
    press(Qt::Key_F, Qt::ControlModifier);
    FindDlg& find = dialog("Find");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.result);
        editor().select({c.caret, c.caret});
        ask(find, c.ticked, {QString::fromUtf8(c.pattern)}, QStringLiteral("Find Next"));
        EXPECT_TRUE(result(find).starts_with(c.result)) << result(find);
        EXPECT_EQ(editor().selection(), c.selection);
    }
    ask(find, {}, {QStringLiteral("B")}, QStringLiteral("Count"));
    EXPECT_EQ(result(find), "4 matches");
    editor().select({3, 5});
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(find.options().pattern, "Ab") << "what is selected is proposed";
    editor().select({3, 3});
    press(Qt::Key_Escape);
    press(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier); // asks for what, and Return finds that in all
    press(Qt::Key_B);
    press(Qt::Key_Return);
    const QLabel& words = window->findChild<ResultsPanel*>()->words();
    EXPECT_TRUE(runUntil([&] { return words.text().startsWith(u"b: "); })) << words.text().toStdString();
}

TEST_F(SearchWindowTest, ReplaceChangesWhatItIsTold) {
    const QString inSelection = QStringLiteral("Replace all in the selection only");
    const struct {
        QStringList ticked;
        const char *pressed, *result, *text;
    } cases[] = {
        {{inSelection}, "Replace All", "2 replaced", "a-x-x-a"},
        {{}, "Replace All", "4 replaced", "x-x-x-x"},
        {{}, "Replace", "4 of 4", "a-a-a-a"}, // what is selected is no match
        {{inSelection, QStringLiteral("Regular expression")}, "Replace All", "2 replaced", "a-x-x-a"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pressed);
        editor().setText("a-a-a-a");
        press(Qt::Key_R, Qt::ControlModifier);
        editor().select({2, 5});
        ask(dialog("Replace"), c.ticked, {QStringLiteral("a"), QStringLiteral("x")}, QString::fromUtf8(c.pressed));
        EXPECT_EQ(editor().text(), c.text);
        EXPECT_EQ(result(dialog("Replace")), c.result);
    }
    std::string big(9 << 20, '-');
    for (size_t at = 0; at < big.size(); at += 100)
        big[at] = '\n';
    big.back() = 'a';
    editor().setText(big);
    ask(dialog("Replace"), {}, {QStringLiteral("a"), QStringLiteral("bc")}, QStringLiteral("Replace All"));
    EXPECT_TRUE(editor().text().substr(big.size() - 2) == "-bc");
    editor().setText("a-a");
    editor().select({0, 1});
    ask(dialog("Replace"), {}, {QStringLiteral("a"), QStringLiteral("x")}, QStringLiteral("Replace"));
    EXPECT_EQ(editor().text(), "x-a");
    EXPECT_EQ(editor().selection(), (TextMatch{2, 3})) << "and on to the next one";
}

// The task of a user who has only a keyboard.
TEST_F(SearchWindowTest, ReplacesByExpressionInSeveralDocumentsByKeys) {
    openFile("a.xml", "<A x=\"1\"/>\n<B y=\"2\"/>\n");
    openFile("b.xml", "<C z=\"3\"/>\n");
    press(Qt::Key_R, Qt::ControlModifier);
    const auto types = [](const char* text) {
        QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(text));
        QApplication::processEvents();
    };
    types("(\\w)=.(\\d)");
    press(Qt::Key_Tab);
    types("\\2=\"$1");
    QStringList order;
    for (int i = 0; i < 10; ++i) {
        press(Qt::Key_Tab);
        auto* button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
        order.append(button == nullptr ? QString() : button->text().remove(u'&'));
    }
    EXPECT_EQ(order.join(u',').toStdString(),
              "Find Next,Count,All Documents,Replace,Replace All,Replace all in the selection only,"
              "Match whole word only,Match case,Regular expression,Wrap around");
    press(Qt::Key_X, Qt::AltModifier);
    const auto inWindow = [&](const QWidget& part) { return QRect(part.mapTo(window.get(), QPoint()), part.size()); };
    EXPECT_FALSE(inWindow(dialog("Replace")).intersects(inWindow(editor()))) << "the text stays to be seen";
    window->resize(window->minimumSizeHint());
    std::set<int> lines;
    for (const auto* part : dialog("Replace").findChildren<QAbstractButton*>()) {
        EXPECT_TRUE(dialog("Replace").rect().contains(part->geometry())) << part->text().toStdString();
        if (qobject_cast<const QCheckBox*>(part) != nullptr)
            lines.insert(part->y());
    }
    EXPECT_EQ(lines.size(), 3) << "what is ticked";
    EXPECT_TRUE(runUntil([&] { return result(dialog("Replace")) == "1 match"; })) << result(dialog("Replace"));
    EXPECT_EQ(editor().send(QsciScintillaBase::SCI_INDICATORVALUEAT, 10, 4), 1) << "it is marked";
    EXPECT_EQ(editor().send(QsciScintillaBase::SCI_INDICATORVALUEAT, 10, 9), 0);

    press(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier); // all that is found
    auto* panel = window->findChild<ResultsPanel*>();
    ASSERT_TRUE(runUntil([&] { return panel->words().text().endsWith(QStringLiteral(": 3 matches")); }));
    editor().replaceBytes(0, 0, "\n");
    window->tabs().all().front()->editor().replaceBytes(0, 0, "<!--x=3-->\n\n");
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(window->tabs().current()->fileName().toStdString(), path("a.xml"));
    EXPECT_EQ(editor().selectedText(), "y=\"2") << "it moved with its text";
    EXPECT_EQ(editor().row(), 4u);

    press(Qt::Key_Left); // The selection would be searched for.
    press(Qt::Key_R, Qt::ControlModifier);
    press(Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(std::string(editor().text()), "<!--x=3-->\n\n<A 1=\"x\"/>\n<B 2=\"y\"/>\n") << "the first has no quotes";
    press(Qt::Key_Escape);
    EXPECT_TRUE(editor().hasFocus());
    EXPECT_EQ(editor().send(QsciScintillaBase::SCI_INDICATORVALUEAT, 10, 15), 0);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_NE(editor().text().find("y=\"2"), std::string_view::npos);

    for (int row : {4, 3}) {
        editor().gotoPlace(static_cast<uint32_t>(row), 1);
        press(Qt::Key_B, Qt::ControlModifier);
    }
    for (uint32_t row : {4u, 3u}) { // and around the end
        press(Qt::Key_PageDown, Qt::AltModifier);
        EXPECT_EQ(editor().row(), row);
    }
    press(Qt::Key_PageUp, Qt::AltModifier);
    EXPECT_EQ(editor().row(), 4u);
    press(Qt::Key_B, Qt::ControlModifier);
    press(Qt::Key_PageDown, Qt::AltModifier);
    EXPECT_EQ(editor().row(), 3u) << "the other is gone";

    openFile("new.xml", "");
    window = nullptr;
    open(); // the window of the next start
    press(Qt::Key_R, Qt::ControlModifier);
    press(Qt::Key_Down);
    EXPECT_EQ(dialog("Replace").options().pattern, "(\\w)=.(\\d)") << "what was searched for is remembered";
}

TEST_F(SearchWindowTest, DocumentsAreClosedAndNamedByTheMenuOfTheirTab) {
    for (const char* name : {"a.xml", "b.xml", "c.xml"})
        openFile(name);
    openFile("b.xml");
    choose(CommandId::copyFullPath);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), path("b.xml"));
    choose(CommandId::copyFileName);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("b.xml"));
    choose(CommandId::closeOthers);
    ASSERT_EQ(window->tabs().count(), 1);
    EXPECT_EQ(window->tabs().current()->document().fileName, path("b.xml"));
    QApplication::clipboard()->clear();
}

} // namespace
