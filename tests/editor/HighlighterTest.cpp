// Which bytes of a text have which colour.
#include <gtest/gtest.h>

#include "SwfSyntaxHighlighter.h"
#include "TextBuffer.h"
#include "TextEditorView.h"

namespace {

using namespace zelk;

// A letter for the class of each byte: "." is black.
std::string shown(std::string_view classes) {
    constexpr std::string_view letters = ".W\"<>/=SATF";
    std::string result;
    for (char c : classes)
        result += letters.at(static_cast<size_t>(c));
    return result;
}

struct Case {
    const char* text;
    const char* classes;
    bool startsInString = false;
};

TEST(Highlighter, ColoursNamesAndStrings) {
    const Case cases[] = {
        {R"(<DefineShape2 x="1")", ".TTTTTTTTTTTT...\"\"\""},
        {R"(</Movie>)", "..TTTTT."},
        {R"(<JPEGTables)", ".SSSSSSSSSS"},
        {R"(<Value Value)", ".FFFFF......"},
        {R"(<  Value)", "...FFFFF"},
        {
            "<\tValue",
            ".......",
        },
        {"<\nValue", "......."},
        {R"(<Push/>)", ".AAAA.."},
        {R"(<Push2)", "......"},
        {R"(<push)", "....."},
        {R"(<ACTION_NEXTFRAME)", "................."},
        {R"(<GradientRation)", ".SSSSSSSSSSSSSS"},
        {R"(x="a<Movie> y)", "..\"\"\"\"\"\"\"\"\"\"\""},
        {R"(a" <End)", "\"\" .TTT", true},
        {"<![CDATA[\"]]><End", ".........\"\"\"\"\"\"\"\""},
        {"\"\xC3\xA4\" <\xC3\xA4 <End", "\"\"\"\"......TTT"},
        {"<\xFF"
         "End",
         "....."},
        {"", ""},
    };
    for (const Case& c : cases) {
        std::string expected = c.classes;
        std::ranges::replace(expected, ' ', '.');
        EXPECT_EQ(shown(SwfSyntaxHighlighter::classesOf(c.text, c.startsInString)), expected) << c.text;
    }
    using namespace std::string_view_literals;
    EXPECT_EQ(shown(SwfSyntaxHighlighter::classesOf("<End\0<End"sv, false)), ".TTT.....");
}

TEST(Highlighter, TokensHaveTheirClasses) {
    const std::pair<const char*, int> tokens[] = {
        {"", -1}, {"  ", -1}, {"\t", 0},    {"\n", 0}, {"!", 0},    {"abc", 1}, {"\"a", 2},  {"<", 3},         {">", 4},
        {"/", 5}, {"=", 6},   {"Edges", 7}, {"If", 8}, {" End", 9}, {"Id", 10}, {"Line", 7}, {"TextColor", 10}};
    for (const auto& [text, token] : tokens) {
        TextBuffer buffer(text);
        EXPECT_EQ(SwfSyntaxHighlighter::readToken(buffer), token) << text;
    }
}

class ColouredView : public testing::Test {
protected:
    ColouredView() {
        view.resize(600, 300);
        view.show();
    }
    std::string colours() {
        QApplication::processEvents();
        std::string styles;
        for (size_t i = 0; i < view.text().size(); ++i)
            styles += static_cast<char>(view.send(QsciScintillaBase::SCI_GETSTYLEAT, static_cast<long>(i)));
        return shown(styles);
    }
    TextEditorView view;
};

TEST_F(ColouredView, FollowsEdits) {
    view.setText("<End x=\"1\"/>\n<End y=\"2\"/>");
    EXPECT_EQ(colours(), ".TTT...\"\"\"....TTT...\"\"\"..");
    view.replaceBytes(5, 5, "\"");
    EXPECT_EQ(colours(), ".TTT.\"\"\"\".\"\"\"\"\"\"\"\"\"\"\"\".\"\"\"") << "an opened string inverts what follows";
    view.undo();
    EXPECT_EQ(colours(), ".TTT...\"\"\"....TTT...\"\"\"..");
    EXPECT_FALSE(view.isModified());
    EXPECT_FALSE(view.canUndo());
    view.replaceBytes(1, 4, "Xnd");
    EXPECT_EQ(colours(), ".......\"\"\"....TTT...\"\"\"..") << "no old colour stays";
}

TEST_F(ColouredView, AStringThatBeganFarAboveIsOne) {
    std::string text = "<End x=\"1\n";
    for (int i = 0; i < 20000; ++i)
        text += "<End>\n";
    view.setText(text + "<Edges>\" <End>");
    view.gotoPlace(view.rowCount(), 1);
    EXPECT_TRUE(colours().ends_with("\"\"\"\"\"\"\"\"..TTT."));
    view.gotoPlace(1, 1);
    view.replaceBytes(7, 8, "");
    view.gotoPlace(view.rowCount(), 1);
    EXPECT_TRUE(colours().ends_with(".SSSSS.\"\"\"\"\"\"\""));
}

} // namespace
