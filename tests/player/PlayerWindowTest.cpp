// Movies that play in the window: what is seen, what they trace, what they cannot reach.
#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QWebEngineProfile>
#include <QWebEngineView>

#include "Conversion.h"
#include "DocumentViewTextCommands.h"
#include "PlayerFiles.h"
#include "PlayerProcess.h"
#include "PlayerScheme.h"
#include "PlayerWindow.h"
#include "RequestQueue.h"
#include "SwfUtils.h"
#include "TracePane.h"
#include "WindowDialogs.h"

namespace {

using namespace zelk;

constexpr int patience = 60'000; // ms

std::vector<uint8_t> compile(const std::string& tags, const std::string& header = R"(Width="400" Height="300")") {
    xml2swf::MovieTarget target;
    xmlToSwf("<Movie SwfVersion=\"7\" FrameRate=\"20\" " + header + ">" + tags + "</Movie>", target, {});
    const auto bytes = target.movie.serialise(0);
    return {bytes.data(), bytes.data() + bytes.size()};
}

std::string tracing(const std::string& text) { return R"(<Push><String Name=")" + text + R"(" /></Push><Trace />)"; }

std::string frame(const std::string& actions) {
    return "<DoAction><Actions>" + actions + "<End /></Actions></DoAction><ShowFrame />";
}

class PlayerWindowTest : public testing::Test {
protected:
    void open(const std::vector<uint8_t>& movie, QSize size = {}) {
        libswf::writeFile(path("movie.swf"), movie);
        open(path("movie.swf"), size);
    }
    void open(const std::string& fileName, QSize size = {}) {
        const QString package = findPackage(QCoreApplication::applicationDirPath());
        ASSERT_FALSE(package.isEmpty()) << "the player's package is not there";
        window = std::make_unique<PlayerWindow>(QString::fromStdString(fileName), package, size);
        QObject::connect(window.get(), &PlayerWindow::loaded, window.get(), [this] { ++loads; });
        QObject::connect(window.get(), &PlayerWindow::failed, window.get(),
                         [this](const QString& reason) { failure = reason; });
        window->show();
    }
    bool waitFor(const std::function<bool()>& condition) {
        return QTest::qWaitFor([&] { return !failure.isEmpty() || condition(); }, patience) && failure.isEmpty();
    }
    qsizetype traced(const char* line) const {
        return window->trace().text().split(u'\n').count(QString::fromLatin1(line));
    }
    QString evaluate(const QString& script) {
        std::optional<QString> result;
        window->view().page()->runJavaScript(script, [&result](const QVariant& value) { result = value.toString(); });
        EXPECT_TRUE(waitFor([&] { return result.has_value(); })) << script.toStdString();
        return result.value_or(QString());
    }
    std::string path(const char* name) const { return folder.filePath(QString::fromLatin1(name)).toStdString(); }

    const QTemporaryDir folder;
    std::unique_ptr<PlayerWindow> window;
    int loads = 0;
    QString failure;
};

TEST_F(PlayerWindowTest, AMoviePausesPlaysAndStartsAgain) {
    open(compile(frame(tracing("first") + tracing("&lt;umlaut ä&gt;")) + frame(tracing("tick")) +
                 frame(tracing("tock") + R"(<GoToFrame Frame="1" /><Play />)")));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Player"));
    EXPECT_FALSE(window->isModal());
    EXPECT_EQ(window->view().size(), QSize(400, 300));
    EXPECT_FALSE(window->trace().isVisible());
    auto* pause = window->findChild<QAction*>(QStringLiteral("pause"));
    pause->trigger(); // before there is anything to pause
    ASSERT_TRUE(waitFor([&] { return loads == 1; })) << failure.toStdString();
    qsizetype before = -1;
    EXPECT_TRUE(waitFor([&] { // What was under way may still arrive.
        const qsizetype now = traced("tick"), last = std::exchange(before, now);
        QTest::qWait(500);
        return now == last;
    })) << "it goes on";
    pause->trigger();
    EXPECT_TRUE(waitFor([&] { return traced("tick") > before + 1; })) << "it does not go on";
    EXPECT_EQ(traced("first"), 1);
    EXPECT_EQ(window->trace().text().section(u'\n', 1, 1), QString::fromUtf8("<umlaut ä>"));
    EXPECT_TRUE(window->trace().isVisible());
    EXPECT_EQ(window->view().size(), QSize(400, 300)) << "the trace pane takes its room from elsewhere";

    pause->trigger();
    window->trace().clear();
    window->findChild<QAction*>(QStringLiteral("restart"))->trigger();
    EXPECT_TRUE(waitFor([&] { return traced("tick") > 0 && loads == 2; }));
    EXPECT_EQ(traced("first"), 1);
    EXPECT_FALSE(pause->isChecked());
}

TEST_F(PlayerWindowTest, FramesPassOneByOneAndAnotherMovieTakesTheWindow) {
    std::string tags;
    for (int i = 1; i <= 9; ++i)
        tags += frame(tracing("f" + std::to_string(i)));
    open(compile(tags));
    const auto shown = [this] { return window->findChild<QLabel*>(QStringLiteral("frame"))->text(); };
    const auto step = [this] { window->findChild<QAction*>(QStringLiteral("step"))->trigger(); };
    step(); // a movie that plays is stopped by it
    ASSERT_TRUE(waitFor([&] { return loads == 1 && !shown().isEmpty(); })) << failure.toStdString();
    QTest::qWait(500);
    const int before = shown().section(u' ', 1, 1).toInt();
    for (int i = 1; i <= 3; ++i) {
        step();
        const QString next = QStringLiteral("Frame %1 of 9").arg(before + i);
        ASSERT_TRUE(waitFor([&] { return shown() == next; })) << shown().toStdString();
        QTest::qWait(300);
        EXPECT_EQ(shown(), next) << "it goes on";
        EXPECT_EQ(traced(("f" + std::to_string(before + i)).c_str()), 1);
    }
    EXPECT_EQ(window->trace().text().count(u'\n') + 1, before + 3) << "only what the movie itself traces";

    libswf::writeFile(path("other.swf"), compile(frame(tracing("other")), R"(Width="350" Height="100")"));
    window->setMovieName(QStringLiteral("other.swf"));
    window->play(QString::fromStdString(path("other.swf")));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("other.swf - Player"));
    EXPECT_EQ(window->view().size(), QSize(350, 100));
    EXPECT_TRUE(waitFor([&] { return shown() == QStringLiteral("Frame 1 of 1") && traced("other") > 0; }));
    EXPECT_EQ(traced("f1"), 0);
}

TEST_F(PlayerWindowTest, TheWindowFitsTheScreen) {
    open(compile("<ShowFrame />", R"(Width="5000" Height="4000")"));
    EXPECT_TRUE(window->screen()->availableSize().expandedTo(window->size()) == window->screen()->availableSize());
    open(compile("<SetBackgroundColor Color=\"ff0000ff\" /><ShowFrame />"), {225, 200});
    EXPECT_EQ(window->view().size(), QSize(225, 200));
    for (const QPoint place : {QPoint(112, 100), QPoint(2, 2), QPoint(222, 197)}) {
        const auto color = [&] { return window->view().grab().toImage().pixelColor(place); };
        EXPECT_TRUE(waitFor([&] { return color() == QColor(Qt::red); })) << color().name().toStdString();
    }
    window->setPercent(200);
    EXPECT_EQ(window->view().size(), QSize(450, 400));
    window->setPercent(50);
    EXPECT_EQ(window->view().height(), 100);
    QApplication::setActiveWindow(window.get()); // There is no window manager to do it.
    QTest::keyClick(window.get(), Qt::Key_F11);
    EXPECT_TRUE(waitFor([&] { return window->isFullScreen(); }));
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return !window->isFullScreen(); }));
}

// --- walls -----------------------------------------------------------------------------------------------------------

class Listener : public QTcpServer {
public:
    Listener() { EXPECT_TRUE(listen(QHostAddress::LocalHost)); }
    QString address(const char* scheme) const {
        return QStringLiteral("%1://127.0.0.1:%2/x").arg(QString::fromLatin1(scheme)).arg(serverPort());
    }
};

// First the movie tries it, then the page itself, as if the emulator were broken.
TEST_F(PlayerWindowTest, NothingElseIsReached) {
    const Listener server;
    std::string actions;
    for (const std::string& url : {server.address("http").toStdString(), std::string("file:///etc/passwd")}) {
        for (const char* target : {"_level1", "_blank", "_self"})
            actions += "<GetURL URL=\"" + url + "\" Target=\"" + target + "\" />";
    }
    for (int i = 0; i < 2345; ++i)
        actions += tracing("y");
    open(compile(frame(actions) + frame(tracing("tick")) + frame(R"(<GoToFrame Frame="1" /><Play />)")));
    ASSERT_TRUE(waitFor([&] { return traced("tick") > 5; })) << failure.toStdString();
    EXPECT_EQ(traced("y"), 2000) << "a flood of lines is cut";
    EXPECT_TRUE(window->trace().text().contains(QStringLiteral(" more lines)")));
    const QString script = QStringLiteral(R"(
        window.results = {};
        const note = (name, what) => { results[name] = what; };
        for (const url of ["player.js", "movie.swf", "file:///etc/passwd", "%1", "../../etc/passwd",
                           "zelk-player://elsewhere/player.js", "ruffle/..%252Fx.js"]) {
            const request = new XMLHttpRequest();
            request.open("GET", url);
            request.onload = () => note(url, "reached");
            request.onerror = () => note(url, "refused");
            try { request.send(); } catch (error) { note(url, "refused"); }
        }
        for (const url of ["%1", "file:///etc/passwd"]) {
            const picture = new Image();
            picture.onload = () => note("image " + url, "reached");
            picture.onerror = () => note("image " + url, "refused");
            picture.src = url;
        }
        try {
            const socket = new WebSocket("%2");
            socket.onopen = () => note("socket", "reached");
            socket.onerror = () => note("socket", "refused");
        } catch (error) { note("socket", "refused"); }
        note("window", window.open("%1") ? "reached" : "refused");
        const frame = document.createElement("iframe");
        frame.src = "%1";
        document.body.append(frame);
        location.href = "%1";
    )")
                               .arg(server.address("http"), server.address("ws"));
    window->view().page()->runJavaScript(script);
    QString told;
    ASSERT_TRUE(waitFor([&] {
        told = evaluate(QStringLiteral("JSON.stringify(window.results || {})"));
        return told.count(u':') > 0 && QJsonDocument::fromJson(told.toUtf8()).object().size() == 11;
    })) << told.toStdString();
    const QJsonObject results = QJsonDocument::fromJson(told.toUtf8()).object();
    for (const QString& name : results.keys()) {
        const bool isOwn = name == QStringLiteral("player.js") || name == QStringLiteral("movie.swf");
        EXPECT_EQ(results[name].toString(), isOwn ? QStringLiteral("reached") : QStringLiteral("refused"))
            << name.toStdString();
    }
    EXPECT_EQ(window->view().url(), PlayerFiles::pageUrl());
    EXPECT_FALSE(server.hasPendingConnections());
    EXPECT_TRUE(window->profile().isOffTheRecord());
}

// Without the page's own policy.
TEST_F(PlayerWindowTest, TheGuardAloneRefuses) {
    Listener server;
    for (const bool isGuarded : {true, false}) {
        QWebEngineProfile profile;
        auto* guard = new PlayerRequestGuard(&profile);
        if (isGuarded)
            profile.setUrlRequestInterceptor(guard);
        const QSignalSpy refused(guard, &PlayerRequestGuard::refused);
        QWebEnginePage page(&profile);
        page.setHtml(QStringLiteral("<img src='%1'>").arg(server.address("http")), QUrl(server.address("http")));
        EXPECT_TRUE(QTest::qWaitFor([&] { return !refused.isEmpty() || server.hasPendingConnections(); }, patience));
        EXPECT_EQ(server.hasPendingConnections(), !isGuarded) << "the other case shows that the request is made";
    }
}

// --- from the editor -------------------------------------------------------------------------------------------------

class SilentUser : public WindowDialogs {
public:
    SilentUser() : WindowDialogs(nullptr) {}
    std::vector<Failure> failures;
    void report(const Failure& failure) override { failures.push_back(failure); }
};

TEST_F(PlayerWindowTest, WhatIsNoMovieIsReportedByTheEditor) {
    SilentUser user;
    Session session(user);
    QSettings settings(QString::fromStdString(path("settings.ini")), QSettings::IniFormat);
    RequestQueue requests;
    PlayerProcess player(settings, requests);
    libswf::writeFile(path("broken.swf"), std::vector<uint8_t>{'F', 'W', 'S', 7, 9, 9});
    bool hasEnded = false;
    player.play({path("broken.swf")}, [&](const std::exception_ptr& failure) {
        hasEnded = true;
        ASSERT_TRUE(failure);
        guicommand::reportFailure(session, failure);
    });
    ASSERT_TRUE(QTest::qWaitFor([&] { return hasEnded; }, patience));
    ASSERT_EQ(user.failures.size(), 1u);
    EXPECT_EQ(user.failures[0].message, message(MessageCode::cannotPlay));
    EXPECT_NE(user.failures[0].reason, "");
}

} // namespace
