// Which bytes of a text have which colour.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "SwfSyntaxHighlighter.h"
#include "SwfWords.h"
#include "TextBuffer.h"
#include "TextEditorView.h"
#include "XmlVocabulary.h"

namespace {

using namespace zelk;

// A letter for the class of each byte: "." is black.
std::string shown(std::string_view classes) {
    constexpr std::string_view letters = ".W\"<>/=SATFC";
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
        {R"(<PlaceObject4)", ".TTTTTTTTTTTT"},
        {R"(<CallPropVoid/>)", ".AAAAAAAAAAAA.."},
        {R"(<ClassSlot)", ".SSSSSSSSS"},
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
        {R"(<Jump At="a" To="b")", ".AAAA CC.\"\"\" CC.\"\"\""},
        {R"(<X To At Name="b")", "............ .\"\"\""},
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

// Every word is the name of an element or attribute; these few are kept as they are.
TEST(Highlighter, WordsAreNamesOfTheForm) {
    const std::set<std::u16string_view> odd = {u"ACTION_NEXTFRAME", u"CString", u"GotoLabel", u"BitVal", u"TextColor"};
    std::set<std::u16string> known;
    std::set<const xml2swf::XmlElementType*> seen;
    const auto add = [&known](std::string_view name) { known.emplace(name.begin(), name.end()); };
    const std::function<void(const xml2swf::XmlChildForm&)> visit = [&](const xml2swf::XmlChildForm& form) {
        add(form.name);
        if (!seen.insert(form.type).second)
            return;
        for (const auto& attribute : form.type->attributes)
            add(attribute.name);
        for (const auto& child : form.type->children())
            visit(child);
    };
    visit(xml2swf::XmlVocabulary::get().movie());
    const std::span<const char16_t* const> lists[] = {tagWords, structureWords, actionWords, fieldWords};
    for (const auto& list : lists) {
        for (const std::u16string_view word : list)
            EXPECT_NE(known.contains(std::u16string(word)), odd.contains(word))
                << QStringView(word).toString().toStdString();
    }
}

TEST(Highlighter, ClassesHaveTheColoursOfTheView) {
    const std::pair<int, QRgb> colours[] = {
        {SwfSyntaxHighlighter::Other, 0xFF000000},     {SwfSyntaxHighlighter::String, 0xFFB22222},
        {SwfSyntaxHighlighter::Structure, 0xFF4876FF}, {SwfSyntaxHighlighter::Action, 0xFF836FFF},
        {SwfSyntaxHighlighter::Tag, 0xFF0000CD},       {SwfSyntaxHighlighter::Field, 0xFF2E8B57}};
    TextEditorView view;
    for (const auto& [name, colour] : colours) {
        const auto shown = static_cast<QRgb>(view.send(QsciScintillaBase::SCI_STYLEGETFORE, name)); // blue first
        EXPECT_EQ(qRgb(int(shown & 0xFF), int(shown >> 8 & 0xFF), int(shown >> 16 & 0xFF)), colour) << name;
    }
}

// By the formula of the guidelines for accessible content.
double contrast(QRgb a, QRgb b) {
    const auto luminance = [](QRgb color) {
        const auto linear = [](int channel) {
            const double part = channel / 255.0;
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) + 0.0722 * linear(qBlue(color));
    };
    const double first = luminance(a) + 0.05, second = luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

TEST(Highlighter, ColoursAreReadable) {
    const auto& dark = SwfSyntaxHighlighter::colours(true);
    EXPECT_NEAR(contrast(0xFFFFFFFF, 0xFF777777), 4.48, 0.01);
    EXPECT_EQ(dark.size(), SwfSyntaxHighlighter::colours().size());
    for (const auto& [each, colour] : dark) {
        EXPECT_TRUE(SwfSyntaxHighlighter::colours().contains(each));
        for (QRgb ground : {0, 1})
            EXPECT_GE(contrast(colour, TextEditorView::grounds(true)[ground]), 4.5) << each;
        for (bool isDark : {false, true}) {
            const QRgb selected = TextEditorView::selectedColour(isDark, each);
            EXPECT_GE(contrast(selected, TextEditorView::grounds(isDark)[2]), 4.5) << each << isDark;
        }
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

TEST_F(ColouredView, FollowsTheHeightOfTheView) {
    std::string text;
    while (text.size() < 600)
        text += "<End/>\n";
    view.resize(600, 60);
    view.setText(text);
    EXPECT_TRUE(colours().ends_with("......."));
    view.resize(600, 3000);
    EXPECT_TRUE(colours().ends_with(".TTT..."));
}

// Only base64 of payloads is shortened.
TEST_F(ColouredView, LongLinesAreSeenToTheirEnd) {
    const std::string many(3000, 'A');
    const auto hidden = [&](const std::string& text, size_t caret) {
        view.setText(text);
        view.gotoOffset(caret);
        QApplication::processEvents();
        std::string styles;
        for (size_t i = 0; i < text.size(); ++i)
            styles += static_cast<char>(view.send(QsciScintillaBase::SCI_GETSTYLEAT, static_cast<long>(i)));
        return std::pair(styles, std::ranges::count(styles, char(30)));
    };
    const std::string value = "<End x=\"" + many + "\"/><End/>";
    const auto [styles, none] = hidden(value, 0);
    EXPECT_EQ(none, 0);
    EXPECT_EQ(shown(styles.substr(value.size() - 9)), "\"...TTT..");
    EXPECT_EQ(hidden("<InitialText><![CDATA[" + many + "]]></InitialText>", 0).second, 0);
    for (const std::string before : {"<PngData>", "<PngData>\n  <![CDATA[", "<End x='\"'/>\n<PngData><![CDATA["}) {
        const std::string text = before + many + "]]></PngData><End/>";
        const auto [payload, count] = hidden(text, 0);
        EXPECT_EQ(count, 3000 - 480) << before;
        EXPECT_NE(payload[before.size() + 399], 30);
        EXPECT_EQ(hidden(text, before.size() + 1500).second, 3000 - 480 - 160) << "what is typed is seen";
    }
    std::string line = "<Movie>"; // far longer than what is drawn
    while (line.size() < 1 << 20)
        line += "<End x=\"1\"/>";
    const auto atEnd = hidden(line, line.size());
    EXPECT_GT(atEnd.second, 1 << 19);
    EXPECT_EQ(shown(atEnd.first.substr(line.size() - 12)), ".TTT...\"\"\"..");
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
