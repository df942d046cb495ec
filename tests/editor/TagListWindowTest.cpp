// The tag list in the window, by keys.

#include "FormNotice.h"
#include "InsertElementDlg.h"
#include "NoticeBar.h"
#include "TagEditorDlg.h"
#include "TagListModel.h"
#include "WindowFixture.h"

namespace {

using namespace zelk;

constexpr const char* movie = R"(<?xml version="1.0" encoding="UTF-8" ?>
<Movie SwfVersion="8" Width="550" Height="400" FrameRate="12">
    <!-- the background -->
    <SetBackgroundColor Color="336699ff" />
    <DefineSprite Id="3" FrameCount="1">
        <RemoveObject2 Depth="1" />
        <ShowFrame />
    </DefineSprite>
    <FrameLabel Label="caf&#233; &amp; bar" />
    <ShowFrame />
</Movie>
)";

class TagListWindowTest : public WindowTest {
protected:
    TagListWindowTest() { load(movie); }
    ~TagListWindowTest() override { QApplication::clipboard()->clear(); }

    void load(const std::string& text) {
        editor().setText(text);
        editor().gotoPlace(4, 1);
    }
    DocumentViewList& list() { return view().list(); }
    // The rows on the screen, "name attributes", those of sprites with a blank before them.
    std::string rows(const QModelIndex& parent = {}, const std::string& indent = {}) {
        QAbstractItemModel& model = *list().tree().model();
        std::string result;
        for (int row = 0; row < model.rowCount(parent); ++row) {
            const QModelIndex first = model.index(row, 0, parent), second = model.index(row, 1, parent);
            const std::string attributes = second.data().toString().toStdString();
            result +=
                indent + first.data().toString().toStdString() + (attributes.empty() ? "" : " ") + attributes + "\n";
            if (list().tree().isExpanded(first))
                result += rows(first, indent + " ");
        }
        return result;
    }
    // Into the tag editor, and takes it over.
    static void typeTag(QWidget& dialog, const char* text) {
        auto& tag = dynamic_cast<TagEditorDlg&>(dialog);
        tag.editor().selectAll();
        tag.editor().replaceSelection(text);
        tag.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    }
    std::string current() { return list().tree().currentIndex().siblingAtColumn(0).data().toString().toStdString(); }
};

TEST_F(TagListWindowTest, TheViewsSwitchAndKeepThePlace) {
    choose(CommandId::tagList);
    EXPECT_TRUE(list().tree().hasFocus());
    EXPECT_TRUE(window->actions().action(CommandId::tagList)->isChecked());
    EXPECT_FALSE(window->actions().action(CommandId::movieXml)->isChecked());
    EXPECT_EQ(list().headerText(),
              QStringLiteral("[ SWF version: 8 Width: 550 Height: 400 Frame rate: 12 Compressed: Yes ]"));
    EXPECT_EQ(list().tree().columnWidth(0), 180);
    EXPECT_EQ(rows(), "SetBackgroundColor Color=\"336699ff\"\nDefineSprite Id=\"3\" FrameCount=\"1\"\n"
                      "FrameLabel Label=\"caf\xC3\xA9 & bar\"\nShowFrame\n");
    EXPECT_EQ(current(), "SetBackgroundColor");
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "RemoveObject2");
    choose(CommandId::movieXml);
    EXPECT_TRUE(editor().hasFocus());
    EXPECT_EQ(editor().row(), 6u);
    EXPECT_EQ(editor().column(), 9u);
    editor().gotoPlace(9, 30);
    type("<");
    answers.add([](QWidget& box) {
        const int title =
            QFontMetrics(QApplication::font()).horizontalAdvance(QStringLiteral("The XML has incorrect format."));
        EXPECT_GT(box.width(), title + 100) << "the title is not cut";
        QTest::keyClick(&box, Qt::Key_Return);
    });
    choose(CommandId::tagList);
    EXPECT_FALSE(view().showsList());
    EXPECT_FALSE(window->actions().action(CommandId::tagList)->isChecked());
}

TEST_F(TagListWindowTest, RowsFollowTheFormAndSayWhatUnknownTagsAre) {
    const std::string tags = "<ImportAssets URL=\"a\" />\n<PlaceObject4 Depth=\"1\" />\n"
                             "<Unknown TagType=\"88\"><Data>AQ==</Data></Unknown>\n</Movie>";
    const QString words = QStringLiteral("DefineFontName, kept raw: FontId: data ends here (code 3)");
    for (const bool isFull : {true, false}) {
        load("<Movie SwfVersion=\"8\"" + std::string(isFull ? " Form=\"full\"" : "") + ">\n" + tags);
        choose(CommandId::tagList);
        const QAbstractItemModel& model = *list().tree().model();
        EXPECT_EQ(model.index(1, 0).data(Qt::FontRole).isNull(), isFull) << "a tag of the full form";
        EXPECT_EQ(model.index(2, 1).data().toString(), words + QStringLiteral(" · TagType=\"88\""));
        press(Qt::Key_End);
        EXPECT_TRUE(statusShows(words));
        press(Qt::Key_Home);
        EXPECT_TRUE(statusShows(QStringLiteral("Ready")));
        choose(CommandId::movieXml);
        editor().gotoPlace(4, 30);
        QApplication::processEvents();
        EXPECT_TRUE(statusShows(words));
    }
}

TEST_F(TagListWindowTest, ABarTellsWhatPlayersReadOtherwise) {
    constexpr std::pair<FormDifferences, const char*> words[] = {
        {{0, 0}, ""},
        {{1, 0}, "1 value of this movie reads differently in players."},
        {{0, 1}, "1 tag of this movie reads differently in players."},
        {{14, 3}, "14 values and 3 tags of this movie read differently in players."}};
    for (const auto& [differences, text] : words)
        EXPECT_EQ(FormNotice::text(differences).toStdString(), text);
    const std::vector<uint8_t> file = {// a Push of 1.0, an import table
                                       'F', 'W',  'S', 9,    0,    0,   0, 0, 0x10, 0,    0,    1, 0,
                                       0,   0x0D, 3,   0x96, 9,    0,   6, 0, 0,    0xF0, 0x3F, 0, 0,
                                       0,   0,    0,   0x44, 0x0E, 'a', 0, 0, 0,    0,    0};
    libswf::writeFile(path("a.swf"), file);
    ASSERT_TRUE(window->openFiles({QString::fromStdString(path("a.swf"))}));
    NoticeBar* bar = view().notice(QStringLiteral("form"));
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->text(), QStringLiteral("1 value and 1 tag of this movie read differently in players."));
    QTest::mouseClick(bar->findChild<QPushButton*>(), Qt::LeftButton);
    ASSERT_TRUE(runUntil([&] { return view().notice(QStringLiteral("form")) == nullptr; }));
    for (const char* shown : {"Form=\"full\"", "<Double Value=\"1\"", "<ImportAssets URL=\"a\""})
        EXPECT_NE(editor().text().find(shown), std::string::npos) << editor().text();
    editor().undo();
    EXPECT_EQ(editor().text().find("Form="), std::string::npos);
}

TEST_F(TagListWindowTest, KeysEditTheTagsWithOneHistory) {
    choose(CommandId::tagList);
    press(Qt::Key_Home);
    press(Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_X, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(editor().text(), movie);
    EXPECT_FALSE(view().document().isModified);
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(rows(), "FrameLabel Label=\"caf\xC3\xA9 & bar\"\nShowFrame\n");
    press(Qt::Key_End);
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(current(), "SetBackgroundColor");
    EXPECT_EQ(list().tree().selectionModel()->selectedRows().size(), 2);
    press(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(rows(), "FrameLabel Label=\"caf\xC3\xA9 & bar\"\nSetBackgroundColor Color=\"336699ff\"\n"
                      "DefineSprite Id=\"3\" FrameCount=\"1\"\nShowFrame\n");
    press(Qt::Key_End);
    press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_NE(editor().text().find("        <ShowFrame />\n        <ShowFrame />\n    </DefineSprite>"),
              std::string::npos);
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(current(), "ShowFrame");
    EXPECT_NE(editor().text().find("    </DefineSprite>\n    <ShowFrame />\n</Movie>"), std::string::npos);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("<ShowFrame />\n"));
}

// Through the system's clipboard, from either view to either view.
TEST_F(TagListWindowTest, BytesGoBetweenTheViewsAsTheyAre) {
    const std::string label = "<FrameLabel Label=\"\xE9 alone\r\" />";
    load("<Movie>\r\n    " + label + "\r\n</Movie>");
    choose(CommandId::tagList);
    press(Qt::Key_Home);
    press(Qt::Key_C, Qt::ControlModifier);
    choose(CommandId::movieXml);
    editor().gotoPlace(1, 8);
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(editor().text(), "<Movie>" + label + "\r\n\r\n    " + label + "\r\n</Movie>");
    editor().select({7, 7 + label.size()});
    editor().cut();
    choose(CommandId::tagList);
    press(Qt::Key_End);
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(editor().text(), "<Movie>\r\n\r\n    " + label + "\r\n    " + label + "\r\n</Movie>");
}

TEST_F(TagListWindowTest, TheTagEditorChecksBeforeItTakesOver) {
    choose(CommandId::tagList);
    answers.add([&](QWidget& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Tag Editor"));
        EXPECT_EQ(dynamic_cast<TagEditorDlg&>(dialog).editor().text(), "<SetBackgroundColor Color=\"336699ff\" />");
        typeTag(dialog, "<!-- -->\n<SetBackgroundColor Color=\"red\" />");
    });
    answers.addButton(QMessageBox::Ok, QStringLiteral("Incorrect value of attribute Color"));
    answers.add([&](QWidget& dialog) {
        EXPECT_EQ(dynamic_cast<TagEditorDlg&>(dialog).editor().row(), 2u) << "the caret is at the place";
        typeTag(dialog, "<SetBackgroundColor Color=\"ff0000ff\" />");
    });
    press(Qt::Key_Return);
    EXPECT_EQ(list().tree().model()->index(0, 1).data().toString(), QStringLiteral("Color=\"ff0000ff\""));
    answers.add([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    press(Qt::Key_Return);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(editor().text(), movie);
}

TEST_F(TagListWindowTest, CommandsOnTheTextShowInTheList) {
    choose(CommandId::tagList);
    press(Qt::Key_Down);
    const size_t version = editor().text().find("8\" Width");
    view().replace(version, version + 1, "9");
    QApplication::processEvents();
    EXPECT_TRUE(list().headerText().startsWith(QStringLiteral("[ SWF version: 9 Width: 550")));
    EXPECT_EQ(current(), "DefineSprite");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(editor().text(), movie);
    view().replace(0, 0, "</broken>");
    QApplication::processEvents();
    EXPECT_FALSE(view().showsList()) << "there is nothing to list";
}

TEST_F(TagListWindowTest, TheFilterKeepsMatchesAndWhatIsAroundThem) {
    choose(CommandId::tagList);
    const std::pair<const char*, const char*> cases[] = {
        {"depth=\"1", "DefineSprite Id=\"3\" FrameCount=\"1\"\n RemoveObject2 Depth=\"1\"\n"},
        {"& BAR", "FrameLabel Label=\"caf\xC3\xA9 & bar\"\n"},
        {"sprite", "DefineSprite Id=\"3\" FrameCount=\"1\"\n"},
        {"nowhere", ""},
    };
    for (const auto& [filter, shown] : cases) {
        press(Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(filter));
        EXPECT_EQ(rows(), shown) << filter;
        const QModelIndex first = list().tree().model()->index(0, 0);
        if (std::string(filter) == "sprite") {
            EXPECT_EQ(list().tree().model()->rowCount(first), 2) << "all of it, to be opened";
        }
        press(Qt::Key_Delete); // of the box
        EXPECT_EQ(editor().text(), movie);
    }
    press(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("show"));
    EXPECT_FALSE(window->actions().action(CommandId::cut)->isEnabled());
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Delete);
    EXPECT_EQ(rows(), "ShowFrame\n") << "the filter stays, and so does the sprite without matches";
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(rows(), "DefineSprite Id=\"3\" FrameCount=\"1\"\n ShowFrame\nShowFrame\n");
    press(Qt::Key_F, Qt::ControlModifier);
    press(Qt::Key_Escape);
    EXPECT_TRUE(list().tree().hasFocus());
    EXPECT_EQ(list().tree().model()->rowCount(), 4);
}

TEST_F(TagListWindowTest, WhatWasDoneStaysInSightAndGoesWhereTheUserLooks) {
    const std::string others =
        "DefineSprite Id=\"3\" FrameCount=\"1\"\nFrameLabel Label=\"caf\xC3\xA9 & bar\"\nShowFrame\n";
    const std::string color = "SetBackgroundColor Color=\"336699ff\"\n";
    choose(CommandId::tagList);
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(rows(), color + color + others);
    EXPECT_EQ(list().tree().currentIndex().row(), 1);
    press(Qt::Key_C, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(editor().text(), movie);
    EXPECT_EQ(list().tree().currentIndex().row(), 0);
    press(Qt::Key_End);
    press(Qt::Key_Up, Qt::ShiftModifier); // the upper one is the current one
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(rows(), color + others + color) << "behind the last selected row";
    press(Qt::Key_Z, Qt::ControlModifier);

    const auto expectStart = [this](const char* start) {
        answers.add([start](QWidget& dialog) {
            EXPECT_EQ(dynamic_cast<InsertElementDlg&>(dialog).choice().name, start);
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        press(Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
    };
    for (const char* start : {"ShowFrame", "PlaceObject2", "PlaceObject2"}) {
        press(start[0] == 'S' ? Qt::Key_Home : Qt::Key_Down);
        expectStart(start);
    }
    choose(CommandId::movieXml);
    expectStart("PlaceObject2"); // behind the label
    choose(CommandId::tagList);

    press(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("bar"));
    press(Qt::Key_Return);
    answers.add([](QWidget& dialog) { typeTag(dialog, "<FrameLabel Name=\"x\" />"); });
    choose(CommandId::editTag);
    EXPECT_EQ(rows(), "FrameLabel Name=\"x\"\n");
    view().replace(editor().text().find("x\" />"), editor().text().find("\" />\n    <Sh"), "yy");
    QApplication::processEvents();
    EXPECT_EQ(rows(), "FrameLabel Name=\"yy\"\n") << "another command changed the selected tag";
    EXPECT_EQ(current(), "FrameLabel");
    EXPECT_EQ(list().tree().selectionModel()->selectedRows().size(), 1);
}

TEST_F(TagListWindowTest, DraggedTagsMove) {
    choose(CommandId::tagList);
    TagTree& tree = list().tree();
    const auto dragLastTo = [&](const QPointF& point) {
        tree.setCurrentIndex(tree.model()->index(tree.model()->rowCount() - 1, 0));
        const std::unique_ptr<QMimeData> data(tree.model()->mimeData(tree.selectionModel()->selectedRows()));
        QDragEnterEvent enter(point.toPoint(), Qt::MoveAction, data.get(), Qt::LeftButton, {});
        QApplication::sendEvent(tree.viewport(), &enter);
        QDragMoveEvent move(point.toPoint(), Qt::MoveAction, data.get(), Qt::LeftButton, {});
        QApplication::sendEvent(tree.viewport(), &move);
        QDropEvent drop(point, Qt::MoveAction, data.get(), Qt::LeftButton, {});
        QApplication::sendEvent(tree.viewport(), &drop);
    };
    const auto sprite = [&] { return QRectF(tree.visualRect(tree.model()->index(1, 0))); };
    dragLastTo(sprite().center());
    EXPECT_EQ(rows(), "SetBackgroundColor Color=\"336699ff\"\nDefineSprite Id=\"3\" FrameCount=\"1\"\n"
                      " RemoveObject2 Depth=\"1\"\n ShowFrame\n ShowFrame\n"
                      "FrameLabel Label=\"caf\xC3\xA9 & bar\"\n")
        << "on a sprite: to its end";
    dragLastTo(sprite().bottomLeft() + QPointF(5, -1));
    EXPECT_EQ(rows(), "SetBackgroundColor Color=\"336699ff\"\nDefineSprite Id=\"3\" FrameCount=\"1\"\n"
                      " FrameLabel Label=\"caf\xC3\xA9 & bar\"\n RemoveObject2 Depth=\"1\"\n ShowFrame\n ShowFrame\n")
        << "below an open one: first in it";
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(editor().text(), movie) << "a step each";
    QMimeData foreign;
    foreign.setData(QString::fromLatin1(TagListModel::dragFormat), "1");
    EXPECT_FALSE(tree.model()->canDropMimeData(&foreign, Qt::MoveAction, -1, -1, {}));
}

TEST_F(TagListWindowTest, ErrorsOfSavingAreShownAtTheirTag) {
    struct Case {
        const char *old, *now, *message;
        const char* tag = nullptr; // none for the movie itself, which is no row
    };
    const Case cases[] = {
        {"Depth=\"1\"", "Depth=\"x\"", "Incorrect value of attribute Depth", "RemoveObject2"},
        {"336699ff", "none", "Incorrect value of attribute Color", "SetBackgroundColor"},
        {"<FrameLabel", "<DefineBinaryData CharacterId=\"1\"><Data>%</Data></DefineBinaryData><FrameLabel",
         "Incorrect Base64 data", "DefineBinaryData"},
        {"550", "wide", "Incorrect value of attribute Width"},
    };
    openFile("m.xml", movie);
    for (const Case& c : cases) {
        std::string text = movie;
        text.replace(text.find(c.old), std::string(c.old).size(), c.now);
        load(text);
        choose(CommandId::tagList);
        answers.addText(path("out.swf"));
        answers.addButton(QMessageBox::Ok, QString::fromUtf8(c.message));
        choose(CommandId::saveAs);
        EXPECT_EQ(view().showsList(), c.tag != nullptr) << c.now;
        EXPECT_EQ(view().showsList() ? current() : std::to_string(editor().row()), c.tag != nullptr ? c.tag : "2");
        choose(CommandId::movieXml);
    }
}

// Classes and methods are rows of their own, which no command of the list takes for tags.
TEST_F(TagListWindowTest, CodeOpensToItsClassesAndMethods) {
    const std::string text = R"(<Movie SwfVersion="9" Width="10" Height="10" FrameRate="12" Form="full">
    <DoABC Flags="1" Name="bytes">
        <DoABCData>AAAA</DoABCData>
    </DoABC>
    <DoABC Flags="1" Name="code">
        <Abc MajorVersion="46" MinorVersion="16">
            <Class Name="game::Ball" Base="Object">
                <Slot Name="x" />
                <Constructor>
                    <Code MaxStack="1"><Nop /></Code>
                </Constructor>
                <Static>
                    <Getter Name="count" />
                </Static>
            </Class>
            <Class Name="Empty" />
            <Script>
                <Method Name="main" />
            </Script>
            <Constants>
                <String Value="&lt;Method Name=" />
            </Constants>
        </Abc>
    </DoABC>
    <ShowFrame />
</Movie>)";
    load(text);
    editor().gotoOffset(text.find("<DoABC Flags=\"1\" Name=\"code"));
    choose(CommandId::tagList);
    const std::string tags = "DoABC Flags=\"1\" Name=\"bytes\"\nDoABC Flags=\"1\" Name=\"code\"\n";
    EXPECT_EQ(rows(), tags + "ShowFrame\n");
    press(Qt::Key_Right); // opens the block
    press(Qt::Key_Down);
    press(Qt::Key_Right); // the class
    const std::string opened = tags + " Class Name=\"game::Ball\" Base=\"Object\"\n"
                                      "  Constructor\n  Getter Name=\"count\"\n"
                                      " Class Name=\"Empty\"\n Method Name=\"main\"\n";
    EXPECT_EQ(rows(), opened + "ShowFrame\n");
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "Getter");
    EXPECT_EQ(view().listedTag()->first, text.find("<DoABC Flags=\"1\" Name=\"code"));
    EXPECT_FALSE(list().hasSelection());
    press(Qt::Key_Delete);
    press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(editor().text(), text);
    press(Qt::Key_Return);
    EXPECT_FALSE(view().showsList());
    EXPECT_EQ(editor().caret(), text.find("<Getter"));

    // What was open stays open when the text changes, and under a filter.
    editor().replaceBytes(text.rfind("<ShowFrame"), text.rfind("<ShowFrame"), "<End />");
    choose(CommandId::tagList);
    EXPECT_EQ(rows(), opened + "End\nShowFrame\n");
    list().findChild<QLineEdit*>()->setText(QStringLiteral("code"));
    EXPECT_EQ(rows(), opened.substr(opened.find('\n') + 1));
}

} // namespace
