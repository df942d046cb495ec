// The text view: bytes, undo, places, search, tags.
#include <gtest/gtest.h>

#include <QTest>
#include <QtWidgets>

#include "ColorText.h"
#include "TagMatch.h"
#include "TextEditorView.h"

namespace {

using namespace zelk;

TEST(TextView, BytesAreWhatTheyWere) {
    std::string all;
    for (int i = 1; i < 256; ++i)
        all += static_cast<char>(i);
    const std::string texts[] = {"",
                                 "\r\n\n\r\r\n",
                                 all,
                                 "\xEF\xBB\xBF<a/>",
                                 "\xE2\x82",
                                 "a\xC0\x80"
                                 "b\r"};
    for (const std::string& text : texts) {
        TextEditorView view;
        view.setText("before");
        view.setText(text);
        EXPECT_EQ(view.text(), text);
        EXPECT_FALSE(view.isModified());
        EXPECT_FALSE(view.canUndo());
        view.selectAll();
        EXPECT_EQ(view.selectedText(), text);
        view.copy();
        view.gotoPlace(1, 1);
        view.paste();
        EXPECT_EQ(view.text(), text + text) << "a paste keeps the bytes";
        view.undo();
        EXPECT_EQ(view.text(), text);
    }
}

// A big text is taken in between events, and no one sees a part of it.
TEST(TextView, BigTextsComeWhole) {
    std::string text;
    while (text.size() < 9 << 20)
        text += "    <Line X=\"1\" />\r\n";
    TextEditorView view;
    view.setText("before");
    const uint64_t changes = view.changeCount();
    int looks = 0, others = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &view, [&] {
        ++looks;
        others += view.text() != "before" && view.text() != text;
    });
    timer.start(0);
    view.setText(text);
    EXPECT_GT(looks, 2);
    EXPECT_EQ(others, 0);
    EXPECT_TRUE(view.text() == text);
    EXPECT_NE(view.changeCount(), changes);
    EXPECT_FALSE(view.isModified());
    EXPECT_FALSE(view.canUndo());
    QTest::keyClick(&view, Qt::Key_Tab);
    EXPECT_TRUE(view.text().starts_with("        <Line")) << "the settings are those of any text";
    view.gotoOffset(view.text().find('\r'));
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_NE(view.text().find(" />\r\n        \r\n    <Line"), std::string_view::npos);
}

// Each big one leads to a text with steps of its own, which no one is to notice.
TEST(TextView, BigChangesAreStepsAsAnyOther) {
    const auto lines = [](size_t size) {
        std::string text(size, '-');
        for (size_t end = 99; end < size; end += 100)
            text[end] = '\n';
        return text;
    };
    std::string text = lines(9 << 20);
    std::fill_n(text.begin(), 10, '\n');
    TextEditorView view;
    view.setText(text);
    view.gotoOffset(7);
    view.toggleBookmark();
    view.gotoOffset(5);
    bool isModified = false;
    QObject::connect(&view, &TextEditorView::modificationChanged, &view, [&](bool is) { isModified = is; });

    QTest::keyClick(&view, Qt::Key_A);
    QCoreApplication::processEvents();
    int told = 0;
    size_t moved = 0;
    QObject::connect(&view, &TextControl::edited, &view, [&] { ++told; });
    QObject::connect(&view, &TextControl::willDelete, &view, [&](size_t start, size_t end) { moved += start + end; });
    QObject::connect(&view, &TextControl::willInsert, &view, [&](size_t at, size_t size) { moved += at * size; });
    view.setSavePoint();
    QTest::keyClick(&view, Qt::Key_D);
    view.undo(); // what could be redone now is not what comes next any more
    QCoreApplication::processEvents();
    told = 0;
    moved = 0;
    const std::string saved(view.text()), some = lines(700'000);
    const std::vector<TextChange> changes{{0, 2, "y"}, {6, 6, some}, {10, 12, "zz"}};
    const std::string changed = "y\n\n\na" + some + "\n\n\n\nzz" + saved.substr(12);
    view.replaceAll(changes);
    EXPECT_EQ(moved, (10 + 12) + 10 * 2 + 6 * 700'000 + (0 + 2) + 0) << "from the last to the first";
    EXPECT_TRUE(view.text() == changed);
    EXPECT_EQ(view.caret(), 700'005) << "behind what comes in there";
    EXPECT_TRUE(isModified && view.isModified());
    QCoreApplication::processEvents();
    EXPECT_EQ(told, 1) << "of all of them";
    view.gotoOffset(0);
    view.nextBookmark();
    EXPECT_EQ(view.row(), 7'006) << "it moves with its line";

    moved = 0;
    view.undo();
    EXPECT_EQ(moved, (700'009 + 700'011) + 700'009 * 2 + (5 + 700'005) + (0 + 1) + 0) << "places of the longer text";
    EXPECT_TRUE(view.text() == saved);
    EXPECT_EQ(view.caret(), 6) << "as it was left";
    EXPECT_FALSE(isModified || view.isModified());
    view.undo();
    EXPECT_TRUE(view.text() == text);
    EXPECT_FALSE(view.canUndo());
    EXPECT_TRUE(isModified && view.isModified());
    view.redo();
    EXPECT_FALSE(isModified || view.isModified());
    view.redo();
    EXPECT_TRUE(view.text() == changed);
    EXPECT_FALSE(view.canRedo());
    QTest::keyClick(&view, Qt::Key_B);
    view.undo();
    EXPECT_TRUE(isModified && view.isModified()) << "its beginning was not saved";
    view.setSavePoint();
    view.undo();
    EXPECT_TRUE(isModified && view.isModified());
    QTest::keyClick(&view, Qt::Key_C);
    EXPECT_FALSE(view.canRedo());
    view.redo();
    view.undo();
    EXPECT_TRUE(view.text() == saved);
    EXPECT_TRUE(view.isModified()) << "what was saved is gone";

    for (int i = 0; i < 7; ++i) // more than it has texts for
        view.replaceAll(changes);
    EXPECT_EQ(view.text().size(), saved.size() + 7 * (some.size() - 1));
    while (view.canUndo())
        view.undo();
    EXPECT_TRUE(view.text() == text);
}

// Pasted and dropped, into a text whose lines end in another way.
TEST(TextView, TextsOfOtherProgramsKeepTheirLineEnds) {
    constexpr const char* foreign = "a\rb\r\nc\n";
    TextEditorView view;
    view.resize(400, 300);
    view.setText("one\r\ntwo");
    view.gotoPlace(2, 1);
    QApplication::clipboard()->setText(QString::fromUtf8(foreign));
    view.paste();
    EXPECT_EQ(view.text(), "one\r\na\rb\r\nc\ntwo");
    EXPECT_EQ(view.caret(), 12u);
    view.undo();

    QMimeData data;
    data.setText(QString::fromUtf8(foreign));
    const QPointF place(view.send(QsciScintillaBase::SCI_POINTXFROMPOSITION, 0, 3) + 1,
                        view.send(QsciScintillaBase::SCI_POINTYFROMPOSITION, 0, 3) + 1);
    QDragEnterEvent enter(place.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(view.viewport(), &enter);
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(view.viewport(), &drop);
    EXPECT_EQ(view.text(), "onea\rb\r\nc\n\r\ntwo");
    EXPECT_EQ(view.selectedText(), foreign);
    view.undo();
    EXPECT_EQ(view.text(), "one\r\ntwo") << "one step";
}

TEST(TextView, TheSavePointTellsWhatIsModified) {
    TextEditorView view;
    std::vector<bool> told;
    QObject::connect(&view, &TextEditorView::modificationChanged, [&told](bool is) { told.push_back(is); });
    view.setText("<a/>");
    told.clear();
    QTest::keyClicks(&view, QStringLiteral("xy"));
    EXPECT_TRUE(view.isModified());
    view.undo();
    EXPECT_FALSE(view.isModified());
    view.redo();
    view.setSavePoint();
    view.undo();
    EXPECT_TRUE(view.isModified());
    EXPECT_EQ(told, (std::vector<bool>{true, false, true, false, true}));
}

TEST(TextView, PlacesAreThoseOfErrors) {
    struct Case {
        uint32_t row, column;
        size_t position;
    };
    TextEditorView view;
    view.setText("ab\r\n\xC3\xA4\xE2\x82\xAC"
                 "c\rd\n");
    for (const Case& c : {Case{1, 1, 0},
                          {1, 3, 2},
                          {1, 9, 2},
                          {2, 1, 4},
                          {2, 2, 6},
                          {2, 3, 9},
                          {2, 4, 10},
                          {2, 99, 10},
                          {3, 1, 11},
                          {4, 1, 13},
                          {4, 5, 13},
                          {99, 1, 13},
                          {0, 0, 0}}) {
        view.gotoPlace(c.row, c.column);
        EXPECT_EQ(view.selection().start, c.position) << c.row << ":" << c.column;
    }
    view.gotoPlace(2, 3);
    EXPECT_EQ(view.row(), 2u);
    EXPECT_EQ(view.column(), 3u);
}

TEST(TextView, FoldedPlacesAreShown) {
    TextEditorView view;
    view.resize(400, 300);
    view.show();
    view.setText("<M>\n    <A>\n        <![CDATA[x\nyyy\n]]>\n    </A>\n    <B/>\n</M>");
    QApplication::processEvents();
    const auto isVisible = [&view](long line) { return view.send(QsciScintillaBase::SCI_GETLINEVISIBLE, line) != 0; };
    view.gotoPlace(4, 1);
    view.toggleFold();
    EXPECT_EQ((std::vector<bool>{isVisible(1), isVisible(2), isVisible(4), isVisible(5)}),
              (std::vector<bool>{true, false, false, true}))
        << "text belongs to its element, at any indentation";
    view.gotoPlace(4, 2);
    EXPECT_TRUE(isVisible(3));
    view.foldAll();
    EXPECT_EQ((std::vector<bool>{isVisible(0), isVisible(1), isVisible(2), isVisible(6)}),
              (std::vector<bool>{true, true, false, true}));
    view.unfoldAll();
    EXPECT_TRUE(isVisible(2));
}

struct SearchCase {
    SearchOptions options;
    const char* text;
    std::vector<TextMatch> matches;
};

TEST(TextSearch, FindsForwardsAndBackwards) {
    const SearchCase cases[] = {
        {{"", false, false, false}, "abc", {}},
        {{"a", false, true, false}, "aAa", {{0, 1}, {2, 3}}},
        {{"a", false, false, false}, "aAa", {{0, 1}, {1, 2}, {2, 3}}},
        {{"aa", false, true, false}, "aaaaa", {{0, 2}, {2, 4}}},
        {{"Id", true, true, false}, "Id ShapeId Id=", {{0, 2}, {11, 13}}},
        {{"a.c", false, false, false}, "abc a.c", {{4, 7}}},
        {{"a.c", false, false, true}, "abc a.c", {{0, 3}, {4, 7}}},
        {{"^b$", false, false, true}, "a\nb\r\nb\rb", {{2, 3}, {5, 6}, {7, 8}}},
        {{"\xC3\xA4", false, false, false}, "\xC3\x84\xC3\xA4", {{0, 2}, {2, 4}}},
        {{"b", false, false, false}, "\xFF\xC3 b\x80 B", {{3, 4}, {6, 7}}},
        {{"x*", false, false, true}, "axb", {{0, 0}, {1, 2}, {2, 2}, {3, 3}}},
        {{"(a)|(b)", true, false, true}, "a ab b", {{0, 1}, {5, 6}}},
    };
    for (const SearchCase& c : cases) {
        const TextSearch search(c.options);
        std::vector<TextMatch> found, backwards;
        for (auto match = search.next(c.text, 0); match;
             match = search.next(c.text, std::max(match->end, match->start + 1)))
            found.push_back(*match);
        EXPECT_EQ(found, c.matches) << c.options.pattern;
        TextSearch::Count count;
        while (!count.isComplete)
            search.count(c.text, c.matches.empty() ? std::nullopt : std::optional(c.matches.back()), count, 0);
        EXPECT_EQ(count.total, c.matches.size()) << c.options.pattern;
        EXPECT_EQ(count.index, c.matches.size()) << c.options.pattern;
        // Piece by piece it is the same, wherever the pieces end.
        const std::string_view text = c.text;
        std::vector<TextMatch> inPieces;
        for (size_t from = 0, piece = 1; from <= text.size();) {
            const size_t before = from;
            if (const auto match = search.nextUpTo(text, from, before + std::min(piece, text.size() - before))) {
                inPieces.push_back(*match);
                from = std::max(match->end, match->start + 1);
                piece = 1;
            } else if (from >= text.size()) {
                break;
            } else {
                piece = from == before ? piece + 1 : 1;
            }
        }
        EXPECT_EQ(inPieces, c.matches) << c.options.pattern;
        for (auto match = search.previous(c.text, std::string_view(c.text).size()); match;
             match = search.previous(c.text, match->start))
            backwards.insert(backwards.begin(), *match);
        const auto isEmpty = [](const TextMatch& match) { return match.start == match.end; };
        if (std::ranges::none_of(c.matches, isEmpty) && c.options.pattern != "aa") {
            EXPECT_EQ(backwards, c.matches) << c.options.pattern;
        }
    }
    const std::string far(10000, 'x');
    EXPECT_EQ(TextSearch({"n", false, true, false}).previous("n" + far, 10001), (TextMatch{0, 1}));
    EXPECT_THROW(TextSearch({"a(", false, false, true}), SearchError);
}

TEST(TextSearch, ReplacesAll) {
    struct Case {
        SearchOptions options;
        const char *with, *text, *expected;
    };
    const Case cases[] = {
        {{"a", false, true, false}, "$1", "bab", "b$1b"},
        {{"(\\w+)=(\\w+)", false, true, true}, "$2=${1}!", "x a=b c=d y", "x b=a! d=c! y"},
        {{"(a)(b)", false, false, true}, "\\2$1\\\\1\\n", "ab", "ba\\1\\n"},
        {{"a", false, false, true}, "", "aba", "b"},
        {{"^", false, false, true}, "> ", "a\nb", "> a\n> b"},
        {{"q", false, false, false}, "x", "abc", "abc"},
    };
    for (const Case& c : cases) {
        TextEditorView view;
        view.setText(c.text);
        const auto replaced = TextSearch(c.options).replaceAll(view.text(), 0, view.text().size(), c.with);
        if (replaced.count > 0)
            view.replaceBytes(replaced.start, replaced.end, replaced.text);
        EXPECT_EQ(view.text(), c.expected) << c.options.pattern;
        view.undo();
        EXPECT_EQ(view.text(), c.text) << "one step of undo";
        EXPECT_FALSE(view.canUndo());
    }
    const auto inside = TextSearch({"a", false, true, false}).replaceAll("aaaa", 1, 3, "b");
    EXPECT_EQ(inside.count, 2u);
    EXPECT_EQ(inside.start, 1u);
    EXPECT_EQ(inside.end, 3u);
    EXPECT_THROW(TextSearch({"(a)", false, true, true}).replaceAll("a", 0, 1, "${2}"), SearchError);
}

TEST(TagMatch, FindsTheOtherTag) {
    struct Case {
        const char* text;
        size_t position;
        std::optional<TagPair> tags;
    };
    const Case cases[] = {
        {"<a><b/></a>", 1, TagPair{{1, 2}, {9, 10}}},
        {"<a><b/></a>", 9, TagPair{{9, 10}, {1, 2}}},
        {"<a><b/></a>", 4, std::nullopt},
        {"<a><a><a/></a></a>", 0, TagPair{{1, 2}, {16, 17}}},
        {"<a><a><a/></a></a>", 17, TagPair{{16, 17}, {1, 2}}},
        {"<a x=\"/>\"></a>", 7, TagPair{{1, 2}, {12, 13}}},
        {"<a><ab></ab>", 1, std::nullopt},
        {"text <a></a>", 2, std::nullopt},
        {"<!-- x -->", 3, std::nullopt},
        {"<", 0, std::nullopt},
        {"", 0, std::nullopt},
        {"</a>", 2, std::nullopt},
    };
    for (const Case& c : cases)
        EXPECT_EQ(matchingTags(c.text, c.position), c.tags) << c.text << " at " << c.position;
}

TEST(ColorText, IsThatOfAttributes) {
    for (const auto& [color, text] : std::vector<std::pair<QColor, std::string>>{{QColor(255, 0, 0, 255), "ff0000ff"},
                                                                                 {QColor(0, 0, 1, 0), "100"},
                                                                                 {QColor(0, 0, 0, 0), "0"},
                                                                                 {QColor(0, 10, 0, 5), "a0005"}}) {
        EXPECT_EQ(colorText(color), text);
        EXPECT_EQ(colorFromText(text), color);
    }
    for (const char* text : {"", "x", "123456789", "12 "})
        EXPECT_EQ(colorFromText(text), std::nullopt) << text;
}

} // namespace
