// The list of warnings beside the text, driven by keys.

#include "WarningsPanel.h"
#include "WindowFixture.h"

namespace {

using namespace zelk;
using namespace std::string_literals;

class WarningsWindowTest : public WindowTest {
protected:
    WarningsWindowTest() {
        // Around a ShowFrame, two RemoveObject2 of a byte more than they have, which are kept raw.
        const std::string movie = "FWS\x07\x1C\0\0\0\x08\0\0\x0C\x01\0"
                                  "\x03\x07\x01\0\x02"
                                  "\x40\0"
                                  "\x03\x07\x03\0\x04"
                                  "\0\0"s;
        libswf::writeFile(path("w.swf"), std::vector<uint8_t>(movie.begin(), movie.end()));
        EXPECT_TRUE(window->openFiles({QString::fromStdString(path("w.swf"))}));
    }
    WarningsPanel& panel() { return *window->findChild<WarningsPanel*>(); }
    // Its rows as far as they are open, the row in the text before what is said.
    std::vector<std::string> rows() {
        std::vector<std::string> result;
        const auto* model = panel().list().model();
        const std::function<void(const QModelIndex&)> add = [&](const QModelIndex& parent) {
            for (int i = 0; i < model->rowCount(parent); ++i) {
                const QModelIndex index = model->index(i, 0, parent);
                result.push_back(
                    (index.data().toString() + u' ' + index.siblingAtColumn(2).data().toString()).toStdString());
                if (panel().list().isExpanded(index))
                    add(index);
            }
        };
        add({});
        return result;
    }
    void toggle() { press(Qt::Key_W, Qt::ControlModifier | Qt::ShiftModifier); }
    std::string atCaret() { return std::string(editor().text().substr(editor().caret(), 8)); }
};

TEST_F(WarningsWindowTest, RowsFollowEditsAndLeadToTheirTags) {
    toggle();
    EXPECT_TRUE(panel().list().hasFocus());
    ASSERT_EQ(rows().size(), 1u);
    const std::string title = rows()[0].substr(rows()[0].find(' ') + 1);
    EXPECT_TRUE(title.ends_with(", 2 tags")) << title;
    press(Qt::Key_Right); // opens the group
    ASSERT_EQ(rows().size(), 3u);
    const std::vector<std::string> before = rows();

    press(Qt::Key_X, Qt::ControlModifier | Qt::ShiftModifier); // the texts share its place
    toggle();
    EXPECT_FALSE(panel().list().visibleRegion().isEmpty()) << "behind another one, its key brings it to the front";
    EXPECT_TRUE(panel().list().hasFocus());
    editor().setFocus();
    press(Qt::Key_Home, Qt::ControlModifier);
    for (int line = 0; line < 5; ++line)
        press(Qt::Key_Return);
    const auto moved = [&](size_t i) { return std::stoi(before[i]) + 5; };
    EXPECT_TRUE(runUntil([&] { return std::stoi(rows()[2]) == moved(2); }));
    EXPECT_EQ(std::stoi(rows()[1]), moved(1));

    toggle();
    EXPECT_FALSE(panel().isVisible()) << "the key that opens it closes it";
    toggle();
    panel().list().setCurrentIndex(panel().list().model()->index(1, 0, panel().list().model()->index(0, 0)));
    press(Qt::Key_Return);
    EXPECT_EQ(atCaret(), "<Unknown");
    EXPECT_EQ(editor().rowOf(editor().caret()), static_cast<uint32_t>(moved(2)));
}

TEST_F(WarningsWindowTest, ASaveKeepsWhatIsStillTrue) {
    toggle();
    editor().setFocus();
    const size_t first = editor().text().find("<Unknown");
    editor().replaceBytes(first, editor().text().find("</Unknown>", first) + 10, "<RemoveObject2 Depth=\"1\" />");
    answers.addText(path("saved.swf"));
    press(Qt::Key_S, Qt::ControlModifier | Qt::AltModifier);
    ASSERT_EQ(rows().size(), 1u) << "of the tag that was not touched";
    EXPECT_EQ(std::stoul(rows()[0]), editor().rowOf(editor().text().find("<Unknown")));

    press(Qt::Key_Z, Qt::ControlModifier);
    answers.addText(path("saved.xml"));
    press(Qt::Key_S, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(rows().size(), 1u) << "an XML file converts nothing";
}

TEST_F(WarningsWindowTest, TheFilterIsAKeyAway) {
    toggle();
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(panel().filter().hasFocus());
    QTest::keyClicks(&panel().filter(), QStringLiteral("no such"));
    EXPECT_EQ(rows().size(), 0u);
    press(Qt::Key_Escape);
    EXPECT_TRUE(panel().list().hasFocus()) << "the first Escape clears the filter";
    EXPECT_EQ(rows().size(), 1u);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(QApplication::clipboard()->text().contains(QStringLiteral(", 2 tags"))) << "a line for each row";
    press(Qt::Key_Escape);
    EXPECT_TRUE(editor().hasFocus());
    EXPECT_FALSE(panel().isVisible());
}

} // namespace
