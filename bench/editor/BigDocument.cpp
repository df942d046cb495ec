// A document of 100 MB in the text view, the tools for it, and 100,000 tags and 30,000 methods in the tag list: how
// long each step keeps the window from doing anything else, and how much memory it takes. Runs without a display.
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <fstream>

#include "BigDocument.h"
#include "CommandTable.h"
#include "Conversion.h"
#include "DocumentView.h"
#include "GeneratedMovies.h"
#include "KindsPanel.h"
#include "RecoverySession.h"
#include "SearchController.h"
#include "SwfMovie.h"
#include "UsesPanel.h"
#include "WindowDialogs.h"

std::string bench::bigText(size_t size, bool hasPayloads) {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<Movie SwfVersion=\"8\" Width=\"550\" Height=\"400\" "
        "FrameRate=\"12\">\n";
    text.reserve(size + 2'000'000);
    for (int id = 1; text.size() < size; ++id) {
        const std::string number = std::to_string(id);
        text += "    <DefineShape3 ShapeId=\"" + number + "\">\n        <Shapes>\n";
        for (int edge = 0; edge < 500; ++edge)
            text += "            <Line X=\"" + std::to_string(edge) + "\" Y=\"" + number + "\" />\n";
        text += "        </Shapes>\n    </DefineShape3>\n";
        if (hasPayloads && id % 500 == 0) {
            const std::string payload(1'000'000, 'A');
            text += "    <DefineBinaryData Id=\"" + number + "\">\n        <Data><![CDATA[" + payload +
                    "]]></Data>\n    </DefineBinaryData>\n";
        }
    }
    return text + "    <FrameLabel Name=\"the needle\" />\n</Movie>";
}

double bench::memory(const std::string& what) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(what + ":"))
            return std::stod(line.substr(what.size() + 1)) / 1000;
    }
    return 0;
}

namespace {

using namespace bench;

// A movie with 45 MB of code in 3,000 classes.
std::string manyMethods() {
    std::string text =
        "<Movie SwfVersion=\"10\" Form=\"full\">\n    <DoABC Flags=\"1\" Name=\"code\">\n        <Abc>\n";
    const std::string line = "                        <GetProperty Name=\"{private(a:B)}::member1\" />\n";
    for (int type = 0; type < 3'000; ++type) {
        text += "            <Class Name=\"a::B" + std::to_string(type) + "\">\n";
        for (int method = 0; method < 10; ++method) {
            text += "                <Method Name=\"m" + std::to_string(method) + "\">\n                    <Code>\n";
            for (int i = 0; i < 20; ++i)
                text += line;
            text += "                    </Code>\n                </Method>\n";
        }
        text += "            </Class>\n";
    }
    return text + "        </Abc>\n    </DoABC>\n</Movie>\n";
}

// A movie of 100,000 tags, every tenth of them a sprite with some of its own.
std::string manyTags() {
    std::string text = "<Movie SwfVersion=\"8\" Width=\"550\" Height=\"400\" FrameRate=\"12\">\n";
    for (int id = 1; id <= 10'000; ++id) {
        const std::string number = std::to_string(id);
        text += "    <DefineSprite Id=\"" + number + "\" FrameCount=\"1\">\n        <PlaceObject2 Depth=\"" + number +
                "\" HasCharacter=\"true\" CharacterId=\"1\" />\n        <ShowFrame />\n    </DefineSprite>\n";
        for (int i = 0; i < 7; ++i)
            text += "    <PlaceObject2 Depth=\"" + std::to_string(i) + "\" Name=\"clip" + number + "\" />\n";
    }
    return text + "</Movie>\n";
}

void measureTagList() {
    using namespace zelk;
    DocumentView view;
    showBig(view);
    view.setText(manyTags());
    handleEvents();
    WindowDialogs dialogs(nullptr);
    Session session(dialogs);
    TagTree& tree = view.list().tree();
    auto& filter = *view.findChild<QLineEdit*>();
    std::printf("\n%u tags:\n", view.tags().tags().count());
    view.replace(0, 0, "\n"); // so that they are looked for again
    measure("the list opened", 1, [&] { view.showList(); });
    measure("a page down", 50, [&] { press(tree, Qt::Key_PageDown, {}); });
    measure("to the last tag", 1, [&] { press(tree, Qt::Key_End, {}); });
    for (const char* typed : {"c", "l", "i", "p", "9"})
        measure("a letter of the filter", 1, [&] { press(filter, 0, QString::fromLatin1(typed)); });
    measure("the filter cleared", 1, [&] { filter.clear(); });
    measure("everything opened", 1, [&] { tree.expandAll(); });
    press(tree, Qt::Key_Home, {});
    press(tree, Qt::Key_Down, {});
    measure("a tag deleted", 5, [&] { view.list().run(session, CommandId::clear); });
    measure("taken back", 5, [&] { view.list().run(session, CommandId::undo); });
    measure("everything selected", 1, [&] { tree.selectAll(); });
    measure("everything deleted", 1, [&] { view.list().run(session, CommandId::clear); });
    measure("taken back", 1, [&] { view.list().run(session, CommandId::undo); });
}

// Which go on in small steps: it is the longest wait that counts.
void measurePanes() {
    using namespace zelk;
    DocumentView view;
    showBig(view);
    view.setText(manyTags());
    handleEvents();
    KindsPanel kinds;
    UsesPanel uses;
    kinds.resize(300, 700);
    std::printf("\npanes over %u tags, the longest wait:\n", view.tags().tags().count());
    const auto settle = [&] {
        do
            handleEvents();
        while (kinds.isBusy());
    };
    kinds.showDocument(&view);
    measureWaits("the kinds opened", [&] {
        kinds.show();
        settle();
    });
    measureWaits("all of them unfolded", [&] {
        kinds.list().expandAll();
        settle();
    });
    for (const char* typed : {"c", "l", "i", "p", "9"})
        measureWaits("a letter of their filter", [&] {
            press(kinds.filter(), 0, QString::fromLatin1(typed));
            settle();
        });
    measureWaits("looking inside tags", [&] {
        kinds.inside().click();
        settle();
    });
    measureWaits("the uses of an id", [&] {
        uses.showUses(view, 1);
        settle();
    });
}

void measureMethods() {
    zelk::DocumentView view;
    showBig(view);
    view.setText(manyMethods());
    view.showList();
    handleEvents();
    zelk::TagTree& tree = view.list().tree();
    std::printf("\na tag with %.0f MB of code:\n", static_cast<double>(view.text().size()) / 1e6);
    measure("opened", 1, [&] { tree.expand(tree.currentIndex()); });
    measure("a page down", 20, [&] { press(tree, Qt::Key_PageDown, {}); });
    measure("all classes opened", 1, [&] { tree.expandAll(); });
}

// A movie with a block of 3 MB: opened, shown, typed into, its classes listed.
void measureBlock() {
    std::string text;
    std::printf("\na movie with 3 MB of ActionScript 3:\n");
    measure("read and shown as XML, by a thread", 1, [&] {
        libswf::SwfMovieSafe movie;
        movie.parse(bench::generateAbcMovie(3'000'000), {.fullForm = true, .keepRaw = true});
        text = xml2swf::swfToXmlDocument(movie, {.keepRaw = true});
    });
    zelk::DocumentView view;
    showBig(view);
    zelk::TextEditorView& editor = view.editor();
    measureWaits("text handed over, the longest wait", [&] { view.setText(std::move(text)); });
    const auto rows = editor.rowCount();
    editor.gotoPlace(rows / 2, 1);
    handleEvents();
    measure("a page down", 50, [&] { press(editor, Qt::Key_PageDown, {}); });
    measure("a key in the middle", 50, [&] { press(editor, Qt::Key_A, QStringLiteral("a")); });
    measure("taken back", 50, [&] { editor.undo(); });
    measure("the list opened", 1, [&] { view.showList(); });
    measure("its code opened", 1, [&] { view.list().tree().expand(view.list().tree().currentIndex()); });
}

// What is kept for the case of a crash. Only taking it keeps the window; a document is written there again and again.
void measureCopies(const zelk::TextEditorView& view) {
    const QTemporaryDir folder;
    const auto session = zelk::RecoverySession::begin(folder.path().toStdString());
    std::string copy;
    std::printf("\n");
    measure("a copy for recovery taken", 5, [&] { copy = std::string(view.text()); });
    measure("the copy written, by a thread", 5, [&] { session->keep({}, copy, nullptr); });
    session->end();
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QAccessible::setActive(true); // as with a screen reader
    zelk::TextEditorView view;
    showBig(view);
    handleEvents();

    std::string text = bigText();
    const double textMegabytes = static_cast<double>(text.size()) / 1e6;
    const double before = memory("VmRSS") - textMegabytes;
    QElapsedTimer handing;
    handing.start();
    measureWaits("text handed over, the longest wait", [&] { view.setText(std::move(text)); });
    std::printf("%-44s %9.1f ms\n", "in all", static_cast<double>(handing.nsecsElapsed()) / 1e6);
    const auto rows = view.rowCount();
    measure("to the end", 1, [&] { view.gotoPlace(rows, 1); });
    measure("a page up near the end", 20, [&] { press(view, Qt::Key_PageUp, {}); });
    measure("to places anywhere", 50, [&, row = 1u]() mutable { view.gotoPlace(row += rows / 60, 1); });
    measure("back to the start", 1, [&] { view.gotoPlace(1, 1); });
    const zelk::TextSearch plain({"the needle", false, true, false});
    measure("a string at the end found", 3, [&] { view.select(*plain.next(view.text(), 0)); });
    view.gotoPlace(1, 1);
    const zelk::TextSearch word({"The Needle", true, false, false});
    measure("the same as a word in any case", 3, [&] { view.select(*word.next(view.text(), 0)); });
    view.gotoPlace(rows / 2, 5);
    measure("a key in the middle", 50, [&] { press(view, Qt::Key_A, QStringLiteral("a")); });
    measure("a quote in the middle", 10, [&] { press(view, Qt::Key_QuoteDbl, QStringLiteral("\"")); });
    measure("a step of undo", 10, [&] { view.undo(); });
    view.gotoPlace(rows / 2, 5);
    measure("the first fold", 1, [&] { view.toggleFold(); });
    measure("a fold in the middle", 10, [&] { view.toggleFold(); });
    std::printf("%-44s %9.2f x\n", "memory, in sizes of the text", (memory("VmRSS") - before) / textMegabytes);
    std::printf("%-44s %9.2f x\n", "at most, with the text handed over", (memory("VmHWM") - before) / textMegabytes);
    measureCopies(view);
    view.setText({});
    measureTools();
    measureTagList();
    measurePanes();
    measureMethods();
    measureBlock();
    return 0;
}
