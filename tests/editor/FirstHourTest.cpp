// The first hour of someone who has a keyboard and no manual: fifteen tasks in a row, on movies made from the samples.
// Each one ends with what is to be seen then, or with the bytes on the disk.

#include "Conversion.h"
#include "WindowFixture.h"

namespace {

using namespace zelk;
namespace fs = std::filesystem;
using Bytes = std::vector<uint8_t>;

Bytes movieOf(const std::string& sample) {
    xml2swf::MovieTarget target;
    xmlToSwf(libswf::readTextFile(SAMPLES_DIR "/" + sample + ".xml"), target, {});
    target.movie.isCompressed = false;
    const auto bytes = target.movie.serialise(0);
    return {bytes.data(), bytes.data() + bytes.size()};
}

class FirstHour : public WindowTest {
protected:
    FirstHour() {
        for (const char* name : {"scripted", "pictures"})
            libswf::writeFile(path(name) + ".swf", movieOf(name));
        settings.setValue(QStringLiteral("Player/kind"), QStringLiteral("command"));
        settings.setValue(QStringLiteral("Player/command"),
                          QStringLiteral("cp %1 \"%2\"").arg(QStringLiteral("%1"), QString::fromStdString(played())));
        start();
    }
    ~FirstHour() override { choose(CommandId::themeSystem); }

    void start() {
        window.reset(); // without a close, like a crash
        open(folder.filePath(QStringLiteral("state")));
    }
    std::string played() const { return path("played.swf"); }
    static bool has(const Bytes& bytes, const Bytes& part) {
        return std::search(bytes.begin(), bytes.end(), part.begin(), part.end()) != bytes.end();
    }
    Bytes onDisk(const char* name) const { return libswf::readFile(path(name)); }

    // To whatever has the keyboard.
    static void keys(const char* text) {
        for (; *text != 0; ++text) {
            QTest::keyClick(QApplication::focusWidget(), *text);
            QApplication::processEvents();
        }
    }
    // Alt and the letter of a menu, then those of its entries.
    void menu(const char* letters) {
        press(*letters, Qt::AltModifier);
        while (*++letters != 0) {
            ASSERT_NE(QApplication::activePopupWidget(), nullptr) << letters;
            QTest::keyClick(QApplication::activePopupWidget(), *letters);
            QApplication::processEvents();
        }
    }
    // Leaves the caret behind what was looked for.
    void goBehind(const char* words) {
        press(Qt::Key_F, Qt::ControlModifier);
        keys(words);
        press(Qt::Key_Return);
        press(Qt::Key_Escape);
        EXPECT_EQ(editor().selectedText(), words);
        press(Qt::Key_Right);
    }
    void openByName(const char* name) {
        answers.addText(path(name));
        press(Qt::Key_O, Qt::ControlModifier);
    }
    bool textHas(std::string_view words) { return editor().text().find(words) != std::string_view::npos; }
    QString title() const { return window->windowTitle(); }
    bool barSays(const QString& words) const { return window->statusBar()->currentMessage() == words; }
    bool isDark() {
        return QApplication::palette().color(QPalette::Window).lightness() < 128 &&
               editor().send(QsciScintillaBase::SCI_STYLEGETBACK, QsciScintillaBase::STYLE_DEFAULT) == 0x221F1F;
    }
    bool hasSettings() {
        return editor().send(QsciScintillaBase::SCI_STYLEGETSIZE, QsciScintillaBase::STYLE_DEFAULT) == 17 &&
               editor().indentUnit() == "  ";
    }
    std::string row(int number) {
        return view().list().tree().model()->index(number, 0).data().toString().toStdString();
    }

    // --- the tasks ---------------------------------------------------------------------------------------------------

    void openAMovie() {
        openByName("scripted.swf");
        EXPECT_EQ(title(), QStringLiteral("scripted.swf - Zelk"));
        EXPECT_TRUE(textHas("<FrameLabel Name=\"step\""));
    }

    void changeALabel() {
        goBehind("Name=\"step");
        keys("Two");
        EXPECT_EQ(title(), QStringLiteral("scripted.swf* - Zelk"));
        EXPECT_TRUE(textHas("<FrameLabel Name=\"stepTwo\""));
    }

    void save() {
        const Bytes before = onDisk("scripted.swf");
        press(Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(title(), QStringLiteral("scripted.swf - Zelk"));
        Bytes expected = before;
        const std::string_view label = "step", more = "Two";
        const auto place = std::search(expected.begin(), expected.end(), label.begin(), label.end());
        *(place - 2) = static_cast<uint8_t>(*(place - 2) + more.size()); // the tag's length
        expected[4] = static_cast<uint8_t>(expected[4] + more.size());   // the file's
        expected.insert(place + static_cast<ptrdiff_t>(label.size()), more.begin(), more.end());
        EXPECT_EQ(onDisk("scripted.swf"), expected);
        EXPECT_EQ(onDisk("scripted.swf.bak"), before);
    }

    void play() {
        press(Qt::Key_Return, Qt::ControlModifier);
        EXPECT_TRUE(runUntil([&] { return fs::exists(played()) && onDisk("played.swf") == onDisk("scripted.swf"); }));
    }

    void findAndReplaceByExpression() {
        press(Qt::Key_R, Qt::ControlModifier);
        keys("TranslateX=\"(\\d+)\" TranslateY=\"(\\d+)\"");
        press(Qt::Key_Tab);
        keys("TranslateX=\"\\2\" TranslateY=\"$1\"");
        press(Qt::Key_X, Qt::AltModifier);
        press(Qt::Key_A, Qt::AltModifier);
        EXPECT_TRUE(barSays(QStringLiteral("5 replaced"))) << window->statusBar()->currentMessage().toStdString();
        press(Qt::Key_X, Qt::AltModifier);
        press(Qt::Key_Escape);
        EXPECT_TRUE(textHas("TranslateX=\"200\" TranslateY=\"0\""));
        EXPECT_TRUE(textHas("TranslateX=\"1400\" TranslateY=\"2900\""));
    }

    void insertATag() {
        press(Qt::Key_L, Qt::ControlModifier);
        press(Qt::Key_Home);
        answers.addText("protect");
        answers.add(
            [](QWidget& dialog) { QTest::keyClick(dialog.focusWidget(), Qt::Key_Return, Qt::ControlModifier); });
        press(Qt::Key_Insert);
        EXPECT_EQ(row(0), "SetBackgroundColor");
        EXPECT_EQ(row(1), "Protect");
    }

    void deleteATag() {
        press(Qt::Key_Down);
        press(Qt::Key_Delete);
        EXPECT_EQ(row(1), "Protect");
        EXPECT_EQ(row(2), "DefineSprite");
        EXPECT_FALSE(textHas("<DefineShape"));
    }

    void moveATag() {
        press(Qt::Key_Home);
        press(Qt::Key_Down, Qt::AltModifier);
        EXPECT_EQ(row(0), "Protect");
        EXPECT_EQ(row(1), "SetBackgroundColor");
    }

    void undoAcrossViews(const std::string& before) {
        press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(row(0), "SetBackgroundColor");
        press(Qt::Key_L, Qt::ControlModifier);
        EXPECT_TRUE(editor().hasFocus());
        press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_TRUE(textHas("<DefineShape"));
        EXPECT_TRUE(textHas("<Protect"));
        press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(editor().text(), before);
    }

    void check() {
        goBehind("CharacterId=\"3");
        keys("4");
        menu("TC");
        auto* found = window->findChild<WarningsPanel*>();
        ASSERT_TRUE(found->isVisible());
        ASSERT_EQ(found->list().model()->rowCount(), 1);
        EXPECT_EQ(found->list().model()->index(0, 3).data().toString(), QStringLiteral("error"));
        press(Qt::Key_Return);
        EXPECT_TRUE(editor().text().substr(editor().caret()).starts_with("<PlaceObject2 Depth=\"2\""));
        press(Qt::Key_Z, Qt::ControlModifier);
        answers.addButton(QMessageBox::Ok, QStringLiteral("The XML is correct."));
        menu("TC");
    }

    void replaceAPicture() {
        QImage picture(2, 3, QImage::Format_ARGB32);
        picture.fill(Qt::red);
        ASSERT_TRUE(picture.save(QString::fromStdString(path("new.png"))));
        openByName("pictures.swf");
        press(Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
        auto* kinds = window->findChild<KindsPanel*>();
        ASSERT_TRUE(runUntil([&] { return !kinds->isBusy() && kinds->list().model()->rowCount() > 0; }));
        press(Qt::Key_Home);
        const auto current = [&] { return kinds->list().currentIndex().siblingAtColumn(0).data().toString(); };
        for (int row = 0; row < 9 && current() != QStringLiteral("Pictures (1)"); ++row)
            press(Qt::Key_Down);
        press(Qt::Key_Right);
        press(Qt::Key_Down);
        EXPECT_TRUE(current().startsWith(QStringLiteral("DefineBitsLossless2")));
        answers.addText(path("new.png"));
        press(Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_TRUE(textHas("BitmapWidth=\"2\" BitmapHeight=\"3\""));
        press(Qt::Key_Escape);
        EXPECT_FALSE(kinds->isAncestorOf(QApplication::focusWidget()));
        EXPECT_EQ(title(), QStringLiteral("pictures.swf* - Zelk"));
    }

    void changeSettings() {
        answers.add([](QWidget& dialog) {
            ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
            QTest::keyClick(&dialog, Qt::Key_A, Qt::AltModifier); // no backups
            const auto* backups = qobject_cast<QCheckBox*>(dialog.focusWidget());
            ASSERT_TRUE(backups != nullptr && QTest::qWaitFor([=] { return !backups->isChecked(); }));
            for (const auto& [key, number] : {std::pair(Qt::Key_S, "17"), std::pair(Qt::Key_W, "2")}) { // size, tab
                QTest::keyClick(&dialog, key, Qt::AltModifier);
                QTest::keyClick(dialog.focusWidget(), Qt::Key_A, Qt::ControlModifier);
                QTest::keyClicks(dialog.focusWidget(), QString::fromUtf8(number));
            }
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        });
        press(Qt::Key_Comma, Qt::ControlModifier);
        EXPECT_TRUE(hasSettings());
        EXPECT_EQ(settings.value(QStringLiteral("Player/kind")), QStringLiteral("command")) << "as it was";
        press(Qt::Key_S, Qt::ControlModifier);
        const Bytes size = {1, 0, 3, 2, 0, 3, 0}; // the format, the width and the height of the picture
        EXPECT_TRUE(has(onDisk("pictures.swf"), size));
        EXPECT_FALSE(fs::exists(path("pictures.swf.bak")));
    }

    void editAScript() {
        press(Qt::Key_Tab, Qt::ControlModifier);
        EXPECT_EQ(title(), QStringLiteral("scripted.swf* - Zelk"));
        menu("TL"); // Branches lead to labels, so that actions can come and go.
        goBehind("<Stop />");
        press(Qt::Key_Return);
        keys("<play");
        press(Qt::Key_Return); // chosen from the list
        keys("/>");
        EXPECT_TRUE(textHas("<Stop />\n            <Play/>\n"));
        press(Qt::Key_S, Qt::ControlModifier);
        const Bytes code = {0x9D, 2, 0, 7, 0, 7, 6, 0x99, 2, 0, 6, 0, 0x81, 2, 0, 1, 0, 6, 0};
        EXPECT_TRUE(has(onDisk("scripted.swf"), code)) << "the branch goes a byte further";
    }

    void takeTheDarkTheme() {
        menu("VHD");
        EXPECT_TRUE(isDark());
    }

    void recover() {
        window->keeper().autosave()->setPause(std::chrono::milliseconds(20));
        bool isKept = false;
        QObject::connect(window->keeper().autosave(), &Autosave::kept, &view(), [&] { isKept = true; });
        goBehind("Name=\"stepTwo");
        keys("!");
        ASSERT_TRUE(runUntil([&] { return isKept; }));
        const Bytes before = onDisk("scripted.swf");
        start();
        EXPECT_TRUE(isDark() && hasSettings()) << "what was chosen stays";
        answers.add([](QWidget& dialog) { QTest::keyClick(dialog.focusWidget(), Qt::Key_Return); });
        window->keeper().offerRecovery();
        EXPECT_EQ(title(), QStringLiteral("scripted.swf* - Zelk"));
        EXPECT_TRUE(textHas("Name=\"stepTwo!\""));
        EXPECT_EQ(onDisk("scripted.swf"), before);
        press(Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(onDisk("scripted.swf").size(), before.size() + 1);
        press(Qt::Key_F4, Qt::AltModifier);
        EXPECT_FALSE(window->isVisible()) << "all is saved";
    }
};

TEST_F(FirstHour, FifteenTasksByKeys) {
    openAMovie();
    changeALabel();
    save();
    play();
    findAndReplaceByExpression();
    const std::string before(editor().text());
    insertATag();
    deleteATag();
    moveATag();
    undoAcrossViews(before);
    check();
    replaceAPicture();
    changeSettings();
    editAScript();
    takeTheDarkTheme();
    recover();
}

} // namespace
