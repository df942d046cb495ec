// The text on pages and in files for others to read.
#include <QPdfWriter>
#include <QPrintPreviewWidget>

#include "HtmlWriter.h"
#include "PagePainter.h"
#include "WindowFixture.h"

namespace zelk {

namespace {

std::string shown(std::string_view text, size_t start = 0) {
    PrintedText printed(text, start, text.size());
    std::string all;
    while (const auto line = printed.next()) {
        all += std::to_string(line->number) + ":";
        for (const PrintedRun& run : line->runs)
            all += " " + std::to_string(run.colour) + "[" + run.text.toStdString() + "]";
        all += "\n";
    }
    return all;
}

} // namespace

TEST(PrintedText, LinesHaveNumbersAndColoursAndDataIsShort) {
    EXPECT_EQ(shown(""), "");
    EXPECT_EQ(shown("<Movie>\r\n\tx\n"), "1: 0[<] 9[Movie] 0[>]\n2: 0[    x]\n");
    const std::string open = "<A B=\"one\ntwo\" />\n\nlast";
    EXPECT_EQ(shown(open), "1: 0[<A B=] 2[\"one]\n2: 2[two\"] 0[ />]\n3:\n4: 0[last]\n");
    EXPECT_EQ(shown(open, open.find("two")), "2: 2[two\"] 0[ />]\n3:\n4: 0[last]\n");
    const std::string data(5000, 'A');
    EXPECT_EQ(shown(data), "1: 0[" + data.substr(0, 60) + "… (5000 characters)]\n");
    const std::string words = data + " " + data;
    EXPECT_EQ(shown(words), "1: 0[" + words + "]\n") << "is no data";
}

TEST(PagePainter, PagesOfARangeAreThoseOfAll) {
    std::string text;
    for (int line = 1; line <= 300; ++line)
        text += "<Line DX=\"" + std::to_string(line) + "\" /> " + std::string(line % 50 == 0 ? 300 : 10, 'x') + "\n";
    const auto pagesOf = [&](PagePainter::Pages pages) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter writer(&buffer);
        JobProgress progress;
        PagePainter(writer, QFont(QStringLiteral("Monospace"), 8), QStringLiteral("a.xml"))
            .paint({text, 0, text.size()}, pages, progress);
        buffer.close();
        return bytes.count("/Type /Page\n");
    };
    const auto all = pagesOf({});
    EXPECT_GT(all, 3);
    EXPECT_LT(all, 10);
    EXPECT_EQ(pagesOf({2, 3}), 2);
    EXPECT_EQ(pagesOf({2, 100}), all - 1);
}

class PrintTest : public WindowTest {
protected:
    QByteArray exported(const std::string& name) {
        answers.addText(path(name));
        choose(CommandId::exportText);
        QFile file(QString::fromStdString(path(name)));
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }
};

TEST_F(PrintTest, TextIsExportedInColours) {
    openFile("a.xml", "<Movie>\n<ShowFrame />\n<Metadata>&lt;x &amp; y</Metadata>\n</Movie>");
    const QByteArray html = exported("all.html");
    EXPECT_TRUE(html.contains("<i>1  </i>&lt;<b class=c9>Movie</b>&gt;\n")) << html.toStdString();
    EXPECT_TRUE(html.contains("&amp;lt;x &amp;amp; y")) << html.toStdString();
    EXPECT_TRUE(html.contains(".c9{color:#0000cd}")) << html.toStdString();
    EXPECT_TRUE(exported("all.pdf").startsWith("%PDF-"));
    auto* link = window->statusBar()->findChild<QLabel*>(QStringLiteral("exported"));
    ASSERT_NE(link, nullptr);
    EXPECT_TRUE(link->isVisible());
    EXPECT_TRUE(link->text().contains(folder.path()) && link->text().contains(QStringLiteral(">all.pdf<")));

    editor().select({10, 12}); // within the second line
    const QByteArray part = exported("part.html");
    EXPECT_TRUE(part.contains("<i>2  </i>") && !part.contains("<i>1  </i>") && !part.contains("<i>3  </i>"));
}

TEST_F(PrintTest, ThePreviewHasPages) {
    openFile("a.xml", "<Movie>\n" + std::string(400, '\n') + "</Movie>");
    answers.add([](QWidget& dialog) {
        auto* preview = dialog.findChild<QPrintPreviewWidget*>();
        ASSERT_NE(preview, nullptr);
        EXPECT_GT(preview->pageCount(), 2);
        EXPECT_TRUE(dialog.windowTitle().contains(QStringLiteral("a.xml")));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    choose(CommandId::printPreview);
}

TEST_F(PrintTest, MovieSettingsHaveRangesAndKeepWhatIsNoNumber) {
    openFile("a.xml", "<Movie SwfVersion=\"8\" Width=\"100\" Height=\"wrong\" FrameRate=\"12.0\" />");
    const auto fields = [](QWidget& dialog) { return dialog.findChildren<QDoubleSpinBox*>(); };
    answers.add([&](QWidget& dialog) {
        ASSERT_EQ(fields(dialog).size(), 4);
        EXPECT_EQ(fields(dialog)[1]->text(), QStringLiteral("100 px = 2000 twips"));
        EXPECT_EQ(fields(dialog)[2]->text(), QStringLiteral("wrong"));
        QTest::keyClick(fields(dialog)[0], Qt::Key_Up);
        QTest::keyClick(fields(dialog)[2], Qt::Key_Up);
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    choose(CommandId::movieSettings);
    EXPECT_EQ(editor().text(), "<Movie SwfVersion=\"9\" Width=\"100\" Height=\"0\" FrameRate=\"12.0\" />");
}

} // namespace zelk
