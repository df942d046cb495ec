// What the window shows while nothing is open, and the guide.
#include "GuideWindow.h"
#include "WindowFixture.h"

namespace zelk {

namespace {

class StartPageTest : public WindowTest {
protected:
    QListWidget& files() { return window->startPage().files(); }
    // A red square of 50 by 50 pixels on a blue stage of 100 by 100, in the second frame.
    void makeMovie(const std::string& name) {
        openFile(name + ".xml", R"(<Movie SwfVersion="8" Width="100" Height="100" FrameRate="12">
            <SetBackgroundColor Color="0000ffff"/>
            <DefineShape3 ShapeId="1"><Bounds MaxX="1000" MaxY="1000" MinX="0" MinY="0"/>
            <FillStyles><SolidFillStyle Color="ff0000ff"/></FillStyles><LineStyles/>
            <Edges><StyleChange><SetFill1 Index="1"/></StyleChange><Line DX="1000" DY="0"/><Line DX="0" DY="1000"/>
            <Line DX="-1000" DY="0"/><Line DX="0" DY="-1000"/></Edges></DefineShape3>
            <DefineSprite Id="2" FrameCount="1"><PlaceObject2 Depth="1" CharacterId="1"/><ShowFrame/></DefineSprite>
            <ShowFrame/><PlaceObject2 Depth="1" CharacterId="2"/><ShowFrame/></Movie>)");
        answers.addText(path(name + ".swf"));
        choose(CommandId::saveAs);
    }
};

QColor colourAt(const QImage& image, double x, double y) {
    return image.pixelColor(int(image.width() * x), int(image.height() * y));
}

} // namespace

TEST_F(StartPageTest, PicturesShowTheFirstFrameWithSomethingInIt) {
    makeMovie("square");
    const QImage picture = moviePicture(QString::fromStdString(path("square.swf")), {80, 40}, {});
    ASSERT_EQ(picture.size(), QSize(40, 40)) << "the shape of the stage";
    EXPECT_EQ(colourAt(picture, 0.2, 0.2), QColor(Qt::red));
    EXPECT_EQ(colourAt(picture, 0.8, 0.2), QColor(Qt::blue));
    EXPECT_EQ(colourAt(picture, 0.2, 0.8), QColor(Qt::blue));
    for (const char* other : {"square.xml", "nothing.swf"})
        EXPECT_TRUE(moviePicture(QString::fromStdString(path(other)), {80, 40}, {}).isNull()) << other;
}

TEST_F(StartPageTest, RecentFilesAreOpenedAndForgotten) {
    makeMovie("square");
    openFile("text.xml");
    choose(CommandId::closeAll);
    ASSERT_TRUE(files().isVisible());
    ASSERT_EQ(files().count(), 3);
    EXPECT_EQ(window->focusWidget(), &files());
    EXPECT_EQ(files().item(0)->text(), QStringLiteral("text.xml"));
    EXPECT_TRUE(runUntil([&] {
        const QImage icon = files().item(1)->icon().pixmap(files().iconSize(), 1.0).toImage();
        return colourAt(icon, 0.4, 0.3) == QColor(Qt::red);
    })) << "a picture of the movie";

    press(Qt::Key_Delete);
    ASSERT_EQ(files().count(), 2);
    EXPECT_EQ(window->recentFiles().files(), (std::vector<std::string>{path("square.swf"), path("square.xml")}));
    press(Qt::Key_Return);
    ASSERT_TRUE(runUntil([&] { return window->tabs().count() == 1; }));
    EXPECT_EQ(view().fileName().toStdString(), path("square.swf"));
    EXPECT_FALSE(files().isVisible());

    choose(CommandId::close);
    EXPECT_TRUE(files().isVisible());
    button(*window, QStringLiteral("New")).click();
    EXPECT_EQ(window->tabs().count(), 1);
}

TEST_F(StartPageTest, TheGuideHasItsPagesPicturesAndLinks) {
    press(Qt::Key_F1);
    auto* guide = window->findChild<GuideWindow*>();
    ASSERT_NE(guide, nullptr);
    GuideBrowser& browser = guide->browser();
    ASSERT_EQ(guide->contents().count(), GuideWindow::pages().size());
    for (const QString& page : GuideWindow::pages()) {
        SCOPED_TRACE(page.toStdString());
        EXPECT_EQ(browser.source().fileName(), page);
        EXPECT_EQ(guide->contents().currentItem()->text(), browser.document()->firstBlock().text());
        QFile file(QStringLiteral(":/guide/") + page);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        QTextDocument once;
        once.setMarkdown(QString::fromUtf8(file.readAll()));
        EXPECT_EQ(browser.toPlainText(), once.toPlainText());
        for (QTextBlock block = browser.document()->begin(); block.isValid(); block = block.next()) {
            for (auto at = block.begin(); !at.atEnd(); ++at) {
                const QTextCharFormat format = at.fragment().charFormat();
                const QUrl link = format.anchorHref();
                EXPECT_TRUE(link.isEmpty() || GuideWindow::pages().contains(link.path())) << link.path().toStdString();
                if (!format.isImageFormat())
                    continue;
                const QUrl name = format.toImageFormat().name();
                const auto image = browser.loadResource(QTextDocument::ImageResource, name).value<QImage>();
                EXPECT_GT(image.width(), 100) << name.path().toStdString();
                EXPECT_LT(image.width(), browser.width());
            }
        }
        QTest::keyClick(&guide->contents(), Qt::Key_Down);
    }
    QTest::keyClick(guide, Qt::Key_Escape);
    EXPECT_FALSE(guide->isVisible());
}

} // namespace zelk
