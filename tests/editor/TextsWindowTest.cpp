// The list of texts, driven by keys.
#include "TextsPanel.h"
#include "WindowFixture.h"

namespace zelk {

namespace {

class TextsWindowTest : public WindowTest {
protected:
    static std::string field(const std::string& id, const std::string& text) {
        return "    <DefineEditText Id=\"" + id +
               "\" Color=\"ff\" VarName=\"\">\n        <Bounds MaxX=\"9\" MaxY=\"9\" " +
               "MinX=\"0\" MinY=\"0\" />\n        <BitsField AutoSize=\"false\" ReadOnly=\"true\" Password=\"false\" "
               "Multiline=\"false\" WordWrap=\"false\" UseOutlines=\"false\" HTML=\"false\" WasStatic=\"false\" "
               "Border=\"false\" NoSelect=\"false\" />\n        <InitialText>\n            <![CDATA[" +
               text + "]]>\n        </InitialText>\n    </DefineEditText>\n";
    }
    static std::string movie(const std::string& form, const std::string& first) {
        return "<Movie" + form + " SwfVersion=\"7\">\n" + field("3", first) + field("4", "other") +
               "    <ShowFrame />\n</Movie>";
    }
    void show(const std::string& text) {
        editor().replaceBytes(0, editor().text().size(), text);
        press(Qt::Key_X, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_TRUE(runUntil([&] { return model().rowCount() == 2; }));
    }
    TextsPanel& panel() { return *window->findChild<TextsPanel*>(); }
    QAbstractItemModel& model() { return *panel().list().model(); }
    std::string atCaret() { return std::string(editor().text().substr(editor().caret(), 23)); }
    std::string text() { return std::string(editor().text()); }
};

TEST_F(TextsWindowTest, AnEditedTextChangesTheDocumentInOneStep) {
    for (const std::string form : {"", " Form=\"full\""}) {
        const std::string before = movie(form, "Hello");
        show(before);
        EXPECT_TRUE(panel().list().hasFocus());
        panel().list().setCurrentIndex(model().index(0, 0));
        EXPECT_EQ(model().index(0, 0).data().toString(), QStringLiteral("Hello"));
        press(Qt::Key_F2);
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("Greet"));
        press(Qt::Key_Return);
        EXPECT_TRUE(runUntil([&] { return text() == movie(form, "Greet"); })) << text();
        EXPECT_TRUE(runUntil([&] { return model().index(0, 0).data().toString() == QStringLiteral("Greet"); }));
        press(Qt::Key_Escape);
        EXPECT_TRUE(editor().hasFocus()) << "Escape leads back to the text";
        EXPECT_FALSE(panel().isVisible());
        press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(text(), before);
    }
}

// The glyphs of font 1 are A and b.
static std::string staticText(const std::string& id, const std::vector<int>& glyphs) {
    std::string entries;
    for (const int glyph : glyphs)
        entries += "<GlyphEntry Index=\"" + std::to_string(glyph) + "\" Advance=\"10\" />";
    return "<DefineText Id=\"" + id + "\"><TextRecords><TextRecord FontId=\"1\" Height=\"20\" Type=\"true\">" +
           "<GlyphEntries>" + entries + "</GlyphEntries></TextRecord></TextRecords></DefineText>\n";
}

TEST_F(TextsWindowTest, FindGoesToStaticTextsThatTheXmlDoesNotSpell) {
    const std::string font =
        "<DefineFont FontId=\"1\"><GlyphShapeTable><Glyphs /><Glyphs /></GlyphShapeTable></DefineFont>"
        "<DefineFontInfo2 FontId=\"1\" FontName=\"f\" LanguageCode=\"1\"><BitsField /><CodesTable>"
        "<Code Value=\"65\" /><Code Value=\"98\" /></CodesTable></DefineFontInfo2>\n";
    editor().replaceBytes(0, editor().text().size(),
                          "<Movie SwfVersion=\"7\">" + font + staticText("5", {0, 1, 1, 0}) + staticText("6", {1, 0}) +
                              staticText("7", {1, 1}) + "</Movie>");
    editor().gotoOffset(0);
    press(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("bba"));
    press(Qt::Key_Return);
    EXPECT_TRUE(runUntil([&] { return atCaret().starts_with("<DefineText Id=\"5\""); })) << atCaret();
    EXPECT_EQ(window->statusBar()->currentMessage(), QStringLiteral("In a static text: AbbA"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backspace);
    press(Qt::Key_Return);
    EXPECT_TRUE(runUntil([&] { return atCaret().starts_with("<DefineText Id=\"7\""); })) << atCaret();
    press(Qt::Key_Return);
    EXPECT_TRUE(runUntil([&] { return atCaret().starts_with("<DefineText Id=\"5\""); })) << "around the end";
}

TEST_F(TextsWindowTest, TheFilterFindsTextsAndReturnGoesToTheirTags) {
    show(movie("", "Hello"));
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(panel().filter().hasFocus());
    QTest::keyClicks(&panel().filter(), QStringLiteral("OTH"));
    ASSERT_EQ(model().rowCount(), 1);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(atCaret(), "<DefineEditText Id=\"4\" ");
    editor().replaceBytes(0, 1, "");
    EXPECT_TRUE(runUntil([&] { return panel().words().text().startsWith(QStringLiteral("The texts are read when")); }));
    EXPECT_EQ(model().rowCount(), 1) << "the list stays while the text is being typed";
}

} // namespace

} // namespace zelk
