// The main window, driven by keys: commands, documents, dialogs.

#include <thread>

#include "WindowFixture.h"

namespace {

using namespace zelk;
namespace fs = std::filesystem;

TEST_F(WindowTest, EveryKeyReachesItsCommand) {
    std::vector<int> chosen;
    CommandActions& actions = window->actions();
    QObject::disconnect(&actions, &CommandActions::chosen, nullptr, nullptr);
    QObject::connect(&actions, &CommandActions::chosen, [&chosen](int id) { chosen.push_back(id); });
    for (const CommandRow& row : commandTable())
        actions.action(row.id)->setEnabled(true);
    const std::string before(editor().text());
    size_t keys = 0;
    for (const CommandRow& row : commandTable()) {
        for (const QKeySequence& key : actions.action(row.id)->shortcuts()) {
            chosen.clear();
            press(key[0].key(), key[0].keyboardModifiers());
            EXPECT_EQ(chosen, std::vector<int>{row.id}) << key.toString().toStdString();
            ++keys;
        }
    }
    EXPECT_GT(keys, 30u);
    EXPECT_EQ(editor().text(), before);
    press(Qt::Key_Delete);
    EXPECT_EQ(editor().text(), before.substr(1)) << "Delete belongs to the text";
}

TEST_F(WindowTest, EachEntryOfAMenuHasALetterOfItsOwn) {
    for (const QAction* menu : window->menuBar()->actions()) {
        QStringList letters;
        for (const QAction* entry : menu->menu()->actions()) {
            const QString letter = QKeySequence::mnemonic(entry->text()).toString();
            const bool isKnown = entry->text().startsWith(QStringLiteral("&Save As")); // the letter of Save
            EXPECT_TRUE(letter.isEmpty() || isKnown || !letters.contains(letter)) << entry->text().toStdString();
            letters.append(letter);
        }
    }
}

TEST_F(WindowTest, ClosingAModifiedDocumentAsks) {
    const QString question =
        QStringLiteral("The file has been changed.\nTo save the changes and close, click \"Yes\".\n"
                       "To close without saving, click \"No\".");
    openFile("a.xml");
    press(Qt::Key_Home);
    type("x");
    answers.addButton(QMessageBox::Cancel, question);
    press(Qt::Key_F4, Qt::ControlModifier);
    EXPECT_EQ(window->tabs().count(), 1);
    answers.addButton(QMessageBox::No, question);
    press(Qt::Key_F4, Qt::ControlModifier);
    EXPECT_EQ(window->tabs().count(), 0);
    EXPECT_EQ(libswf::readTextFile(path("a.xml")), "<Movie/>");

    openFile("a.xml");
    type("y");
    answers.addButton(QMessageBox::Yes, question);
    press(Qt::Key_F4, Qt::ControlModifier);
    EXPECT_EQ(window->tabs().count(), 0);
    EXPECT_EQ(libswf::readTextFile(path("a.xml")), "y<Movie/>");

    window->newDocument();
    type("z");
    answers.addButton(QMessageBox::Yes, question);
    answers.add([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }); // of Save As
    press(Qt::Key_F4, Qt::ControlModifier);
    EXPECT_EQ(window->tabs().count(), 1) << "without a name it stays open";
    window->newDocument();
    type("z");
    answers.addButton(QMessageBox::No, question);
    answers.addButton(QMessageBox::Cancel, question);
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->tabs().count(), 1);
    answers.addButton(QMessageBox::No, question);
    EXPECT_TRUE(window->close());
}

TEST_F(WindowTest, FailuresAreToldAndTheCaretGoesThere) {
    openFile("b.xml", "<Movie>\n  <A>\n</Movie>");
    answers.addButton(QMessageBox::Ok, QStringLiteral("Error description: "));
    choose(CommandId::checkXml);
    QStringList shown;
    for (const auto* label : window->statusBar()->findChildren<QLabel*>()) {
        if (label->isVisible())
            shown.append(label->text());
    }
    EXPECT_EQ(shown.join(u'|').toStdString(), "Ready|Row 3, column 8");
    answers.addButton(QMessageBox::Ok, QStringLiteral("Please install a Flash Player."));
    press(Qt::Key_N, Qt::ControlModifier);
    press(Qt::Key_Return, Qt::ControlModifier);
}

TEST_F(WindowTest, RecentFilesAndWindowStateOutliveTheWindow) {
    openFile("a & b.xml");
    for (int times : {1, 2}) { // it is opened once
        openFile("c.xml");
        EXPECT_EQ(window->tabs().count(), 2) << times;
    }
    window->resize(777, 444);
    window->close();
    open();
    EXPECT_EQ(window->size(), QSize(777, 444));
    QMenu* menu = window->actions().submenu(CommandId::recentFiles);
    Q_EMIT menu->aboutToShow();
    ASSERT_EQ(menu->actions().size(), 2);
    EXPECT_EQ(menu->actions()[0]->text().toStdString(), "&1 " + path("c.xml"));
    EXPECT_EQ(menu->actions()[1]->text().toStdString(), "&2 " + path("a && b.xml"));
    EXPECT_EQ(menu->actions()[1]->objectName(), QStringLiteral("57617"));
    menu->actions()[1]->trigger();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("a & b.xml - Zelk"));

    fs::remove(path("c.xml"));
    answers.addButton(QMessageBox::Ok, QString::fromStdString("Unable to open " + path("c.xml")));
    menu->actions()[0]->trigger();
    EXPECT_EQ(window->recentFiles().files(), std::vector<std::string>{path("a & b.xml")});
}

// Chooses a kind of file as by the mouse, and a name.
void enterName(QWidget& dialog, int kind, const QString& name) {
    auto* box = dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
    box->setCurrentIndex(kind);
    Q_EMIT box->activated(kind);
    auto* field = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    field->setText(name);
    QTest::keyClick(field, Qt::Key_Return);
}

TEST_F(WindowTest, NamesInSaveAsGetTheSuffixOfTheirKind) {
    const QString folderName = folder.path() + u'/';
    const struct {
        int kind;
        const char *typed, *saved;
    } cases[] = {{0, "new1", "new1.swf"},      {2, "new1", "new1.xml"},     {0, "movie.v2", "movie.v2.swf"},
                 {2, "dot.", "dot.xml"},       {0, "text.xml", "text.xml"}, {2, "a.SWF", "a.SWF"},
                 {2, ".hidden", ".hidden.xml"}};
    for (const auto& c : cases) {
        answers.add([&](QWidget& dialog) { enterName(dialog, c.kind, folderName + QString::fromUtf8(c.typed)); });
        choose(CommandId::saveAs);
        EXPECT_EQ(window->tabs().current()->document().fileName, path(c.saved)) << c.typed;
        EXPECT_TRUE(fs::exists(path(c.saved)));
    }
    const std::string last = window->tabs().current()->document().fileName;
    for (auto answer : {QMessageBox::No, QMessageBox::Yes}) {
        answers.add([&](QWidget& dialog) { enterName(dialog, 0, folderName + QStringLiteral("new1")); });
        answers.addButton(answer, QStringLiteral("new1.swf already exists."));
        if (answer == QMessageBox::No)
            answers.add([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }); // It asks again.
        choose(CommandId::saveAs);
        EXPECT_EQ(window->tabs().current()->document().fileName, answer == QMessageBox::No ? last : path("new1.swf"));
    }
    choose(CommandId::fileNew);
    const std::string untitled = window->tabs().current()->document().fileName;
    const auto before = libswf::readFile(path("new1.swf"));
    answers.add([&](QWidget& dialog) { enterName(dialog, 0, folderName + QStringLiteral("new1")); });
    answers.addButton(QMessageBox::Yes, QStringLiteral("new1.swf already exists."));
    answers.addButton(QMessageBox::Ok, QStringLiteral("Unable to save this file."));
    choose(CommandId::saveAs);
    EXPECT_EQ(window->tabs().current()->document().fileName, untitled) << "the file is open in the other tab";
    EXPECT_EQ(libswf::readFile(path("new1.swf")), before);
}

TEST_F(WindowTest, KindsOfFileStandInTheDialogsByTheirNames) {
    const QStringList kinds = {QStringLiteral("Swf  File (*.swf)"), QStringLiteral("Zelk File (*.zelk)"),
                               QStringLiteral("Xml File (*.xml)")};
    const auto expect = [this](const QStringList& expected, int current) {
        answers.add([expected, current](QWidget& dialog) {
            const auto* box = dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
            QStringList shown;
            for (int i = 0; i < box->count(); ++i)
                shown.append(box->itemText(i));
            EXPECT_EQ(shown, expected);
            EXPECT_EQ(box->currentIndex(), current);
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
    };
    openFile("a.xml");
    expect(kinds, 2); // that of the document
    choose(CommandId::saveAs);
    expect(QStringList(QStringLiteral("Compatible Files (*.swf;*.zelk;*.xml)")) + kinds
               << QStringLiteral("All Files (*)"),
           0);
    choose(CommandId::fileOpen);
}

TEST_F(WindowTest, AJobShowsItsProgressAndStopsWhenAsked) {
    ThreadParams params;
    ProgressBarDialog dialog(window.get(), QStringLiteral("Working"), params);
    bool wasShown = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (!dialog.isVisible())
            return;
        wasShown = true;
        QTest::keyClick(&dialog, Qt::Key_Escape);
        EXPECT_TRUE(dialog.isVisible()) << "it stays until the work has ended";
    });
    timer.start(20);
    EXPECT_THROW(dialog.run([](ThreadParams& params) {
        for (;;) {
            params.progress.report(0.5);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }),
                 JobCancelled);
    EXPECT_TRUE(wasShown);
    EXPECT_FALSE(dialog.isVisible());
}

} // namespace
