// What other programs and crashes do to the work in a window.

#include "NoticeBar.h"
#include "RecoveryDialog.h"
#include "WindowFixture.h"

namespace {

using namespace zelk;
using namespace std::chrono_literals;
namespace fs = std::filesystem;
using libswf::readTextFile;
using libswf::writeTextFile;

constexpr const char* folderVariable = "ZELK_TEST_FOLDER";

class KeeperTest : public WindowTest {
protected:
    QString stateFolder() const { return folder.filePath(QStringLiteral("state")); }
    fs::path copies() const { return path("state/recovery"); }

    // A new start of the program, in place of the one before.
    void start() {
        window.reset();
        open(stateFolder());
        if (Autosave* autosave = window->keeper().autosave())
            autosave->setPause(20ms);
    }
    NoticeBar* notice(const char* name) { return view().notice(QString::fromUtf8(name)); }
    bool untilNotice(const char* name) {
        return runUntil([&] { return notice(name) != nullptr; });
    }
    bool untilNoNotice(const char* name) {
        return runUntil([&] { return notice(name) == nullptr; });
    }
    static void click(QWidget& parent, const QString& text) {
        QTest::mouseClick(&button(parent, text), Qt::LeftButton);
    }
    // Types something and waits until a copy of it is kept.
    void typeAndKeep(const std::string& text) {
        int kept = 0;
        const auto connection = QObject::connect(window->keeper().autosave(), &Autosave::kept,
                                                 [&](DocumentView* of) { kept += of == &view(); });
        type(text);
        EXPECT_TRUE(runUntil([&] { return kept > 0 && view().text().find(text) != std::string::npos; }));
        QObject::disconnect(connection);
    }
    void answerRecovery(const QString& button, std::function<void(RecoveryDialog&)> before = {}) {
        answers.add([button, before](QWidget& dialog) {
            auto* recovery = qobject_cast<RecoveryDialog*>(&dialog);
            ASSERT_NE(recovery, nullptr);
            if (before)
                before(*recovery);
            click(dialog, button);
        });
    }
};

// --- files that other programs change --------------------------------------------------------------------------------

TEST_F(KeeperTest, AFileThatAnotherProgramChangedIsToldAboveTheText) {
    openFile("a.xml", "<Movie>\n\n</Movie>");
    press(Qt::Key_Down);
    writeTextFile(path("a.xml"), "<Movie>\n  <ShowFrame/>\n</Movie>");
    ASSERT_TRUE(untilNotice("file changed"));
    EXPECT_TRUE(editor().hasFocus());
    EXPECT_TRUE(notice("file changed")->text().contains(QStringLiteral("a.xml")));
    for (const char* size : {"Now: 31 bytes", "Before: 17 bytes", "The text here: 17 bytes"})
        EXPECT_TRUE(notice("file changed")->details().contains(QString::fromUtf8(size))) << size;
    type("x"); // goes on into the text
    EXPECT_EQ(editor().text(), "<Movie>\nx\n</Movie>");

    answers.add([](QWidget& dialog) { click(dialog, QStringLiteral("Cancel")); });
    click(*notice("file changed"), QStringLiteral("Reload"));
    EXPECT_EQ(editor().text(), "<Movie>\nx\n</Movie>");
    answers.add([](QWidget& dialog) { click(dialog, QStringLiteral("Reload")); });
    click(*notice("file changed"), QStringLiteral("Reload"));
    EXPECT_EQ(editor().text(), "<Movie>\n  <ShowFrame/>\n</Movie>");
    EXPECT_EQ(editor().row(), 2u);
    EXPECT_FALSE(view().document().isModified);
    EXPECT_EQ(notice("file changed"), nullptr);
    const QWidget* focus = window->focusWidget();
    EXPECT_TRUE(focus == &editor() || editor().isAncestorOf(focus));
}

TEST_F(KeeperTest, MineIsKeptAndSavedWithoutAQuestion) {
    openFile("a.xml");
    writeTextFile(path("a.xml"), "<Film/>");
    ASSERT_TRUE(untilNotice("file changed"));
    click(*notice("file changed"), QStringLiteral("Keep Mine"));
    EXPECT_EQ(notice("file changed"), nullptr);
    EXPECT_TRUE(view().document().isModified);
    type("x");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(view().document().isModified) << "undo does not bring it into the file";
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(view().document().isModified);
    EXPECT_EQ(readTextFile(path("a.xml")), "<Movie/>");
    EXPECT_EQ(readTextFile(path("a.xml.bak")), "<Film/>");
}

TEST_F(KeeperTest, TouchIsNoChangeAndAChangeThatIsTakenBackIsNoneEither) {
    openFile("a.xml");
    openFile("b.xml");
    fs::last_write_time(path("a.xml"), fs::file_time_type::clock::now() - 1h);
    writeTextFile(path("b.xml"), "<Film/>");
    ASSERT_TRUE(untilNotice("file changed")); // of the second, by which time the first was looked at
    EXPECT_EQ(window->tabs().at(0)->notice(QStringLiteral("file changed")), nullptr);
    writeTextFile(path("b.xml"), "<Movie/>");
    EXPECT_TRUE(untilNoNotice("file changed"));
    EXPECT_FALSE(view().document().isModified);
}

TEST_F(KeeperTest, AFileThatIsGoneMakesTheTextTheOnlyCopy) {
    openFile("a.xml");
    fs::rename(path("a.xml"), path("b.xml"));
    ASSERT_TRUE(untilNotice("file removed"));
    EXPECT_TRUE(view().document().isModified) << "closing asks";
    fs::rename(path("b.xml"), path("a.xml"));
    EXPECT_TRUE(untilNoNotice("file removed"));
    EXPECT_FALSE(view().document().isModified);
    fs::remove(path("a.xml"));
    ASSERT_TRUE(untilNotice("file removed"));
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(readTextFile(path("a.xml")), "<Movie/>");
    EXPECT_EQ(notice("file removed"), nullptr);
}

TEST_F(KeeperTest, ABackupOpensAndIsNotSavedOver) {
    openFile("a.xml.bak");
    type("x");
    answers.add([](QWidget& dialog) {
        const auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        ASSERT_NE(name, nullptr);
        EXPECT_EQ(name->text(), QStringLiteral("a.xml"));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(readTextFile(path("a.xml.bak")), "<Movie/>");
}

// --- copies ----------------------------------------------------------------------------------------------------------

// FileAttributes in a long record, which compiling makes short; a FrameLabel; a byte after End.
const std::vector<uint8_t> movie = {'F', 'W', 'S', 8, 34, 0, 0, 0,    8,    0,   0, 12,   1, 0, 0x7F, 0x11, 4,
                                    0,   0,   0,   0, 0,  0, 0, 0xC2, 0x0A, 'x', 0, 0x40, 0, 0, 0,    0xAA, 0xBB};

// Runs in a process of its own (TheProgramIsKilled), which ends when it is killed.
TEST_F(KeeperTest, DISABLED_EditUntilKilled) {
    const QString place = qEnvironmentVariable(folderVariable);
    ASSERT_FALSE(place.isEmpty());
    window.reset();
    open(place + QStringLiteral("/state"));
    window->keeper().autosave()->setPause(20ms);
    ASSERT_TRUE(window->openFiles({place + QStringLiteral("/a.swf")}));
    const std::string text(view().text());
    editor().gotoOffset(text.find("Name=\"x\"") + 6);
    typeAndKeep("unsaved");
    window->newDocument();
    typeAndKeep("never saved");
    std::puts("kept");
    std::fflush(stdout);
    for (;;)
        QThread::sleep(1000);
}

TEST_F(KeeperTest, TheProgramIsKilled) {
    libswf::writeFile(path("a.swf"), movie);
    QProcess editing;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromUtf8(folderVariable), folder.path());
    editing.setProcessEnvironment(environment);
    editing.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("--gtest_filter=KeeperTest.DISABLED_EditUntilKilled"),
                   QStringLiteral("--gtest_also_run_disabled_tests")});
    ASSERT_TRUE(
        runUntil([&] { return editing.peek(100'000).contains("kept") || editing.state() == QProcess::NotRunning; }));
    start();
    window->keeper().offerRecovery(); // It is alive: nothing is offered.
    ASSERT_EQ(editing.state(), QProcess::Running) << editing.readAll().toStdString();
    editing.kill();
    ASSERT_TRUE(editing.waitForFinished(patience));

    answerRecovery(QStringLiteral("Recover"), [](RecoveryDialog& dialog) {
        EXPECT_EQ(dialog.selected().size(), 2u);
        click(dialog, QStringLiteral("Look"));
        EXPECT_NE(dialog.findChild<TextEditorView*>()->text().find("unsavedx"), std::string::npos);
    });
    window->keeper().offerRecovery();
    ASSERT_EQ(window->tabs().count(), 2);
    EXPECT_EQ(window->tabs().at(0)->document().fileName, path("a.swf"));
    EXPECT_TRUE(window->tabs().at(0)->document().isModified);
    EXPECT_FALSE(view().document().hasFile);
    EXPECT_TRUE(view().text().starts_with("never saved"));
    EXPECT_EQ(libswf::readFile(path("a.swf")), movie);

    window->tabs().setCurrentIndex(0);
    type("!"); // where the caret was
    EXPECT_NE(view().text().find("Name=\"unsaved!x\""), std::string::npos);
    press(Qt::Key_S, Qt::ControlModifier);
    std::vector<uint8_t> expected = movie;
    const std::string label = "unsaved!";
    expected[4] = static_cast<uint8_t>(expected[4] + label.size());
    expected[24] = static_cast<uint8_t>(expected[24] + label.size());
    expected.insert(expected.begin() + 26, label.begin(), label.end());
    EXPECT_EQ(libswf::readFile(path("a.swf")), expected);
    EXPECT_EQ(libswf::readFile(path("a.swf.bak")), movie);
    answers.addButton(QMessageBox::No, QStringLiteral("The file has been changed."));
    EXPECT_TRUE(window->close());
    EXPECT_FALSE(fs::exists(copies())) << "a clean close leaves nothing behind";
}

TEST_F(KeeperTest, WhatIsPutOffComesAgainAndWhatIsDiscardedDoesNot) {
    start();
    typeAndKeep("one");
    window->newDocument();
    typeAndKeep("two");
    start(); // without a close, like a crash
    answerRecovery(QStringLiteral("Later"));
    window->keeper().offerRecovery();
    start();
    answerRecovery(QStringLiteral("Discard..."), [this](RecoveryDialog& dialog) {
        auto* list = dialog.findChild<QTreeWidget*>();
        list->clearSelection();
        list->topLevelItem(0)->setSelected(true);
        answers.add([](QWidget& box) { click(box, QStringLiteral("Discard")); });
        answerRecovery(QStringLiteral("Recover"),
                       [](RecoveryDialog& next) { EXPECT_EQ(next.findChild<QTreeWidget*>()->topLevelItemCount(), 1); });
    });
    window->keeper().offerRecovery();
    EXPECT_EQ(window->tabs().count(), 1);
    EXPECT_TRUE(view().text().starts_with("two"));

    start(); // What was recovered and not saved is still kept.
    answerRecovery(QStringLiteral("Recover"));
    window->keeper().offerRecovery();
    EXPECT_TRUE(view().text().starts_with("two"));
    answers.addButton(QMessageBox::No, QStringLiteral("The file has been changed."));
    EXPECT_TRUE(window->close());
    start();
    window->keeper().offerRecovery();
}

TEST_F(KeeperTest, OnlyUnsavedChangesHaveACopy) {
    const auto copiesKept = [this] {
        size_t count = 0;
        for (const auto& entry : fs::recursive_directory_iterator(copies()))
            count += entry.path().filename() == "info";
        return count;
    };
    start();
    openFile("a.xml");
    typeAndKeep("x");
    EXPECT_EQ(copiesKept(), 1u);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(runUntil([&] { return copiesKept() == 0; })) << "taken back";
    typeAndKeep("y");
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(runUntil([&] { return copiesKept() == 0; })) << "saved";
    typeAndKeep("z");
    answers.addButton(QMessageBox::No, QStringLiteral("The file has been changed."));
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_TRUE(runUntil([&] { return copiesKept() == 0; })) << "closed";
}

TEST_F(KeeperTest, ACopyThatCannotBeKeptIsToldAndTypingGoesOn) {
    start();
    fs::remove_all(copies());
    writeTextFile(copies().string(), "in the way");
    type("x");
    ASSERT_TRUE(untilNotice("no copy"));
    EXPECT_TRUE(notice("no copy")->details().contains(QStringLiteral("Not a directory")))
        << notice("no copy")->details().toStdString();
    fs::remove(copies());
    type("y");
    EXPECT_TRUE(untilNoNotice("no copy"));
    EXPECT_TRUE(view().text().starts_with("xy"));
}

// --- the last session ------------------------------------------------------------------------------------------------

TEST_F(KeeperTest, TheFilesOfTheLastSessionComeBackWithTheirCarets) {
    QAction& reopens = *window->actions().action(CommandId::reopenSession);
    EXPECT_FALSE(reopens.isChecked());
    reopens.trigger();
    for (const char* name : {"a.xml", "b c.xml", "gone.xml"}) {
        openFile(name);
        editor().gotoOffset(3);
    }
    window->tabs().setCurrentIndex(1);
    editor().gotoOffset(8);
    EXPECT_TRUE(window->close());
    fs::remove(path("gone.xml"));
    writeTextFile(path("b c.xml"), "<M/>"); // shorter than the caret's place
    start();
    window->keeper().reopenSession();
    ASSERT_EQ(window->tabs().count(), 2);
    EXPECT_EQ(window->tabs().currentIndex(), 1);
    EXPECT_EQ(window->tabs().at(0)->editor().caret(), 3u);
    EXPECT_EQ(editor().caret(), 4u);

    window->actions().action(CommandId::reopenSession)->trigger();
    EXPECT_TRUE(window->close());
    start();
    window->keeper().reopenSession();
    EXPECT_EQ(window->tabs().count(), 1);
    EXPECT_FALSE(view().document().hasFile);
}

} // namespace
