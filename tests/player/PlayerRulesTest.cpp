// What a page may reach, and how the engine is started.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "PlayerFiles.h"
#include "PlayerScheme.h"

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {

using namespace zelk;

void write(const QString& name, const QByteArray& content) {
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
    file.write(content);
}

TEST(PlayerFiles, OnlyThePageThePackageAndTheMovieAreServed) {
    const QTemporaryDir folder;
    const QDir root(folder.path());
    ASSERT_TRUE(root.mkpath(QStringLiteral("package/sub")));
    for (const char* name : {"package/a.js", "package/b.wasm", "package/c.txt", "package/.d.js", "package/sub/e.js",
                             "secret.js", "movie with blank.swf"})
        write(root.filePath(QString::fromLatin1(name)), "x");
    const PlayerFiles files(root.filePath(QStringLiteral("package")),
                            root.filePath(QStringLiteral("movie with blank.swf")));
    struct Case {
        const char *url, *mimeType; // none for what is refused
    };
    const Case cases[] = {
        {"zelk-player://player/player.html", "text/html"},
        {"zelk-player://player/player.js", "text/javascript"},
        {"zelk-player://player/movie.swf", "application/x-shockwave-flash"},
        {"zelk-player://player/ruffle/a.js", "text/javascript"},
        {"zelk-player://player/ruffle/b.wasm", "application/wasm"},
        {"zelk-player://player/ruffle/b.wasm?x=1", "application/wasm"},
        {"zelk-player://player/", nullptr},
        {"zelk-player://player/ruffle/", nullptr},
        {"zelk-player://player/other.swf", nullptr},
        {"zelk-player://player/ruffle/gone.js", nullptr},
        {"zelk-player://player/ruffle/c.txt", nullptr},
        {"zelk-player://player/ruffle/.d.js", nullptr},
        {"zelk-player://player/ruffle/sub/e.js", nullptr},
        {"zelk-player://player/ruffle/../secret.js", nullptr},
        {"zelk-player://player/ruffle/..%2Fsecret.js", nullptr},
        {"zelk-player://player/ruffle/..%5Csecret.js", nullptr},
        {"zelk-player://player/ruffle//etc/x.js", nullptr},
        {"zelk-player://elsewhere/player.html", nullptr},
        {"file://player/player.html", nullptr},
        {"http://player/movie.swf", nullptr},
    };
    for (const Case& c : cases) {
        const auto served = files.find(QUrl(QString::fromLatin1(c.url)));
        ASSERT_EQ(served.has_value(), c.mimeType != nullptr) << c.url;
        if (served) {
            EXPECT_EQ(served->mimeType, c.mimeType) << c.url;
        }
    }
    EXPECT_TRUE(files.find(PlayerFiles::pageUrl()));
    for (const char* refused : {"file:///etc/passwd", "http://127.0.0.1/", "https://a.b/", "ws://127.0.0.1/",
                                "ftp://a/b", "qrc:/player/player.js", "chrome://gpu", "about:blank", "filesystem:x"})
        EXPECT_FALSE(isAllowed(QUrl(QString::fromLatin1(refused)))) << refused;
}

TEST(PlayerEngine, FlagsDependOnTheDisplay) {
    struct Case {
        const char *platform, *display, *set, *expected;
    };
    const char variable[] = "QTWEBENGINE_CHROMIUM_FLAGS";
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM"), display = qgetenv("DISPLAY"), flags = qgetenv(variable);
    for (const Case& c : {Case{"xcb", "", nullptr, "--ignore-gpu-blocklist"},
                          {"wayland-egl", "", nullptr, "--ignore-gpu-blocklist"},
                          {"", ":7", nullptr, "--ignore-gpu-blocklist"},
                          {"offscreen", ":7", nullptr, ""},
                          {"xcb", ":7", "--mine", "--mine"},
                          {"xcb", ":7", "", ""}}) {
        qputenv("QT_QPA_PLATFORM", c.platform);
        qputenv("DISPLAY", c.display);
        qunsetenv(variable);
        if (c.set != nullptr)
            qputenv(variable, c.set);
        setEngineFlags();
        EXPECT_EQ(qgetenv(variable), c.expected) << c.platform << c.display;
    }
    qputenv("QT_QPA_PLATFORM", platform);
    qputenv("DISPLAY", display);
    qputenv(variable, flags);
}

#ifdef Q_OS_UNIX
TEST(PlayerEngine, RootNeedsToGoWithoutASandbox) {
    const struct {
        const char *sandbox, *flags; // null when it is not set
        bool isRefused;              // to root
    } cases[] = {
        {nullptr, nullptr, true}, {"1", nullptr, false}, {nullptr, "--a --no-sandbox", false}, {nullptr, "--a", true}};
    const QByteArray sandbox = qgetenv("QTWEBENGINE_DISABLE_SANDBOX"), flags = qgetenv("QTWEBENGINE_CHROMIUM_FLAGS");
    const auto set = [](const char* name, const char* value) {
        value == nullptr ? qunsetenv(name) : qputenv(name, value);
    };
    for (const auto& c : cases) {
        set("QTWEBENGINE_DISABLE_SANDBOX", c.sandbox);
        set("QTWEBENGINE_CHROMIUM_FLAGS", c.flags);
        EXPECT_EQ(!engineRefusal().isEmpty(), c.isRefused && geteuid() == 0) << (c.flags == nullptr ? "" : c.flags);
    }
    set("QTWEBENGINE_DISABLE_SANDBOX", sandbox.isNull() ? nullptr : sandbox.constData());
    set("QTWEBENGINE_CHROMIUM_FLAGS", flags.isNull() ? nullptr : flags.constData());
}
#endif

} // namespace
