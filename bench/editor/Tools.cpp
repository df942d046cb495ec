// What is done with a document of 100 MB beside typing. Much of it goes on in threads or in small steps: it is the
// longest wait of the window that counts.
#include <QBuffer>
#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QLabel>
#include <QPdfWriter>
#include <QSettings>
#include <QTemporaryDir>
#include <QThreadPool>

#include "BigDocument.h"
#include "DocumentView.h"
#include "DocumentViewTextCommands.h"
#include "HtmlWriter.h"
#include "KindsPanel.h"
#include "PagePainter.h"
#include "ReplaceDlg.h"
#include "ResultsPanel.h"
#include "SearchController.h"
#include "StaticTextSearch.h"
#include "TextsPanel.h"
#include "WarningsPanel.h"
#include "WindowDialogs.h"

namespace {

using namespace zelk;
using namespace bench;

void handleEventsFor(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    handleEventsUntil([&] { return timer.elapsed() > milliseconds; });
}

void printMemory(const char* after) { std::printf("%-44s %9.0f MB\n", after, memory("VmRSS")); }

// Of the longest document that has it.
void measureWrap(DocumentView& view) {
    TextEditorView& editor = view.editor();
    view.setText(bigText(33'000'000, false));
    handleEvents();
    constexpr int whole = 5'000; // for all lines to be laid out anew
    TextEditorView::Look look;
    look.wraps = true;
    measureWaits("long lines broken, in 33 MB", [&] {
        editor.setTextLook(look);
        handleEventsFor(whole);
    });
    editor.gotoPlace(editor.rowCount() / 2, 5);
    measure("a key in the middle then", 10, [&] { press(editor, Qt::Key_A, QStringLiteral("a")); });
    measureWaits("the window made narrower", [&] {
        editor.window()->resize(600, 700);
        handleEventsFor(whole);
    });
    look.wraps = false;
    measureWaits("not broken any more", [&] {
        editor.setTextLook(look);
        handleEventsFor(1'000);
    });
    editor.window()->resize(1000, 700);
}

void measureBookmarks(TextEditorView& editor) {
    editor.gotoPlace(editor.rowCount() / 2, 1);
    measure("a bookmark set", 1, [&] { editor.toggleBookmark(); });
    editor.gotoPlace(1, 1);
    measure("to the next one", 1, [&] { editor.nextBookmark(); });
    measure("around the end", 1, [&] { editor.nextBookmark(); });
    editor.toggleBookmark();
}

void measureSearch(TextEditorView& editor) {
    const QTemporaryDir folder;
    QSettings settings(folder.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    QWidget window;
    SearchController search(&window, settings);
    QString shown;
    QObject::connect(&search, &SearchController::resultShown, [&](const QString& text) { shown = text; });
    search.setTarget(&editor);
    search.openReplace();
    const auto fields = search.bars().findChildren<QComboBox*>(); // of both bars
    const auto look = [&](const char* name, const char* pattern, bool isExpression) {
        for (auto* box : search.bars().findChildren<QCheckBox*>()) {
            if (box->text().contains(QStringLiteral("xpression")))
                box->setChecked(isExpression);
        }
        measureWaits(name, [&] {
            shown.clear();
            for (qsizetype i : {0, 1})
                fields[i]->setEditText(QString::fromUtf8(pattern));
            handleEventsUntil([&] { return !shown.isEmpty() && !shown.contains(QStringLiteral("more than")); });
        });
    };
    look("a word counted and marked", "Line", false);
    look("an expression", "X=.(\\d+). Y=.\\1.", true);
    look("a string at the end", "the needle", false);
    measureWaits("the next match, from the start", [&] {
        editor.gotoPlace(1, 1);
        search.findNext();
        handleEventsFor(200);
    });
    look("a word again", "Line", false);
    measureWaits("all replaced", [&] {
        fields[2]->setEditText(QStringLiteral("Lines"));
        Q_EMIT search.bars().findChild<ReplaceDlg*>()->replaceAllAsked();
    });
    measureWaits("taken back", [&] { editor.undo(); });
    search.setTarget(nullptr);
}

void measureLists(DocumentView& view, Session& session) {
    ResultsPanel results;
    for (const char* pattern : {"the needle", "Line"}) {
        measureWaits("found in all documents", [&] {
            results.search({pattern, false, true, false}, {&view});
            handleEventsUntil([&] { return !results.words().text().startsWith(QStringLiteral("Looking")); });
        });
    }
    results.hide();
    KindsPanel kinds;
    measureWaits("the kinds", [&] {
        kinds.showDocument(&view);
        kinds.show();
        handleEventsUntil([&] { return !kinds.isBusy(); });
    });
    kinds.hide();
    const auto untilThreadsEnd = [] {
        handleEvents();
        handleEventsUntil([] { return QThreadPool::globalInstance()->activeThreadCount() == 0; });
        handleEvents();
    };
    printMemory("memory before the texts");
    TextsPanel texts;
    measureWaits("the texts", [&] {
        texts.showDocument(&view);
        texts.show();
        untilThreadsEnd();
    });
    texts.hide();
    StaticTextSearch inTexts;
    measureWaits("static texts searched", [&] {
        inTexts.find(view, QStringLiteral("nowhere"), false);
        untilThreadsEnd();
    });
    WarningsPanel warnings;
    warnings.show();
    warnings.showDocument(&view);
    measureWaits("checked, and what is wrong listed", [&] {
        guicommand::documentviewtext::CheckXmlCmd check(session, view, view.document().warnings);
        try {
            check.Execute();
        } catch (const std::exception& error) {
            std::printf("%s\n", error.what());
        }
        warnings.showDocument(&view);
    });
    printMemory("memory then");
}

struct PagesParams : ThreadParams {
    PrintedText text;
    QBuffer* buffer;
    explicit PagesParams(const PrintedText& text, QBuffer* buffer) : text(text), buffer(buffer) {}
};

void measurePages(DocumentView& view, Session& session) {
    QBuffer html, pdf;
    html.open(QIODevice::WriteOnly);
    pdf.open(QIODevice::WriteOnly);
    PagesParams part({view.text(), 0, 10'000'000}, &html), all({view.text(), 0, view.text().size()}, &pdf);
    measureWaits("10 MB of it as HTML", [&] {
        session.user.runJob("", part, [](ThreadParams& params) {
            auto& pages = static_cast<PagesParams&>(params);
            writeHtml(pages.text, {}, *pages.buffer, pages.progress);
        });
    });
    measureWaits("the first 100 of its pages", [&] {
        session.user.runJob("", all, [](ThreadParams& params) {
            auto& pages = static_cast<PagesParams&>(params);
            QPdfWriter writer(pages.buffer);
            PagePainter(writer, QFontDatabase::systemFont(QFontDatabase::FixedFont), {})
                .paint(pages.text, {1, 100}, pages.progress);
        });
    });
}

// The same without indentation, so that every line changes.
void measureFormat(DocumentView& view, Session& session) {
    std::string text = bigText();
    bool isAtStart = false;
    std::erase_if(text, [&](char c) {
        isAtStart = c == '\n' || (isAtStart && c == ' ');
        return isAtStart && c == ' ';
    });
    view.setText(std::move(text));
    handleEvents();
    printMemory("memory before it is formatted");
    measureWaits("Format XML", [&] {
        guicommand::documentviewtext::FormatXmlCmd format(session, view, 0, 0, 0, {});
        format.Execute();
    });
    printMemory("memory then");
    measureWaits("taken back", [&] { view.undo(); });
    measureWaits("done again", [&] { view.redo(); });
}

} // namespace

void bench::measureTools() {
    DocumentView view;
    showBig(view);
    view.setText(bigText());
    handleEvents();
    WindowDialogs dialogs(&view);
    Session session(dialogs);
    std::printf("\ntools for that document, the longest wait:\n");
    measureBookmarks(view.editor());
    measureSearch(view.editor());
    measureLists(view, session);
    measurePages(view, session);
    measureWrap(view);
    measureFormat(view, session);
}
